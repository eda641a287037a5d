#include "host/held_values.h"

#include <algorithm>
#include <utility>

#include "host/host_error.h"
#include "host/method_pattern.h"
#include "host/nearest_names.h"
#include "meta_object/handler_status.h"

namespace quenlatrix::host {

Held Held::Copy() const {
  Held copy;
  if (object) copy.object = object->Share();
  if (value) copy.value = ValuePtr(value->Clone(), value.get_deleter());
  copy.type = type;
  return copy;
}

std::vector<std::string> HeldValues::GetNames() const {
  const MonitorLock lock(monitor);
  std::vector<std::string> names;
  names.reserve(values.size());
  for (const auto& [name, entry] : values) names.push_back(name);
  return names;
}

std::string HeldValues::NameOf(const meta_object::Handler* handler) const {
  const MonitorLock lock(monitor);
  const auto found = namesOfHandlers.lower_bound({handler, {}});
  return found != namesOfHandlers.end() && found->first == handler ? found->second : std::string();
}

void HeldValues::ForgetNameOf(const Held& held, const std::string& name) {
  if (held.object) namesOfHandlers.erase({held.object->GetHandler(), name});
}

void HeldValues::RefuseUsed(const std::string& name, const Loan* asking) const {
  const auto found = values.find(name);
  if (found == values.end()) return;
  const std::vector<const Loan*>& loans = found->second.loans;
  if (std::all_of(loans.begin(), loans.end(), [&](const Loan* loan) { return loan == asking; })) {
    return;
  }
  throw HostError(ExitStatus::Failed,
                  "\"" + name +
                      "\" stays held, because a statement that still goes on uses it; wait "
                      "until that ends, or take another name");
}

void HeldValues::RefuseUnknown(const std::string& name) const {
  std::vector<std::string> known;
  for (const auto& [each, entry] : values) known.push_back(each);
  const std::string what = "nothing is held under the name \"" + name + "\"; ";
  throw HostError(ExitStatus::Failed,
                  what + (known.empty() ? "no name is in use, \"new NAME CLASS\" makes a bean"
                                        : "the names in use are " + ListOf(known)));
}

Held* HeldValues::Loan::Find(const std::string& name) {
  const auto known = copies.find(name);
  if (known != copies.end()) return &known->second;
  const MonitorLock lock(values.monitor);
  const auto found = values.values.find(name);
  if (found == values.values.end()) return nullptr;
  Held& copy = copies.emplace(name, found->second.held.Copy()).first->second;
  found->second.loans.push_back(this);
  return &copy;
}

Held& HeldValues::Loan::Get(const std::string& name) {
  if (Held* held = Find(name)) return *held;
  const MonitorLock lock(values.monitor);
  values.RefuseUnknown(name);
}

BeanObject& HeldValues::Loan::GetObject(const std::string& name) {
  Held& held = Get(name);
  if (!held.object) {
    throw HostError(ExitStatus::Failed, "\"" + name + "\" holds a plain value (" +
                                            ToSourceForm(JavaTypeOf(held.type)) +
                                            "); only a bean has methods");
  }
  return *held.object;
}

void HeldValues::Loan::RequireFree(const std::string& name) const {
  const MonitorLock lock(values.monitor);
  values.RefuseUsed(name, this);
}

void HeldValues::Loan::Keep(const std::string& name, Held newHeld) {
  const MonitorLock lock(values.monitor);
  if (isAbandoned) return;
  values.RefuseUsed(name, this);
  Held& held = values.values[name].held;
  values.ForgetNameOf(held, name);
  if (newHeld.object) values.namesOfHandlers.insert({newHeld.object->GetHandler(), name});
  std::swap(held, newHeld);
}

std::uint32_t HeldValues::Loan::Release(const std::string& name) {
  const MonitorLock lock(values.monitor);
  const auto found = values.values.find(name);
  if (found == values.values.end()) values.RefuseUnknown(name);
  values.RefuseUsed(name, this);
  if (isAbandoned) return meta_object::handler_status::kSuccess;
  values.ForgetNameOf(found->second.held, name);
  std::optional<BeanObject>& object = found->second.held.object;
  const std::uint32_t status =
      object ? object->Release() : meta_object::handler_status::kLastReferenceReleased;
  values.values.erase(found);
  return status;
}

void HeldValues::Loan::End() {
  {
    const MonitorLock lock(values.monitor);
    for (const auto& [name, copy] : copies) {
      const auto found = values.values.find(name);
      if (found != values.values.end()) std::erase(found->second.loans, this);
    }
  }
  copies.clear();
}

std::vector<std::string> HeldValues::Loan::GetNames() const {
  const MonitorLock lock(values.monitor);
  std::vector<std::string> names;
  for (const auto& [name, entry] : values.values) {
    const std::vector<const Loan*>& loans = entry.loans;
    if (std::find(loans.begin(), loans.end(), this) != loans.end()) names.push_back(name);
  }
  return names;
}

void HeldValues::Loan::Abandon() {
  const MonitorLock lock(values.monitor);
  isAbandoned = true;
}

}  // namespace quenlatrix::host
