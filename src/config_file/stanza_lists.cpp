#include "config_file/stanza.h"
#include "config_file/tokenizer.h"

namespace quenlatrix::config_file {

using collect::Attribute;
using collect::AttributeList;

namespace {

ZuText JoinKeys(const AttributeList& list) {
  ZuText keys;
  for (const Attribute& member : list) {
    keys += member.key;
    keys += ':';
  }
  keys.SetUsableDataSize(keys.GetSize() == 0 ? 0 : keys.GetSize() - 1);
  return keys;
}

}  // namespace

bool ConfigFile::Stanza::addAttributeList(const char* key, const AttributeList& list) {
  const ZuText members = JoinKeys(list);
  const MutexLock hold(lock);
  if (key == nullptr || *key == '\0' || members.GetSize() > kLongestValue ||
      attributes.findAttribute(key)) {
    return false;
  }
  AddMembers(key, members, list);
  return true;
}

void ConfigFile::Stanza::AddMembers(const char* key, const ZuText& members,
                                    const AttributeList& list) {
  attributes.addAttribute(key, nullptr);
  for (const Attribute& member : list) {
    if (!attributes.addAttribute(member)) {
      attributes.changeAttribute(member.key.GetTextEx(), member.value.GetTextEx());
    }
  }
  attributes.changeAttribute(key, members.GetTextEx());
}

bool ConfigFile::Stanza::getAttributeList(const char* key, AttributeList& out) const {
  const MutexLock hold(lock);
  out.removeAllAttributes();
  const Attribute* const list = attributes.getAttribute(key);
  if (list == nullptr) {
    return true;
  }
  ZuText name;
  for (unsigned long i = 0; i < list->getValueListElementCount(); ++i) {
    const Attribute* const member =
        list->getValueListElement(i, name) ? attributes.getAttribute(name.GetTextEx()) : nullptr;
    if (member != nullptr) {
      out.addAttribute(*member);
    }
  }
  return true;
}

bool ConfigFile::Stanza::changeAttributeList(const char* key, const AttributeList& list) {
  // The key may be lent by the very attribute that is removed.
  const ZuText name(key);
  const ZuText members = JoinKeys(list);
  const MutexLock hold(lock);
  if (!attributes.findAttribute(key) || members.GetSize() > kLongestValue) {
    return false;
  }
  RemoveMembers(name.GetTextEx());
  // Another of that key would be found in place of the list.
  while (attributes.removeAttribute(name.GetTextEx())) {
  }
  AddMembers(name.GetTextEx(), members, list);
  return true;
}

bool ConfigFile::Stanza::removeAttributeList(const char* key) {
  const MutexLock hold(lock);
  RemoveMembers(key);
  return true;
}

void ConfigFile::Stanza::RemoveMembers(const char* key) {
  const Attribute* const found = attributes.getAttribute(key);
  if (found == nullptr) {
    return;
  }
  // Its value may name itself.
  const Attribute list(*found);
  ZuText name;
  for (unsigned long i = 0; i < list.getValueListElementCount(); ++i) {
    if (list.getValueListElement(i, name)) {
      attributes.removeAttribute(name.GetTextEx());
    }
  }
  attributes.removeAttribute(list.key.GetTextEx());
}

}  // namespace quenlatrix::config_file
