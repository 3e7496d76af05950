#include "packager/host_log.h"

#include <cstdarg>

#include "platform/text.h"
#include "recognition/check_log.h"

Fl_Text_Buffer* LogBuffer;  // belongs to the log that this one replaces; stays null

namespace {

std::string log_text;

}  // namespace

void LogPrintf(const char* format, ...) {
  char text[4096];
  std::va_list arguments;
  va_start(arguments, format);
  FormatBoundedV(text, sizeof text, format, arguments);
  va_end(arguments);
  log_text += text;
}

void LogClear() {
  log_text.clear();
}

void ClearHostLog() {
  LogClear();
}

std::string LastHostLogLine() {
  const std::size_t end = log_text.find_last_not_of('\n') + 1;
  std::string line;
  for (std::size_t i = end == 0 ? 0 : log_text.rfind('\n', end - 1) + 1; i < end; ++i) {
    if (log_text[i] != ' ' || (!line.empty() && line.back() != ' ')) line += log_text[i];
  }
  return line;
}
