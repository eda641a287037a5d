#include "host/class_facts.h"

#include <utility>

namespace quenlatrix::host {

namespace {

template <class Map>
const typename Map::mapped_type* Find(const Map& map, const std::string& name) {
  const auto found = map.find(name);
  return found == map.end() ? nullptr : &found->second;
}

}  // namespace

const std::vector<MethodDescription>* ClassFacts::FindMethods(const std::string& className) const {
  const MonitorLock lock(monitor);
  return Find(methodsOfClass, className);
}

const Supertypes* ClassFacts::FindSupertypes(const std::string& className) const {
  const MonitorLock lock(monitor);
  return Find(supertypesOfClass, className);
}

const std::vector<MethodDescription>& ClassFacts::KeepMethods(
    const std::string& className, std::vector<MethodDescription>&& methods) {
  const MonitorLock lock(monitor);
  return methodsOfClass.try_emplace(className, std::move(methods)).first->second;
}

const Supertypes& ClassFacts::KeepSupertypes(const std::string& className,
                                             Supertypes&& supertypes) {
  const MonitorLock lock(monitor);
  return supertypesOfClass.try_emplace(className, std::move(supertypes)).first->second;
}

}  // namespace quenlatrix::host
