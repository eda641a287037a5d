#include <string_view>

#include "text/regex.h"
#include "text/zu_text.h"

// Apart from the other questions to a text: who asks those doesn't link regular expressions.

namespace {

constexpr unsigned long longestScalarName = 62;

// What a pattern would take for the end of the text.
constexpr std::string_view endings("\0\n\f\r", 4);

}  // namespace

bool ZuText::validScalarName() const {
  using quenlatrix::regex::RegExMatch;
  return !IsEmptyText() && GetSize() <= longestScalarName &&
         View().find_first_of(endings) == std::string_view::npos &&
         !RegExMatch(GetTextEx(), "^[0-9_]") && RegExMatch(GetTextEx(), "^[a-zA-Z0-9_]+$");
}
