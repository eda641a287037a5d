#pragma once

#include <vector>

#include "collect/attribute.h"
#include "collect/lists.h"

namespace quenlatrix::collect {

// Attributes in the order in which they were added; a key may occur more than once. A look-up by
// key finds the first attribute that has it, without regard to case, and nothing for a null or
// empty key. Every operation walks the list, so it suits the few attributes of a stanza.
//
// Texts and attributes that are lent stay good until the attribute is changed or removed.
// Threads: a list is used by one thread at a time.
class AttributeList {
 public:
  // An index past the end.
  using EndOfListError = ListIterators<Attribute>::EndOfListError;

  AttributeList() = default;
  explicit AttributeList(const std::vector<Attribute>& attributes)
      : attributes(attributes.begin(), attributes.end()) {}
  // Deep copies.
  AttributeList(const AttributeList&) = default;
  AttributeList& operator=(const AttributeList&) = default;
  void swap(AttributeList& other) noexcept { attributes.swap(other.attributes); }
  virtual ~AttributeList() = default;

  // Appends, also a key that is there already. Always true.
  bool addAttribute(const char* key, const char* value);
  // Appends a copy. False, with nothing added, when the key is there and that attribute's value has
  // been set.
  bool addAttribute(const Attribute& a);
  // Sets the value of the first attribute with the key, or appends one. Always true.
  bool changeAttribute(const char* key, const char* value);
  // Removes the first attribute with the key; false when there is none.
  bool removeAttribute(const char* key);
  // Always true.
  bool removeAllAttributes();

  bool findAttribute(const char* key) const;
  // Null when there is none. Lent.
  Attribute* getAttribute(const char* key);
  const Attribute* getAttribute(const char* key) const;
  // The first, or the `n`-th, counted from 1, attribute with the key; its value, or null when there
  // is no such attribute or its value was never set.
  const char* getValue(const char* key) const;
  const char* getValue(const char* key, unsigned long n) const;
  unsigned int numOccurrences(const char* key) const;

  // By position, from 0. These throw EndOfListError past the end. Lent; a text is null when it was
  // never set.
  Attribute* getAttributeIndex(unsigned long index);
  const Attribute* getAttributeIndex(unsigned long index) const;
  const char* getKey(unsigned long index) const;
  const char* getValue(unsigned long index) const;
  unsigned long getNumberOfAttributes() const;

  // Takes over the other's attributes, one after the other: as the value of the first attribute
  // with the key, or else appended. A list merged with itself stays as it is. Always true.
  bool mergeAttributeList(const AttributeList& other);

  // Makes `out` the attributes that the elements of the value of `key` name, in that order; an
  // element that names none is left out. When there is no such value, `out` stays. The attributes
  // stay this list's own. Gives `out`.
  Lists<Attribute*>& getAllAttributes(const char* key, Lists<Attribute*>& out);

  ListIterators<Attribute> begin() { return attributes.begin(); }
  ListIterators<Attribute> end() { return attributes.end(); }
  ListIterators<const Attribute> begin() const { return attributes.begin(); }
  ListIterators<const Attribute> end() const { return attributes.end(); }

 private:
  // The `n`-th attribute with the key, counted from 1, or null.
  const Attribute* Find(const char* key, unsigned long n) const;

  Lists<Attribute> attributes;
};

}  // namespace quenlatrix::collect
