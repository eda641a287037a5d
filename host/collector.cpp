#include "host/collector.h"

#include <algorithm>
#include <utility>

#include "meta_object/handler.h"

namespace quenlatrix::host {

Collector::Collector(FreeHandler freeHandler, std::size_t threshold)
    : freeHandler(std::move(freeHandler)), threshold(threshold), nextCollection(threshold) {}

Collector::~Collector() { ReleaseAll(); }

void Collector::Register(meta_object::Handler* handler, const void* owner) {
  bool due = false;
  {
    const MonitorLock lock(monitor);
    handlers.push_back({handler, owner});
    due = handlers.size() >= nextCollection;
  }
  if (due) {
    Collect();
  }
}

bool Collector::Withdraw(meta_object::Handler* handler) {
  const MonitorLock lock(monitor);
  // A handler is withdrawn just after it was made, so it stands near the end.
  const auto place = std::find_if(handlers.rbegin(), handlers.rend(),
                                  [handler](const Kept& kept) { return kept.handler == handler; });
  if (place == handlers.rend()) {
    return false;
  }
  *place = handlers.back();
  handlers.pop_back();
  return true;
}

std::size_t Collector::Collect() {
  // A count is read under its handler's lock, so handlers are asked without holding ours.
  std::vector<Kept> examined;
  {
    const MonitorLock lock(monitor);
    examined.swap(handlers);
  }
  const auto dead = std::partition(examined.begin(), examined.end(), [](const Kept& kept) {
    return kept.handler->GetReferenceCount() != 0;
  });
  const auto freed = static_cast<std::size_t>(examined.end() - dead);
  std::for_each(dead, examined.end(),
                [this](const Kept& kept) { freeHandler(kept.handler, kept.owner); });
  examined.erase(dead, examined.end());
  const MonitorLock lock(monitor);
  handlers.insert(handlers.begin(), examined.begin(), examined.end());
  nextCollection = std::max(threshold, handlers.size() * 2);
  return freed;
}

std::size_t Collector::ReleaseAll() {
  std::vector<Kept> rest;
  {
    const MonitorLock lock(monitor);
    rest.swap(handlers);
  }
  std::size_t held = 0;
  for (const auto& [handler, owner] : rest) {
    held += handler->GetReferenceCount() != 0 ? 1 : 0;
    while (handler->GetReferenceCount() != 0) {
      handler->Release();
    }
    freeHandler(handler, owner);
  }
  return held;
}

std::size_t Collector::GetCount() const {
  const MonitorLock lock(monitor);
  return handlers.size();
}

}  // namespace quenlatrix::host
