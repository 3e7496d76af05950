#include <unistd.h>

#include "platform/administrator.h"

int is_user_admin() {
  return geteuid() == 0 ? 1 : 0;
}
