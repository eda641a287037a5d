#include <array>

#include "text/c_numbers.h"
#include "text/zu_text.h"

namespace {

bool IsNothing(const char* fmt) { return fmt == nullptr || *fmt == '\0'; }

}  // namespace

void ZuText::Format(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  VArgFormat(fmt, args);
  va_end(args);
}

void ZuText::AppendFormat(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  VArgAppFormat(fmt, args);
  va_end(args);
}

void ZuText::VArgFormat(const char* fmt, va_list args) {
  Clear();
  VArgAppFormat(fmt, args);
}

void ZuText::VArgAppFormat(const char* fmt, va_list args) {
  if (IsNothing(fmt)) {
    return;
  }
  // Also what came out before a failed conversion is appended, so the buffer must begin as a text.
  std::array<char, 10240> formatted;
  formatted[0] = '\0';
  quenlatrix::text::PrintFormatted(formatted.data(), formatted.size(), fmt, args);
  *this += formatted.data();
}
