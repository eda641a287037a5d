#include "host/statement_place.h"

#include <algorithm>

#include "host/terminal.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

// Of the characters of a line, as many as are shown before and behind the place's beginning.
constexpr std::size_t kShownBefore = 50;
constexpr std::size_t kShownBehind = 40;
constexpr std::wstring_view kCut = L"...";

}  // namespace

std::string ShowPlace(const std::string& message, std::string_view line, const Place& place) {
  const std::size_t at = std::min(place.at, line.size());
  std::wstring before = Utf8ToWide(line.substr(0, at));
  const std::wstring marked = Utf8ToWide(line.substr(at, place.length));
  std::wstring rest = Utf8ToWide(line.substr(at));
  if (before.size() > kShownBefore) {
    before = std::wstring(kCut) + before.substr(before.size() - kShownBefore);
  }
  if (rest.size() > kShownBehind) rest = rest.substr(0, kShownBehind) + std::wstring(kCut);
  const std::size_t marks = std::min(marked.size(), kShownBehind);
  // Tabs stay tabs, so that both lines are as wide.
  std::string margin;
  for (const wchar_t c : before) margin += c == L'\t' ? "\t" : std::string(WidthOf({&c, 1}), ' ');
  const std::size_t width = std::max<std::size_t>(WidthOf({marked.data(), marks}), 1);
  const std::size_t firstEnd = std::min(message.find('\n'), message.size());
  return message.substr(0, firstEnd) + "\n  " + WideToUtf8(before + rest) + "\n  " + margin + "^" +
         std::string(width - 1, '~') + message.substr(firstEnd);
}

}  // namespace quenlatrix::host
