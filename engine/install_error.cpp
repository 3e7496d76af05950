#include "engine/install_error.h"

#include <cstdarg>

#include "platform/text.h"

namespace {

char error_text[kInstallErrorSize];

}  // namespace

void SetInstallError(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  FormatBoundedV(error_text, sizeof error_text, format, arguments);
  va_end(arguments);
}

const char* InstallErrorText() {
  return error_text;
}

void ResetInstallError() {
  error_text[0] = '\0';
}
