#include "tests/support/run_under.h"

#include <cstdlib>
#include <iterator>
#include <sstream>

std::vector<std::string> RunUnder() {
  const char* under = std::getenv("QUIRLODUINO_RUN_UNDER");
  std::istringstream text(under == nullptr ? "" : under);
  return {std::istream_iterator<std::string>(text), {}};
}
