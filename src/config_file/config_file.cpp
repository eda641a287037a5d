#include "config_file/config_file.h"

#include <algorithm>
#include <cstdio>
#include <unordered_set>

#include "config_file/stanza.h"
#include "text/whole_text.h"

namespace quenlatrix::config_file {

ConfigFile::ConfigFile() : lock(Mutex::Private) {}

ConfigFile::ConfigFile(const char* path, const char* directoryName) : ConfigFile() {
  text::SetWhole(this->path, path);
  text::SetWhole(directoryStanzaName, path == nullptr ? nullptr : directoryName);
}

ConfigFile::ConfigFile(const ConfigFile& other)
    : parseTimestamp(other.GetParseTimestamp()), lock(Mutex::Private) {}

ConfigFile& ConfigFile::operator=(const ConfigFile& /*other*/) { return *this; }

ConfigFile::~ConfigFile() {
  removeAllStanzas();
  lock.DestroyMutex();
}

std::time_t ConfigFile::GetParseTimestamp() const {
  const MutexLock hold(lock);
  return parseTimestamp;
}

ConfigFile::Stanza* ConfigFile::Find(const ZuText& name) const {
  const auto found = std::find_if(stanzas.begin(), stanzas.end(), [&name](const Stanza* stanza) {
    return stanza->isStanzaName(name);
  });
  return found == stanzas.end() ? nullptr : *found;
}

void ConfigFile::Append(std::unique_ptr<Stanza> stanza) {
  Stanza*& place = stanzas.append(nullptr);
  place = stanza.release();
}

void ConfigFile::MergeOrAppend(std::unique_ptr<Stanza> theirs) {
  if (Stanza* const ours = Find(theirs->getStanzaName()); ours != nullptr) {
    ours->mergeStanza(*theirs);
  } else {
    Append(std::move(theirs));
  }
}

ConfigFile::OwnedStanzas ConfigFile::CopyListed(const ZuText& directoryName) const {
  const MutexLock hold(lock);
  OwnedStanzas copies;
  const Stanza* const directory = Find(directoryName);
  if (directory == nullptr) {
    return copies;
  }
  copies.push_back(std::make_unique<Stanza>(*directory));
  // Once each, however often it is listed: what is copied is no more than what there is.
  std::unordered_set<const Stanza*> copied{directory};
  for (const collect::Attribute& listed : directory->CopyAttributes()) {
    if (const Stanza* const stanza = Find(listed.key); stanza != nullptr) {
      if (copied.insert(stanza).second) {
        copies.push_back(std::make_unique<Stanza>(*stanza));
      }
    }
  }
  return copies;
}

bool ConfigFile::mergeConfigFiles(const ConfigFile& other) {
  if (&other == this) {
    return findStanza(directoryStanzaName);
  }
  // Copied before this object's lock is taken: two that are merged into each other don't wait for
  // each other.
  OwnedStanzas theirs = other.CopyListed(directoryStanzaName);
  const MutexLock hold(lock);
  if (theirs.empty() || Find(directoryStanzaName) == nullptr) {
    return false;
  }
  for (std::unique_ptr<Stanza>& stanza : theirs) {
    MergeOrAppend(std::move(stanza));
  }
  return true;
}

ConfigFile::Stanza* ConfigFile::getStanza(const ZuText& name) const {
  const MutexLock hold(lock);
  return Find(name);
}

bool ConfigFile::findStanza(const ZuText& name) const { return getStanza(name) != nullptr; }

bool ConfigFile::getValue(const ZuText& stanza, const ZuText& key, ZuText& out) const {
  const MutexLock hold(lock);
  const Stanza* const found = Find(stanza);
  if (found == nullptr) {
    out.Clear();
    return false;
  }
  return found->getValue(key.GetTextEx(), out);
}

bool ConfigFile::changeValue(const ZuText& stanza, const ZuText& key, const ZuText& value) {
  const MutexLock hold(lock);
  Stanza* const found = Find(stanza);
  return found != nullptr && found->changeValue(key.GetTextEx(), value.GetTextEx());
}

bool ConfigFile::addStanza(Stanza* s, bool listIt) {
  const MutexLock hold(lock);
  if (s == nullptr || std::find(stanzas.begin(), stanzas.end(), s) != stanzas.end()) {
    return false;
  }
  const ZuText name = s->getStanzaName();
  stanzas.append(s);
  Stanza* const directory = listIt ? Find(directoryStanzaName) : nullptr;
  if (directory == nullptr || directory->findValue(name.GetTextEx())) {
    return true;
  }
  try {
    return directory->addValue(name.GetTextEx(), nullptr);
  } catch (...) {
    // The stanza is still the caller's.
    stanzas.remove(s);
    throw;
  }
}

bool ConfigFile::removeStanza(const ZuText& name) {
  const MutexLock hold(lock);
  const std::unique_ptr<Stanza> removed(Find(name));
  if (removed == nullptr) {
    return false;
  }
  stanzas.remove(removed.get());
  if (Stanza* const directory = Find(directoryStanzaName); directory != nullptr) {
    directory->removeKey(name.GetTextEx());
  }
  return true;
}

void ConfigFile::removeAllStanzas() {
  const MutexLock hold(lock);
  for (Stanza* const stanza : stanzas) {
    delete stanza;
  }
  stanzas.removeAll();
}

bool ConfigFile::createDirectoryStanza() {
  const MutexLock hold(lock);
  if (Find(directoryStanzaName) == nullptr) {
    Append(std::make_unique<Stanza>(directoryStanzaName.GetTextEx()));
  }
  return true;
}

unsigned long ConfigFile::getNumberOfStanzas() const {
  const MutexLock hold(lock);
  const Stanza* const directory = Find(directoryStanzaName);
  return directory == nullptr ? 0 : directory->getNumberOfAttributes();
}

bool ConfigFile::getStanzaInformationIndex(unsigned long i, ZuText& name) const {
  const MutexLock hold(lock);
  const Stanza* const directory = Find(directoryStanzaName);
  // Asked for, not counted before: the directory may be lent to another thread.
  try {
    return directory != nullptr && directory->getAttributeKey(i, name);
  } catch (const collect::AttributeList::EndOfListError&) {
    return false;
  }
}

ConfigFile::Stanza* ConfigFile::getStanzaAtIndex(unsigned long i) const {
  const MutexLock hold(lock);
  ZuText name;
  return getStanzaInformationIndex(i, name) ? Find(name) : nullptr;
}

bool ConfigFile::getFirstStanza(ZuText& name) {
  const MutexLock hold(lock);
  name.Clear();
  cursor = 0;
  return getStanzaInformationIndex(cursor, name);
}

bool ConfigFile::getNextStanza(ZuText& name) {
  const MutexLock hold(lock);
  name.Clear();
  if (++cursor >= getNumberOfStanzas()) {
    cursor = 0;
    return false;
  }
  return getStanzaInformationIndex(cursor, name);
}

void ConfigFile::dump() const {
  const MutexLock hold(lock);
  for (const Stanza* const stanza : stanzas) {
    stanza->saveStanza(stderr, false);
  }
}

}  // namespace quenlatrix::config_file
