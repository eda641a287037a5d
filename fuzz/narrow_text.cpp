#include "fuzz/narrow_text.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <list>
#include <string_view>
#include <utility>

#include "text/regex.h"

namespace {

char TakeCharacter(FuzzedDataProvider& input) {
  constexpr char frequent[] = {' ', '\t', '\n', '\r', '\\', '"', '\'', '(', ',', 'a'};
  return input.ConsumeBool() ? input.PickValueInArray(frequent)
                             : static_cast<char>(input.ConsumeIntegralInRange(1, 255));
}

void TrimModel(std::string& model, const std::string& set, bool trailing) {
  if (trailing) {
    model.erase(model.find_last_not_of(set) + 1);
  } else {
    model.erase(0, model.find_first_not_of(set));
  }
}

void TrimEnds(NarrowState& s, FuzzedDataProvider& input) {
  const bool flag = input.ConsumeBool();
  const char c = TakeCharacter(input);
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      s.Both([](ZuText& t) { t.Trim(); });
      TrimModel(s.model, "\t\n ", true);
      break;
    case 1:
      s.Both([&](ZuText& t) { t.Trim(c, flag); });
      if (flag && !s.model.empty() && s.model.front() == c) {
        s.model.front() = ' ';
      } else {
        TrimModel(s.model, std::string(1, c), true);
      }
      break;
    case 2:
      s.Both([&](ZuText& t) { t.TrimSpaces(flag); });
      TrimModel(s.model, " ", flag);
      break;
    default:
      s.Both([&](ZuText& t) { t.TrimWhiteSpaces(flag); });
      TrimModel(s.model, "\t\n\r ", flag);
  }
}

void Truncate(NarrowState& s, FuzzedDataProvider& input) {
  const auto start = input.ConsumeIntegralInRange<unsigned long>(0, 70);
  const auto count = input.ConsumeBool() ? input.ConsumeIntegral<unsigned long>() : start / 2;
  s.Both([&](ZuText& t) { t.Truncate(start, count); });
  if (start <= s.model.size() && count <= s.model.size()) {
    s.model = s.model.substr(start, count);
  }
}

void Pad(NarrowState& s, FuzzedDataProvider& input) {
  const char c = TakeCharacter(input);
  const bool atEnd = input.ConsumeBool();
  // Room that there isn't, whatever width + 1 may be.
  s.fixed.Pad(c, input.ConsumeIntegralInRange<unsigned long>(31, ULONG_MAX), atEnd);
  const auto width = input.ConsumeIntegralInRange<unsigned long>(0, 90);
  s.Both([&](ZuText& t) { t.Pad(c, width, atEnd); });
  if (!s.model.empty() && s.model.size() < width) {
    s.model.insert(atEnd ? s.model.size() : 0, width - s.model.size(), c);
  }
}

void Filter(NarrowState& s, FuzzedDataProvider& input) {
  const std::string chars = TakeText(input);
  const bool exclude = input.ConsumeBool();
  s.Both([&](ZuText& t) { t.Filter(chars.c_str(), exclude); });
  if (!chars.empty()) {
    std::erase_if(s.model, [&](char c) { return (chars.find(c) != std::string::npos) == exclude; });
  }
}

void Fold(NarrowState& s, FuzzedDataProvider& input) {
  const auto width = input.ConsumeIntegralInRange<unsigned long>(0, 40);
  s.Both([&](ZuText& t) { t.Fold(width); });
  std::size_t column = 0;
  for (std::size_t i = 0; s.model.size() >= width && i < s.model.size(); ++i) {
    const char c = s.model[i];
    column = c == '\n' || c == '\r' ? 0 : column + (c == '\t' ? 8 : 1);
    if (column < width) {
      continue;
    }
    const std::size_t place = s.model.find_last_of("\t\n\r ", i);
    if (place != std::string::npos && place > 0) {
      s.model[place] = s.model[place] == '\n' ? '\n' : '\r';
      column = i - place;
    }
  }
}

void RemoveEscapes(NarrowState& s, FuzzedDataProvider& input) {
  const auto start = input.ConsumeIntegralInRange<unsigned long>(0, 70);
  const auto count = input.ConsumeBool() ? -1 : input.ConsumeIntegralInRange<long>(0, 70);
  s.Both([&](ZuText& t) { t.RemoveEscapes(start, count); });
  if (start >= s.model.size()) {
    return;
  }
  const std::string region = s.model.substr(start, static_cast<std::size_t>(count));
  std::string kept;
  int depth = 0;
  int quote = -1;
  bool toggle = false;
  for (std::size_t i = 0; i < region.size(); ++i) {
    if (depth == 0 && region[i] == '\\') {
      kept += region.substr(++i, 1);
      continue;
    }
    kept += region[i];
    if (region[i] != '"' && region[i] != '\'') {
      continue;
    }
    const bool same = quote == region[i];
    if (same == toggle) {
      ++depth;
      quote = region[i];
    } else {
      --depth;
      quote = depth == 0 ? -1 : region[i];
    }
    toggle ^= same;
  }
  s.model.replace(start, region.size(), kept);
}

