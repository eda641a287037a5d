#include "host/class_facts.h"

#include <algorithm>
#include <utility>

#include "host/handler_set.h"
#include "meta_object/identity.h"

namespace quenlatrix::host {

using meta_object::Identity;

const std::vector<MethodDescription>* ClassRecord::FindMethods() const {
  const MonitorLock lock(monitor);
  return methods ? &*methods : nullptr;
}

const Supertypes* ClassRecord::FindSupertypes() const {
  const MonitorLock lock(monitor);
  return supertypes ? &*supertypes : nullptr;
}

const std::vector<MethodDescription>& ClassRecord::KeepMethods(
    std::vector<MethodDescription>&& learnt) {
  const MonitorLock lock(monitor);
  if (!methods) methods = std::move(learnt);
  return *methods;
}

const Supertypes& ClassRecord::KeepSupertypes(Supertypes&& learnt) {
  const MonitorLock lock(monitor);
  if (!supertypes) supertypes = std::move(learnt);
  return *supertypes;
}

// The record of a class that its name doesn't find, until nobody holds it.
struct ClassFacts::Numbered {
  Numbered(ClassFacts& facts, std::int64_t number, const std::string& name,
           const std::string& identity)
      : facts(facts), number(number), record(name, identity) {}
  ~Numbered() { facts.Drop(*this); }
  Numbered(const Numbered&) = delete;
  Numbered& operator=(const Numbered&) = delete;

  ClassFacts& facts;
  const std::int64_t number;
  ClassRecord record;
};

std::string ClassFacts::MakeIdentity(const ClassId& id) {
  Identity identity(HandlerSet::kBeanType, id.name.c_str());
  if (id.number == 0 && identity.IsValid()) return identity.identity;
  if (!identity.IsValid()) {
    // Only the attribute tells the classes apart; the name is for people.
    std::string name = id.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '?' || c == '=' || c == ':'; }, '_');
    identity = Identity(HandlerSet::kBeanType, name.c_str());
  }
  identity.SetAttribute(kIdentityAttribute, std::to_string(++lastAttribute));
  return identity.identity;
}

ClassFacts::RecordPtr ClassFacts::Find(const ClassId& id) {
  const MonitorLock lock(monitor);
  if (id.number != 0) return FindNumbered(id);
  const auto found = named.find(id.name);
  if (found != named.end()) return found->second;
  return named.try_emplace(id.name, std::make_shared<ClassRecord>(id.name, MakeIdentity(id)))
      .first->second;
}

ClassFacts::RecordPtr ClassFacts::FindNumbered(const ClassId& id) {
  std::weak_ptr<Numbered>& place = numbered[id.number];
  std::shared_ptr<Numbered> found = place.lock();
  if (found == nullptr) {
    found = std::make_shared<Numbered>(*this, id.number, id.name, MakeIdentity(id));
    place = found;
  }
  return {found, &found->record};
}

void ClassFacts::Drop(const Numbered& ended) {
  {
    const MonitorLock lock(monitor);
    const auto place = numbered.find(ended.number);
    // Another record may stand there by now.
    if (place != numbered.end() && place->second.expired()) numbered.erase(place);
  }
  forget(ended.record.GetIdentity());
}

}  // namespace quenlatrix::host
