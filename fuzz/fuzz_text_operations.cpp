// Runs operations of the narrow and the wide text that the input picks, against a plain model of
// what the text must be, and checks after each what always holds.

#include <algorithm>
#include <clocale>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include "fuzz/narrow_text.h"
#include "text/c_numbers.h"
#include "text/wide_chars.h"
#include "text/wide_string.h"
#include "text/zu_text.h"

namespace {

void CheckText(const ZuText& t) {
  Require(t.GetDataSize() <= t.GetBufferSize());
  Require(t.GetDataSize() == 0 || t.GetText()[t.GetDataSize() - 1] == '\0');
  Require(std::strlen(t.GetTextEx()) == t.GetSize());
}

// What stands in `text` where `searched`, of the same length, holds `find` is replaced.
std::string Replaced(const std::string& text, const std::string& searched, const std::string& find,
                     const std::string& with) {
  std::string replaced;
  std::size_t from = 0;
  for (std::size_t at; !find.empty() && (at = searched.find(find, from)) != std::string::npos;) {
    replaced += text.substr(from, at - from) + with;
    from = at + find.size();
  }
  return replaced + text.substr(from);
}

std::string UpperCased(const std::string& text) {
  ZuText t(text.c_str());
  t.UpperCase();
  return t.GetTextEx();
}

void Assign(NarrowState& s, FuzzedDataProvider& input) {
  s.model = TakeText(input);
  s.Both([&](ZuText& t) { t = s.model.c_str(); });
  Require(s.fixed.GetTextEx() == s.model.substr(0, 30));
}

void Append(NarrowState& s, FuzzedDataProvider& input) {
  std::string const tail = TakeText(input);
  switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
      s.Both([&](ZuText& t) { t += tail.c_str(); });
      s.model += tail;
      break;
    case 1:
      s.Both([&](ZuText& t) { t += ZuText(tail.c_str()); });
      s.model += tail;
      break;
    case 2:
      s.Both([](ZuText& t) { t += t; });
      s.model += s.model;
      break;
    default:
      s.Both([&](ZuText& t) { t.AppendFormat("%s|%ld", tail.c_str(), 7L); });
      s.model += tail + "|7";
  }
}

void ReplacePart(NarrowState& s, FuzzedDataProvider& input) {
  const auto pos = input.ConsumeIntegralInRange<unsigned long>(0, 80);
  const auto count = input.ConsumeIntegral<unsigned long>();
  std::string const with = TakeText(input);
  s.Both([&](ZuText& t) { t.ReplaceText(pos, count, with.c_str()); });
  s.model.replace(std::min(pos, s.model.size()), count, with);
}

void ReplaceEvery(NarrowState& s, FuzzedDataProvider& input) {
  std::string const find = TakeText(input).substr(0, 3);
  std::string const with = TakeText(input).substr(0, 5);
  const bool caseSensitive = input.ConsumeBool();
  const bool agree = s.fixed.GetTextEx() == s.model;
  s.Both([&](ZuText& t) { t.ReplaceAll(find.c_str(), with.c_str(), caseSensitive); });
  s.model = caseSensitive ? Replaced(s.model, s.model, find, with)
                          : Replaced(s.model, UpperCased(s.model), UpperCased(find), with);
  Require(!agree || s.model.size() > 30 || s.fixed.GetTextEx() == s.model);
  ZuText other(s.text);
  other.ReplaceAll(other, with.c_str(), caseSensitive);
  Require(s.model.empty() || other.GetTextEx() == with);
  other.ReplaceAll(find.c_str(), other, caseSensitive);
  CheckText(other);
  other.ReplaceOccurrence(find.c_str(), with.c_str(),
                          input.ConsumeIntegralInRange<unsigned long>(0, 4), input.ConsumeBool());
  CheckText(other);
}

void TakePart(NarrowState& s, FuzzedDataProvider& input) {
  const auto start = input.ConsumeIntegralInRange<unsigned long>(0, 70);
  const auto count = input.ConsumeIntegral<unsigned long>();
  s.Both([&](ZuText& t) { t.Mid(t, start, count); });
  s.model = s.model.substr(std::min(start, s.model.size()), count);
  ZuText out;
  s.text.Right(out, start);
  Require(out.GetSize() == std::min<unsigned long>(start, s.text.GetSize()));
  std::vector<unsigned char> dst(start);
  Require(s.text.Copy(dst.data(), start, count % 8, count) <= start);
}

