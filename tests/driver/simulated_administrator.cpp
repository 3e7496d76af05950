// Apart from the machine's other functions, so that a test can bring its own answer.
#include "platform/administrator.h"
#include "tests/driver/simulated_machine.h"

int is_user_admin() {
  Machine.calls.emplace_back("is_user_admin()");
  return Machine.administrator ? 1 : 0;
}
