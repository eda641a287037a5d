#include "collect/attribute_list.h"

#include <algorithm>
#include <iterator>

#include "text/whole_text.h"

namespace quenlatrix::collect {

const Attribute* AttributeList::Find(const char* key, unsigned long n) const {
  for (const Attribute& attribute : attributes) {
    if (attribute == key && --n == 0) {
      return &attribute;
    }
  }
  return nullptr;
}

bool AttributeList::addAttribute(const char* key, const char* value) {
  attributes.append(Attribute(key, value));
  return true;
}

bool AttributeList::addAttribute(const Attribute& a) {
  if (getValue(a.key.GetTextEx()) != nullptr) {
    return false;
  }
  attributes.append(a);
  return true;
}

bool AttributeList::changeAttribute(const char* key, const char* value) {
  Attribute* const present = getAttribute(key);
  return present != nullptr ? present->updateValue(value) : addAttribute(key, value);
}

bool AttributeList::removeAttribute(const char* key) {
  const Attribute* const present = getAttribute(key);
  return present != nullptr && attributes.remove(*present);
}

bool AttributeList::removeAllAttributes() {
  attributes.removeAll();
  return true;
}

bool AttributeList::findAttribute(const char* key) const { return getAttribute(key) != nullptr; }

Attribute* AttributeList::getAttribute(const char* key) {
  return const_cast<Attribute*>(Find(key, 1));
}

const Attribute* AttributeList::getAttribute(const char* key) const { return Find(key, 1); }

const char* AttributeList::getValue(const char* key) const { return getValue(key, 1); }

const char* AttributeList::getValue(const char* key, unsigned long n) const {
  const Attribute* const attribute = Find(key, n);
  return attribute == nullptr ? nullptr : attribute->value.GetText();
}

unsigned int AttributeList::numOccurrences(const char* key) const {
  return static_cast<unsigned int>(
      std::count_if(attributes.begin(), attributes.end(),
                    [key](const Attribute& attribute) { return attribute == key; }));
}

Attribute* AttributeList::getAttributeIndex(unsigned long index) {
  return const_cast<Attribute*>(std::as_const(*this).getAttributeIndex(index));
}

const Attribute* AttributeList::getAttributeIndex(unsigned long index) const {
  for (const Attribute& attribute : attributes) {
    if (index-- == 0) {
      return &attribute;
    }
  }
  throw EndOfListError();
}

const char* AttributeList::getKey(unsigned long index) const {
  return getAttributeIndex(index)->key.GetText();
}

const char* AttributeList::getValue(unsigned long index) const {
  return getAttributeIndex(index)->value.GetText();
}

unsigned long AttributeList::getNumberOfAttributes() const {
  return static_cast<unsigned long>(std::distance(attributes.begin(), attributes.end()));
}

bool AttributeList::mergeAttributeList(const AttributeList& other) {
  if (&other == this) {
    return true;
  }
  for (const Attribute& theirs : other.attributes) {
    if (Attribute* const ours = getAttribute(theirs.key.GetTextEx()); ours != nullptr) {
      text::SetWhole(ours->value, theirs.value);
    } else {
      attributes.append(theirs);
    }
  }
  return true;
}

Lists<Attribute*>& AttributeList::getAllAttributes(const char* key, Lists<Attribute*>& out) {
  const Attribute* const list = getAttribute(key);
  if (list == nullptr || list->value.GetText() == nullptr) {
    return out;
  }
  out.removeAll();
  ZuText element;
  for (unsigned long i = 0; i < list->getValueListElementCount(); ++i) {
    Attribute* const named =
        list->getValueListElement(i, element) ? getAttribute(element.GetTextEx()) : nullptr;
    if (named != nullptr) {
      out.append(named);
    }
  }
  return out;
}

}  // namespace quenlatrix::collect
