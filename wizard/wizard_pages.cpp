#include "wizard/wizard_pages.h"
int StartWizard(int, char**) {
  return 0;
}
