#include "config_file/stanza.h"

#include "text/whole_text.h"

namespace quenlatrix::config_file {

using collect::Attribute;
using collect::AttributeList;
using collect::Lists;
using text::SetWhole;

ConfigFile::Stanza::Stanza() : lock(Mutex::Private) {}

ConfigFile::Stanza::Stanza(const char* name) : Stanza() { SetWhole(this->name, name); }

ConfigFile::Stanza::Stanza(const char* name, const AttributeList& attributes) : Stanza(name) {
  this->attributes = attributes;
}

ConfigFile::Stanza::Stanza(const Stanza& other) : Stanza() {
  const MutexLock theirs(other.lock);
  SetWhole(name, other.name);
  attributes = other.attributes;
}

ConfigFile::Stanza& ConfigFile::Stanza::operator=(const Stanza& other) {
  if (this != &other) {
    const Stanza copy(other);
    const MutexLock ours(lock);
    const MutexLock theirs(copy.lock);
    SetWhole(name, copy.name);
    attributes = copy.attributes;
  }
  return *this;
}

ConfigFile::Stanza::~Stanza() { lock.DestroyMutex(); }

AttributeList ConfigFile::Stanza::CopyAttributes() const {
  const MutexLock hold(lock);
  return attributes;
}

void ConfigFile::Stanza::SetAttributes(const AttributeList& copy) {
  const MutexLock hold(lock);
  attributes = copy;
}

unsigned int ConfigFile::Stanza::getNumOccurrences(const char* key) const {
  const MutexLock hold(lock);
  return attributes.numOccurrences(key);
}

bool ConfigFile::Stanza::findValue(const char* key) const {
  const MutexLock hold(lock);
  return attributes.findAttribute(key);
}

bool ConfigFile::Stanza::getValue(const char* key, ZuText& out) const {
  return getValue(key, 1, out);
}

bool ConfigFile::Stanza::getValue(const char* key, unsigned long n, ZuText& out) const {
  const MutexLock hold(lock);
  const bool found = n > 0 && n <= attributes.numOccurrences(key);
  // An empty value has no text, but is one.
  SetWhole(out, found ? attributes.getValue(key, n) : nullptr);
  return found;
}

bool ConfigFile::Stanza::getAttributeValue(unsigned long i, ZuText& out) const {
  const MutexLock hold(lock);
  SetWhole(out, attributes.getValue(i));
  return true;
}

bool ConfigFile::Stanza::getAttributeKey(unsigned long i, ZuText& out) const {
  const MutexLock hold(lock);
  SetWhole(out, attributes.getKey(i));
  return true;
}

ZuText ConfigFile::Stanza::getStanzaName() const {
  const MutexLock hold(lock);
  ZuText copy;
  SetWhole(copy, name);
  return copy;
}

void ConfigFile::Stanza::setStanzaName(const char* name) {
  ZuText whole;
  SetWhole(whole, name);
  const MutexLock hold(lock);
  SetWhole(this->name, whole);
}

bool ConfigFile::Stanza::isStanzaName(const ZuText& name) const {
  const MutexLock hold(lock);
  return this->name == name;
}

bool ConfigFile::Stanza::operator==(const Stanza& other) const {
  return isStanzaName(other.getStanzaName());
}

unsigned long ConfigFile::Stanza::getNumberOfAttributes() const {
  const MutexLock hold(lock);
  return attributes.getNumberOfAttributes();
}

bool ConfigFile::Stanza::getAttribute(const char* key, Attribute& out) const {
  const MutexLock hold(lock);
  const Attribute* const found = attributes.getAttribute(key);
  if (found != nullptr) {
    out = *found;
  }
  return found != nullptr;
}

bool ConfigFile::Stanza::getAttributeIndex(unsigned long i, Attribute& out) const {
  const MutexLock hold(lock);
  out = *attributes.getAttributeIndex(i);
  return true;
}

Lists<Attribute*>& ConfigFile::Stanza::getAllAttributes(const char* key, Lists<Attribute*>& out) {
  const MutexLock hold(lock);
  return attributes.getAllAttributes(key, out);
}

bool ConfigFile::Stanza::addValue(const char* key, const char* value) {
  const MutexLock hold(lock);
  return attributes.addAttribute(key, value);
}

bool ConfigFile::Stanza::changeValue(const char* key, const char* value) {
  const MutexLock hold(lock);
  return attributes.changeAttribute(key, value);
}

bool ConfigFile::Stanza::removeKey(const char* key) {
  const MutexLock hold(lock);
  return attributes.removeAttribute(key);
}

bool ConfigFile::Stanza::mergeStanza(const Stanza& other) {
  if (&other == this) {
    return true;
  }
  // Copied before this stanza's lock is taken: two that are merged into each other don't wait for
  // each other.
  const AttributeList theirs = other.CopyAttributes();
  const MutexLock hold(lock);
  return attributes.mergeAttributeList(theirs);
}

namespace {

// Gives back at the end of a scope a mutex that was taken before it.
class SCOPED_CAPABILITY TakenLock {
 public:
  explicit TakenLock(Mutex& mutex) REQUIRES(mutex) : mutex(mutex) {}
  ~TakenLock() RELEASE() { mutex.UnLock(); }
  TakenLock(const TakenLock&) = delete;
  TakenLock& operator=(const TakenLock&) = delete;

 private:
  Mutex& mutex;
};

}  // namespace

bool ConfigFile::Stanza::copyAttributeList(const Stanza& other) {
  const MutexLock hold(lock);
  if (other.lock.TryLock() != 0) {
    return false;
  }
  const TakenLock theirs(other.lock);
  attributes = other.attributes;
  return true;
}

}  // namespace quenlatrix::config_file
