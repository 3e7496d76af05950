#include "recognition/check_log.h"

#include <FL/Fl_Text_Buffer.H>

#include <cstdarg>

#include "platform/text.h"

Fl_Text_Buffer* LogBuffer;

void LogPrintf(const char* format, ...) {
  if (LogBuffer == nullptr) return;
  char text[4096];
  std::va_list arguments;
  va_start(arguments, format);
  FormatBoundedV(text, sizeof text, format, arguments);
  va_end(arguments);
  LogBuffer->insert(LogBuffer->length(), text);
}

void LogClear() {
  if (LogBuffer != nullptr) LogBuffer->text("");
}
