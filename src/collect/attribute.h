#pragma once

#include "text/zu_text.h"

namespace quenlatrix::collect {

// A key and its value, of a configuration stanza. Keys are compared without regard to case, by the
// C library's rules. A value may hold several elements, divided by colons and counted from 0:
// "a::c" has three, the second of which is empty. Null texts count as empty.
//
// What there is no memory for throws std::bad_alloc, so that no key or value is cut unnoticed; an
// attribute that is assigned to is then as it was.
//
// A value has never been set while it got nothing but empty texts (in a copy: also when it is
// empty now); it then has no storage.
//
// Threads: an attribute is used by one thread at a time.
class Attribute {
 public:
  Attribute() = default;
  Attribute(const char* key, const char* value);
  Attribute(const Attribute& o);
  Attribute& operator=(const Attribute& o);
  virtual ~Attribute() = default;

  // By key; an empty one comes first.
  bool operator<(const Attribute& o) const;
  // By key alone.
  bool operator==(const Attribute& o) const;
  // Whether this is the key; an empty or null one is nobody's.
  bool operator==(const char* k) const;

  // Gives `out`.
  ZuText& getValue(ZuText& out) const;
  // Always true. One that throws leaves the value as it was.
  bool updateValue(const char* v);
  void clearAttribute();

  // One more than the value has colons; 0 for an empty value.
  unsigned long getValueListElementCount() const;
  // False, and `out` stays, when there is no such element, when it is an empty last one after a
  // colon, and when the value is empty.
  bool getValueListElement(unsigned long index, ZuText& out) const;
  // Replaces the element; past the last one, appends it, with empty ones between. False, with
  // nothing changed, when the value is empty, when the element is an empty last one after a colon,
  // and when there is no memory for that many.
  bool updateValueListElement(unsigned long index, const char* s);

  ZuText key;
  ZuText value;
};

}  // namespace quenlatrix::collect
