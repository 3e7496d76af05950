#include "tests/windows/without_utf8.h"

#include <filesystem>
#include <stdexcept>

#include "tests/support/temp_dir.h"

namespace {

const std::string kWish = "UTF-8</activeCodePage>";

}  // namespace

std::string WithoutUtf8(const std::string& program, const std::string& copy) {
  std::string bytes = ReadFile(program);
  const std::size_t wish = bytes.find(kWish);
  if (wish == std::string::npos) throw std::runtime_error(program + " asks for no code page");
  bytes.replace(wish, 5, "     ");
  WriteFile(copy, bytes);
  std::filesystem::permissions(copy, std::filesystem::perms::all);
  return copy;
}
