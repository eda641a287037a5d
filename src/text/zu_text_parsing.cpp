#include <cstring>
#include <string_view>

#include "text/zu_text.h"

namespace {

bool IsEnclosed(std::string_view text, char first, char last) {
  return text.size() >= 2 && text.front() == first && text.back() == last;
}

}  // namespace

std::string_view ZuText::View() const { return {GetTextEx(), GetUsableDataSize()}; }

long ZuText::Pos(const char* s, unsigned long start, bool forward) const {
  const std::string_view text = View();
  if (s == nullptr || *s == '\0' || start >= text.size()) {
    return -1;
  }
  if (!forward) {
    const std::size_t found = text.substr(0, start + 1).rfind(s);
    return found == std::string_view::npos ? -1 : static_cast<long>(found);
  }
  const void* const found = memmem(text.data() + start, text.size() - start, s, std::strlen(s));
  return found == nullptr ? -1 : static_cast<const char*>(found) - text.data();
}

bool ZuText::HasCharFrom(const char* chars) const {
  return chars != nullptr && View().find_first_of(chars) != std::string_view::npos;
}

bool ZuText::IsQuoted() const {
  return IsEnclosed(View(), '\'', '\'') || IsEnclosed(View(), '"', '"');
}

bool ZuText::IsInBrackets() {
  TrimSpaces(false);
  return IsEnclosed(View(), '(', ')') || IsEnclosed(View(), '[', ']');
}

void ZuText::StripQuotes() {
  if (IsQuoted()) {
    KeepOnly(1, GetSize() - 2);
  }
}

void ZuText::StripBrackets() {
  if (IsInBrackets()) {
    KeepOnly(1, GetSize() - 2);
  }
}

bool ZuText::SplitNameValuePair(std::pair<ZuText, ZuText>& out, const ZuText& sep,
                                bool trim) const {
  const std::string_view text = View();
  const std::string_view separator = sep.View();
  const std::size_t pos = text.find(separator);
  if (text.empty() || separator.empty() || pos == std::string_view::npos) {
    return false;
  }
  const auto setFirst = [&] { out.first.SetEqualTo(text.data(), pos, 0); };
  const auto setSecond = [&] {
    out.second.SetEqualTo(text.data() + pos + 1, text.size() - pos - 1, 0);
  };
  // A half of `out` that is this text is written last.
  if (this == &out.first) {
    setSecond();
    setFirst();
  } else {
    setFirst();
    setSecond();
  }
  if (trim) {
    out.first.Trim();
    out.second.Trim();
  }
  return true;
}

void ZuText::Tokenizer(const char* delims, bool keepEmpty, std::list<ZuText>& out) const {
  if (buffer == nullptr) {
    return;
  }
  const auto append = [&out](std::string_view token) {
    out.emplace_back().SetEqualTo(token.data(), token.size(), 0);
  };
  std::string_view rest = View();
  if (delims == nullptr || *delims == '\0') {
    append(rest);
    return;
  }
  for (bool isLast = false; !isLast;) {
    const std::size_t end = rest.find_first_of(delims);
    isLast = end == std::string_view::npos;
    const std::string_view token = rest.substr(0, end);
    if (keepEmpty || !token.empty()) {
      append(token);
    }
    rest.remove_prefix(isLast ? 0 : end + 1);
  }
}
