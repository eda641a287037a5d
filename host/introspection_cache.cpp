#include "host/introspection_cache.h"

#include <charconv>
#include <cstddef>
#include <utility>
#include <vector>

#include "host/class_facts.h"
#include "meta_object/identity.h"

namespace quenlatrix::host {

namespace cache = meta_object::info::cache;
using meta_object::Identity;

namespace {

// Position in "kind:name:position"; false when the text isn't of that form.
bool ReadPosition(std::string_view methodId, std::size_t& position) {
  const std::size_t kindEnd = methodId.find(':');
  const std::size_t nameEnd =
      kindEnd == std::string_view::npos ? kindEnd : methodId.find(':', kindEnd + 1);
  if (nameEnd == std::string_view::npos || kindEnd == 0 || nameEnd == kindEnd + 1) {
    return false;
  }
  const std::string_view digits = methodId.substr(nameEnd + 1);
  return std::from_chars(digits.data(), digits.data() + digits.size(), position).ec == std::errc();
}

const std::string& KeyOf(const Identity& identity) {
  const bool isToldApart = !identity.attributes.empty() &&
                           identity.FindAttribute(ClassFacts::kIdentityAttribute) != nullptr;
  return isToldApart ? identity.identity : identity.core;
}

}  // namespace

struct IntrospectionCache::Entry {
  enum class State { Empty, Filling, Filled };

  State state = State::Empty;
  // While filling: who does it, and how often that thread has opened the class.
  std::thread::id filler;
  int opened = 0;
  // The record's pointers lend what `methods` owns.
  std::vector<std::unique_ptr<cache::CachedMethodInfo>> methods;
  cache::CachedObjectInfo record;

  bool IsFilledByThisThread() const {
    return state == State::Filling && filler == std::this_thread::get_id();
  }
  void EndFill(bool succeeded) {
    state = succeeded ? State::Filled : State::Empty;
    if (!succeeded) {
      record.methods.clear();
      methods.clear();
    }
  }
};

IntrospectionCache::IntrospectionCache() = default;
IntrospectionCache::~IntrospectionCache() = default;

IntrospectionCache::Entry* IntrospectionCache::Find(const Identity& identity) {
  const auto found = entries.find(KeyOf(identity));
  return found == entries.end() ? nullptr : found->second.get();
}

bool IntrospectionCache::Open(const Identity& identity, bool& mustIntrospect) {
  mustIntrospect = false;
  const MonitorLock lock(monitor);
  std::unique_ptr<Entry>& place = entries[KeyOf(identity)];
  if (place == nullptr) {
    place = std::make_unique<Entry>();
  }
  Entry& entry = *place;
  if (entry.IsFilledByThisThread()) {
    // Counted all the same: whoever opened closes, also after a refusal.
    ++entry.opened;
    return false;
  }
  while (entry.state == Entry::State::Filling) {
    monitor.Wait();
  }
  if (entry.state == Entry::State::Empty) {
    entry.state = Entry::State::Filling;
    entry.filler = std::this_thread::get_id();
    entry.opened = 1;
    mustIntrospect = true;
  }
  return true;
}

bool IntrospectionCache::Done(const Identity& identity, bool succeeded) {
  const MonitorLock lock(monitor);
  Entry* entry = Find(identity);
  if (entry == nullptr || !entry->IsFilledByThisThread()) {
    return false;
  }
  entry->EndFill(succeeded);
  monitor.NotifyAll();
  return true;
}

bool IntrospectionCache::Close(const Identity& identity) {
  const MonitorLock lock(monitor);
  Entry* entry = Find(identity);
  if (entry == nullptr) {
    return false;
  }
  if (entry->IsFilledByThisThread() && --entry->opened == 0) {
    entry->EndFill(false);
    monitor.NotifyAll();
  }
  return true;
}

bool IntrospectionCache::Add(const Identity& identity, const cache::CachedMethodInfo& method) {
  auto copy = std::make_unique<cache::CachedMethodInfo>(method);
  const MonitorLock lock(monitor);
  Entry* entry = Find(identity);
  if (entry == nullptr || !entry->IsFilledByThisThread()) {
    return false;
  }
  entry->record.methods.reserve(entry->methods.size() + 1);
  entry->methods.push_back(std::move(copy));
  entry->record.methods.push_back(entry->methods.back().get());
  return true;
}

void IntrospectionCache::Forget(const std::string& identity) {
  const MonitorLock lock(monitor);
  const auto found = entries.find(identity);
  if (found != entries.end() && found->second->state != Entry::State::Filling) {
    entries.erase(found);
  }
}

const cache::CachedObjectInfo* IntrospectionCache::GetObject(const Identity& identity) {
  const MonitorLock lock(monitor);
  const Entry* entry = Find(identity);
  return entry != nullptr && entry->state == Entry::State::Filled ? &entry->record : nullptr;
}

const cache::CachedMethodInfo* IntrospectionCache::GetMethod(const Identity& identity,
                                                             const char* methodId) {
  std::size_t position = 0;
  if (methodId == nullptr || !ReadPosition(methodId, position)) {
    return nullptr;
  }
  const cache::CachedObjectInfo* record = GetObject(identity);
  return record != nullptr && position < record->methods.size() ? record->methods[position]
                                                                : nullptr;
}

}  // namespace quenlatrix::host
