#include "text/regex.h"

#include <strings.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace quenlatrix::regex {

namespace {

// A compiled pattern. The library turns its own exceptions (complexity, memory) into error codes.
class Pattern {
 public:
  explicit Pattern(const char* pattern)
      : isCompiled(boost::regcompA(&compiled, pattern, boost::REG_EXTENDED) == 0) {}
  // Freeing one that didn't compile does nothing.
  ~Pattern() { boost::regfreeA(&compiled); }
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;

  bool Matches(const char* text) const {
    return isCompiled && boost::regexecA(&compiled, text, 0, nullptr, 0) == 0;
  }

 private:
  boost::regex_tA compiled{};
  bool isCompiled;
};

std::optional<std::string_view> SpanOf(const char* text, const boost::regmatch_t& m) {
  const std::string_view whole = text == nullptr ? "" : text;
  if (whole.empty()) {
    return std::nullopt;
  }
  if (m.rm_so == m.rm_eo) {
    return whole.substr(0, 0);
  }
  if (m.rm_so < 0 || m.rm_eo < m.rm_so || static_cast<unsigned long>(m.rm_eo) > whole.size()) {
    return std::nullopt;
  }
  return whole.substr(static_cast<unsigned long>(m.rm_so),
                      static_cast<unsigned long>(m.rm_eo - m.rm_so));
}

}  // namespace

bool RegExMatch(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && Pattern(pattern).Matches(text);
}

bool CompRegExMatch(const char* text, const boost::regmatch_t& m, const char* s) {
  const auto span = SpanOf(text, m);
  return span && s != nullptr && *s != '\0' &&
         static_cast<std::uint32_t>(span->size()) == std::strlen(s) &&
         strncasecmp(span->data(), s, std::strlen(s)) == 0;
}

unsigned long CopyRegExMatch(const char* text, const boost::regmatch_t& m, ZuText& out) {
  const auto span = SpanOf(text, m);
  if (!span) {
    return 0;
  }
  out.SetEqualTo(span->data(), span->size(), 0);
  return span->size();
}

}  // namespace quenlatrix::regex
