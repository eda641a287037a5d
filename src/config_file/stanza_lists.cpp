#include <string>

#include "config_file/stanza.h"
#include "config_file/tokenizer.h"

namespace quenlatrix::config_file {

using collect::Attribute;
using collect::AttributeList;

namespace {

// Memory that runs out halfway leaves the attributes as they were.
template <typename Change>
void ChangeWhole(AttributeList& attributes, Change change) {
  AttributeList before(attributes);
  try {
    change(attributes);
  } catch (...) {
    attributes.swap(before);
    throw;
  }
}

std::string JoinKeys(const AttributeList& list) {
  std::string keys;
  for (const Attribute& member : list) {
    keys += member.key.GetTextEx();
    keys += ':';
  }
  return keys.substr(0, keys.empty() ? 0 : keys.size() - 1);
}

void AddMembers(AttributeList& attributes, const char* key, const std::string& members,
                const AttributeList& list) {
  attributes.addAttribute(key, nullptr);
  for (const Attribute& member : list) {
    if (!attributes.addAttribute(member)) {
      attributes.changeAttribute(member.key.GetTextEx(), member.value.GetTextEx());
    }
  }
  attributes.changeAttribute(key, members.c_str());
}

void RemoveMembers(AttributeList& attributes, const char* key) {
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

}  // namespace

bool ConfigFile::Stanza::addAttributeList(const char* key, const AttributeList& list) {
  const std::string members = JoinKeys(list);
  const MutexLock hold(lock);
  if (key == nullptr || *key == '\0' || members.size() > kLongestValue ||
      attributes.findAttribute(key)) {
    return false;
  }
  ChangeWhole(attributes, [&](AttributeList& all) { AddMembers(all, key, members, list); });
  return true;
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
  const std::string name(key == nullptr ? "" : key);
  const std::string members = JoinKeys(list);
  const MutexLock hold(lock);
  if (!attributes.findAttribute(key) || members.size() > kLongestValue) {
    return false;
  }
  ChangeWhole(attributes, [&](AttributeList& all) {
    RemoveMembers(all, name.c_str());
    // Another of that key would be found in place of the list.
    while (all.removeAttribute(name.c_str())) {
    }
    AddMembers(all, name.c_str(), members, list);
  });
  return true;
}

bool ConfigFile::Stanza::removeAttributeList(const char* key) {
  const MutexLock hold(lock);
  ChangeWhole(attributes, [&](AttributeList& all) { RemoveMembers(all, key); });
  return true;
}

}  // namespace quenlatrix::config_file
