#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "host/monitor.h"

namespace quenlatrix::meta_object {
class Handler;
}

namespace quenlatrix::host {

// Keeps every handler that the plug-ins make and frees those whose reference count has come to 0.
// Any thread may call any operation but ReleaseAll, which belongs to the single-threaded end.
class Collector {
 public:
  using FreeHandler = std::function<void(meta_object::Handler* handler, const void* owner)>;

  // `freeHandler` ends a handler of that owner. `threshold`: a registration that brings the number
  // of handlers to it collects by itself; what survives sets the next one (twice as many, at least
  // `threshold`).
  explicit Collector(FreeHandler freeHandler, std::size_t threshold = 1024);
  ~Collector();
  Collector(const Collector&) = delete;
  Collector& operator=(const Collector&) = delete;

  // `owner` says who frees the handler; it is only handed on.
  void Register(meta_object::Handler* handler, const void* owner);
  // Takes a handler out of the collector's sight until it is registered again: one whose lock will
  // be held for long (its object's constructor runs), which a collection must not wait for. False
  // when a collection is looking at it just now; it is then not to be registered again.
  bool Withdraw(meta_object::Handler* handler);

  // Frees every handler with a count of 0; how many.
  std::size_t Collect();
  // Releases what is still held and frees every handler; how many were still held.
  std::size_t ReleaseAll();
  // How many handlers are kept.
  std::size_t GetCount() const;

 private:
  struct Kept {
    meta_object::Handler* handler;
    const void* owner;
  };

  FreeHandler freeHandler;
  const std::size_t threshold;
  mutable Monitor monitor;
  std::vector<Kept> handlers GUARDED_BY(monitor);
  std::size_t nextCollection GUARDED_BY(monitor);
};

}  // namespace quenlatrix::host