void Strip(NarrowState& s, FuzzedDataProvider& input) {
  const bool quotes = input.ConsumeBool();
  s.Both([&](ZuText& t) { quotes ? t.StripQuotes() : t.StripBrackets(); });
  std::string& model = s.model;
  if (!quotes) {
    TrimModel(model, " ", false);
  }
  for (const std::string_view pair : quotes ? std::array{"''", "\"\""} : std::array{"()", "[]"}) {
    if (model.size() >= 2 && model.front() == pair[0] && model.back() == pair[1]) {
      model = model.substr(1, model.size() - 2);
      return;
    }
  }
}

// A pattern for exactly these characters.
std::string Quoted(const std::string& literal) {
  std::string pattern;
  for (const char c : literal) {
    const bool isPlain = static_cast<unsigned char>(c) >= 128 || std::isalnum(c) != 0;
    pattern += isPlain ? std::string(1, c) : c == '^' ? "\\^" : std::string{'[', c, ']'};
  }
  return pattern;
}

void Find(const NarrowState& s, const std::string& part, FuzzedDataProvider& input) {
  const auto start = input.ConsumeIntegralInRange<unsigned long>(0, 70);
  const bool found = start < s.model.size() && !part.empty();
  const std::size_t forward = found ? s.model.find(part, start) : std::string::npos;
  const std::size_t backward = found ? s.model.substr(0, start + 1).rfind(part) : std::string::npos;
  Require(s.text.Pos(part.c_str(), start, true) == static_cast<long>(forward));
  Require(s.text.Pos(part.c_str(), start, false) == static_cast<long>(backward));
  Require(s.text.Pos(part.c_str(), -start - 1, false) == -1);
  Require(s.text.HasCharFrom(part.c_str()) == (s.model.find_first_of(part) != std::string::npos));
}

void Match(const NarrowState& s, const std::string& part, FuzzedDataProvider& input) {
  using namespace quenlatrix::regex;
  const char* const text = s.text.GetTextEx();
  const std::size_t found = s.model.find(part);
  Require(RegExMatch(text, Quoted(part).c_str()) == (found != std::string::npos));
  RegExMatch(text, part.c_str());
  boost::regmatch_t m = {static_cast<long>(found), static_cast<long>(found + part.size())};
  if (found != std::string::npos && !part.empty()) {
    Require(CompRegExMatch(text, m, part.c_str()));
    ZuText out;
    Require(CopyRegExMatch(text, m, out) == part.size() && out.GetTextEx() == part);
  }
  m = {input.ConsumeIntegral<long>(), input.ConsumeIntegral<long>()};
  ZuTextLocal<31> out;
  Require(CopyRegExMatch(text, m, out) <= s.model.size());
  CompRegExMatch(text, m, part.c_str());
  s.text.validScalarName();
}

void Split(const NarrowState& s, const std::string& part, FuzzedDataProvider& input) {
  std::pair<ZuText, ZuText> pair;
  const std::size_t pos = part.empty() ? std::string::npos : s.model.find(part);
  Require(s.text.SplitNameValuePair(pair, part.c_str(), false) == (pos != std::string::npos));
  if (pos != std::string::npos) {
    Require(pair.first.GetTextEx() == s.model.substr(0, pos) &&
            pair.second.GetTextEx() == s.model.substr(pos + 1));
  }
  const char delim[] = {TakeCharacter(input), '\0'};
  std::list<ZuText> tokens;
  s.text.Tokenizer(delim, true, tokens);
  std::string joined;
  for (const ZuText& token : tokens) {
    joined += token.GetTextEx() + std::string(delim);
  }
  Require(tokens.empty() ? s.text.GetBuffer() == nullptr : joined == s.model + delim);
  tokens.clear();
  s.text.Tokenizer(part.c_str(), false, tokens);
  Require(part.empty() || std::none_of(tokens.begin(), tokens.end(), [&](const ZuText& token) {
            return token.GetSize() == 0 || token.HasCharFrom(part.c_str());
          }));
}

}  // namespace

void EditText(NarrowState& s, FuzzedDataProvider& input) {
  constexpr void (*edits[])(NarrowState&, FuzzedDataProvider&) = {
      TrimEnds, Truncate, Pad, Filter, Fold, RemoveEscapes, Strip};
  const bool agree = s.fixed.GetTextEx() == s.model;
  input.PickValueInArray(edits)(s, input);
  Require(!agree || s.model.size() > 30 || s.fixed.GetTextEx() == s.model);
}

void AskText(NarrowState& s, FuzzedDataProvider& input) {
  const auto at = input.ConsumeIntegralInRange<std::size_t>(0, 70);
  const std::string part =
      input.ConsumeBool() ? TakeText(input) : s.model.substr(std::min(at, s.model.size()), at % 4);
  Find(s, part, input);
  Match(s, part, input);
  Split(s, part, input);
}
