#pragma once

#include <cstdio>
#include <string>

#include "collect/attribute_list.h"
#include "config_file/config_file.h"

namespace quenlatrix::config_file {

// A named list of attributes. Operations do what those of AttributeList of the same name and
// meaning do; those by index throw EndOfListError past the end. Null texts count as empty. What
// there is no memory for throws std::bad_alloc; a value, a name or a list of attributes is then
// what it was.
//
// A file carries every name, key and value but these, which can be held all the same:
// - a name with "]"; a name or key of 255 bytes or more; an empty key, and one with ";" or "[": the
//   file is not written.
// - a key that begins with a blank or tab, and one with "=": it is read as another key. (A key of
//   an attribute list that holds ":" can't be named in that list.)
// - a value of more than 4095 bytes: it is cut when it is read.
//
// Threads: every operation may be called by any thread, but for the destructor. Attributes that are
// lent stay good until the stanza is changed.
class ConfigFile::Stanza {
 public:
  // How escapes are written, by position: the letter after the backslash, the character meant.
  static constexpr char bsEscKeys[] = "rn\\";
  static constexpr char bsEscValues[] = "\r\n\\";

  // What a backslash followed by `c` stands for, and the letter that stands for `c`; 0 for none.
  static char GetBSEscValue(char c);
  static char GetBSEscKey(char c);

  explicit Stanza(const char* name);
  Stanza(const char* name, const collect::AttributeList& attributes);
  Stanza(const Stanza& other);
  Stanza& operator=(const Stanza& other);
  virtual ~Stanza();

  virtual unsigned int getNumOccurrences(const char* key) const;
  virtual bool findValue(const char* key) const;
  // These clear `out`; false when there is no such attribute. `n` counts from 1.
  virtual bool getValue(const char* key, ZuText& out) const;
  virtual bool getValue(const char* key, unsigned long n, ZuText& out) const;
  // Always true.
  virtual bool getAttributeValue(unsigned long i, ZuText& out) const;
  virtual bool getAttributeKey(unsigned long i, ZuText& out) const;

  ZuText getStanzaName() const;
  void setStanzaName(const char* name);
  // By name, without regard to case.
  bool isStanzaName(const ZuText& name) const;
  bool operator==(const Stanza& other) const;

  unsigned long getNumberOfAttributes() const;
  // Copies the attribute; false, with `out` unchanged, when there is none.
  bool getAttribute(const char* key, collect::Attribute& out) const;
  // Always true.
  bool getAttributeIndex(unsigned long i, collect::Attribute& out) const;
  // The attributes stay this stanza's own.
  collect::Lists<collect::Attribute*>& getAllAttributes(const char* key,
                                                        collect::Lists<collect::Attribute*>& out);

  // Appends, also a key that is there already.
  bool addValue(const char* key, const char* value);
  // Sets the first value of the key, or appends.
  bool changeValue(const char* key, const char* value);
  // Removes the first attribute with the key; false when there is none.
  bool removeKey(const char* key);

  // Takes the other's attributes over, one by one: see AttributeList::mergeAttributeList.
  bool mergeStanza(const Stanza& other);
  // Makes this stanza's attributes a copy of the other's. False when another thread uses that one
  // just now: it isn't waited for.
  bool copyAttributeList(const Stanza& other);

  // An attribute list in a stanza is an attribute whose value names the member keys, divided by
  // colons; the members are attributes of the stanza like others.
  //
  // Adds `key` and its members. A member takes the place of an attribute of that key with a value.
  // False, with nothing changed, for a key that is empty or here already, and when the member keys
  // take more than 4095 bytes, which could not be read back.
  bool addAttributeList(const char* key, const collect::AttributeList& list);
  // Makes `out` copies of the members of `key`; names without an attribute are left out. True.
  bool getAttributeList(const char* key, collect::AttributeList& out) const;
  // Removes the list with its members and adds another. False, with nothing changed, when there is
  // no `key` and when the member keys take more than 4095 bytes.
  bool changeAttributeList(const char* key, const collect::AttributeList& list);
  // Removes the members and `key`. Always true.
  bool removeAttributeList(const char* key);

  // Writes the stanza as a file has it, attributes sorted by key, those of one key in their order.
  // False on a write error. `flag` has no effect.
  bool saveStanza(std::FILE* f, bool flag) const;
  // Writes a text with escapes; gives the number of bytes written, -1 on a write error.
  static int writeBSEscString(std::FILE* f, const char* s);

 private:
  friend class ConfigFile;

  // What the others begin as: one that throws from then on is destroyed with its lock.
  Stanza();

  collect::AttributeList CopyAttributes() const;
  void SetAttributes(const collect::AttributeList& copy);
  // Appends what saveStanza writes.
  void AppendTo(std::string& out) const;

  ZuText name GUARDED_BY(lock);
  collect::AttributeList attributes GUARDED_BY(lock);
  mutable Mutex lock;
};

}  // namespace quenlatrix::config_file
