#include "collect/attribute.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "text/whole_text.h"

namespace quenlatrix::collect {

namespace {

using text::SetWhole;

constexpr char kDivider = ':';

std::string_view ViewOf(const ZuText& text) { return {text.GetTextEx(), text.GetSize()}; }

// Where element `index` begins; nothing if the value has fewer colons.
std::optional<std::size_t> BeginOf(std::string_view value, unsigned long index) {
  std::size_t begin = 0;
  for (; index > 0; --index) {
    const std::size_t colon = value.find(kDivider, begin);
    if (colon == std::string_view::npos) {
      return std::nullopt;
    }
    begin = colon + 1;
  }
  return begin;
}

// The element, if it can be told from the end of the value.
std::optional<std::string_view> FindElement(std::string_view value, unsigned long index) {
  const std::optional<std::size_t> begin = BeginOf(value, index);
  if (!begin || *begin == value.size()) {
    return std::nullopt;
  }
  return value.substr(*begin, value.find(kDivider, *begin) - *begin);
}

}  // namespace

Attribute::Attribute(const char* key, const char* value) {
  SetWhole(this->key, key);
  SetWhole(this->value, value);
}

Attribute::Attribute(const Attribute& o) {
  SetWhole(key, o.key);
  SetWhole(value, o.value);
}

Attribute& Attribute::operator=(const Attribute& o) {
  Attribute copy(o);
  key.Swap(copy.key);
  value.Swap(copy.value);
  return *this;
}

bool Attribute::operator<(const Attribute& o) const { return key < o.key; }

bool Attribute::operator==(const Attribute& o) const { return !(key != o.key); }

bool Attribute::operator==(const char* k) const {
  return k != nullptr && *k != '\0' && strcasecmp(key.GetTextEx(), k) == 0;
}

ZuText& Attribute::getValue(ZuText& out) const {
  if (&out != &value) {
    out.Clear();
    if (value.GetSize() > 0) {
      SetWhole(out, value);
    }
  }
  return out;
}

bool Attribute::updateValue(const char* v) {
  // `v` may be a part of the value, which stays until all of `v` is there.
  const Attribute taken(nullptr, v);
  if (taken.value.GetSize() == 0) {
    value.Clear();
  } else {
    SetWhole(value, taken.value);
  }
  return true;
}

void Attribute::clearAttribute() {
  key.Clear();
  value.Clear();
}

unsigned long Attribute::getValueListElementCount() const {
  const std::string_view text = ViewOf(value);
  return text.empty()
             ? 0
             : static_cast<unsigned long>(std::count(text.begin(), text.end(), kDivider)) + 1;
}

bool Attribute::getValueListElement(unsigned long index, ZuText& out) const {
  const auto element = FindElement(ViewOf(value), index);
  if (!element) {
    return false;
  }
  SetWhole(out, *element);
  return true;
}

bool Attribute::updateValueListElement(unsigned long index, const char* s) {
  const unsigned long count = getValueListElementCount();
  if (count == 0) {
    return false;
  }
  // `s` may be a part of the value.
  ZuText element;
  SetWhole(element, s);
  if (index < count) {
    const auto old = FindElement(ViewOf(value), index);
    return old && value.Replace(static_cast<unsigned long>(old->data() - value.GetText()),
                                old->size(), element.GetText(), element.GetSize());
  }
  const unsigned long end = value.GetSize();
  const unsigned long colons = index - count + 1;
  const unsigned long added = colons + element.GetSize();
  if (added < colons || !value.Replace(end, 0, nullptr, added)) {
    return false;
  }
  std::memset(value.GetText() + end, kDivider, colons);
  std::copy_n(element.GetTextEx(), element.GetSize(), value.GetText() + end + colons);
  return true;
}

}  // namespace quenlatrix::collect