void Resize(NarrowState& s, FuzzedDataProvider& input) {
  const auto n = input.ConsumeIntegralInRange<unsigned long>(0, 6000);
  s.Both([&](ZuText& t) { t.SetBufferSize(n); });
  s.model = s.text.GetTextEx();
  s.Both([&](ZuText& t) { t.SetUsableDataSize(std::min(n, t.GetSize())); });
  s.model = s.model.substr(0, n);
}

void Compare(NarrowState& s, FuzzedDataProvider& input) {
  std::string const with = TakeText(input);
  const ZuText other(with.c_str());
  Require((s.text < other) == (other > s.text));
  Require((s.text == other) == (s.text.Compare(with.c_str()) == 0));
  Require(s.text.CompareLeft(other) || s.text != other);
  s.text.FirstNEquals(with.c_str(), input.ConsumeIntegral<unsigned long>(), input.ConsumeBool());
  s.text.Equals(with.c_str(), with.size(), input.ConsumeBool());
  s.text.GetTextAsBitMask();
  s.text.GetTextAsULong();
}

void RunNarrow(FuzzedDataProvider& input) {
  constexpr void (*operations[])(NarrowState&, FuzzedDataProvider&) = {
      Assign, Append, ReplacePart, ReplaceEvery, TakePart, Resize, Compare, EditText, AskText};
  NarrowState s;
  for (int i = 0; i < 200 && input.remaining_bytes() > 0; ++i) {
    input.PickValueInArray(operations)(s, input);
    if (s.model.size() > 5000) {
      s.model.clear();
      s.text.Clear();
    }
    CheckText(s.text);
    CheckText(s.fixed);
    Require(s.text.GetTextEx() == s.model);
    Require(s.fixed.GetSize() <= 30 && s.fixed.GetBufferSize() == 31);
  }
}

std::wstring TakeWideText(FuzzedDataProvider& input) {
  std::wstring text;
  for (auto n = input.ConsumeIntegralInRange<std::size_t>(0, 80); n > 0; --n) {
    const auto c = input.ConsumeBool() ? input.ConsumeIntegralInRange<wchar_t>(1, 127)
                                       : input.ConsumeIntegral<wchar_t>();
    text += c == L'\0' ? L'\u0100' : c;
  }
  return text;
}

void CheckWideText(const WideString& s) {
  std::size_t const length = s.getWCharPtr() == nullptr ? 0 : std::wcslen(s.getWCharPtr());
  const char* const narrow = s.getCharPtr();
  Require(narrow == nullptr || std::strlen(narrow) <= length);
}

void CheckWideNumbers(const std::wstring& text, FuzzedDataProvider& input) {
  wchar_t* end = nullptr;
  quenlatrix::text::wcstol(text.c_str(), &end, input.ConsumeIntegralInRange(-1, 37));
  Require(end >= text.c_str() && end <= text.c_str() + text.size());
  for (const wchar_t c : text) {
    quenlatrix::text::iswalnum(c);
  }
}

void RunWide(FuzzedDataProvider& input) {
  WideString s;
  for (int i = 0; i < 20 && input.remaining_bytes() > 0; ++i) {
    std::wstring const wide = TakeWideText(input);
    std::string const narrow = TakeText(input);
    switch (input.ConsumeIntegralInRange(0, 5)) {
      case 0:
        s.assign(wide.c_str());
        Require(s.compare(wide.c_str(), 0) == (wide.empty() ? -1 : 0));
        break;
      case 1:
        s.assign(narrow.c_str());
        break;
      case 2:
        s.append(wide.c_str());
        break;
      case 3:
        s.append(narrow.c_str());
        break;
      case 4:
        s.assign(wide.c_str(), input.ConsumeIntegralInRange(0, 100));
        break;
      default:
        s = s.substr(input.ConsumeIntegralInRange(-2, 90), input.ConsumeIntegralInRange(-2, 90));
    }
    CheckWideText(s);
    const int found = s.find(wide.c_str());
    Require(found <= 0 || static_cast<std::size_t>(found) <= std::strlen(s.getCharPtr()));
    const WideString other(narrow.c_str());
    CheckWideText(other);
    Require((s.compareNoCase(wide.c_str(), 0) == 0) ==
                (WideString(wide.c_str()).compareNoCase(s.getWCharPtr(), 0) == 0) ||
            wide.empty());
    CheckWideNumbers(wide, input);
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Require(std::setlocale(LC_ALL, "C.UTF-8") != nullptr);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  if (input.ConsumeBool()) {
    RunNarrow(input);
  } else {
    RunWide(input);
  }
  return 0;
}
