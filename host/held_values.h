#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/bean_object.h"
#include "host/monitor.h"
#include "host/value_ptr.h"

namespace quenlatrix::host {

// What a name stands for: a bean, or a plain value of the type that its method declares.
struct Held {
  std::optional<BeanObject> object;
  ValuePtr value;
  meta_object::TypeDesc type;

  // The same with references of its own.
  Held Copy() const;
};

// The names that statements share, and what they hold. Any thread may call any operation; gone
// before its Host is.
class HeldValues {
 public:
  std::vector<std::string> GetNames() const;
  // The name that holds this very handler; empty when none does.
  std::string NameOf(const meta_object::Handler* handler) const;

  // One statement's use of names. It works on copies of what they hold, so that a statement that
  // nobody waits for any more and later ones don't meet; and the names that it has used stay held
  // until it ends: others can use them, and can't let them go or take them over. Abandon and
  // GetNames may be called by any thread, the rest by one.
  class Loan {
   public:
    explicit Loan(HeldValues& values) : values(values) {}
    ~Loan() { End(); }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    // The loan's copy; null when nothing is held under that name.
    Held* Find(const std::string& name);
    // The same, and the bean in it. Both throw HostError (Failed) when there is none.
    Held& Get(const std::string& name);
    BeanObject& GetObject(const std::string& name);
    // Throws HostError (Failed) when another loan uses the name.
    void RequireFree(const std::string& name) const;
    // Holds a new value under the name and releases what it held before; nothing of it after
    // Abandon. Throws as RequireFree does.
    void Keep(const std::string& name, Held newHeld);
    // Lets go; the handler's status, for a plain value the same as for a last reference. Throws
    // HostError (Failed) when nothing is held under that name, and as RequireFree does.
    std::uint32_t Release(const std::string& name);
    // Gives the copies back.
    void End();
    // From now on nothing that this loan keeps or releases counts.
    void Abandon();
    // The names that this loan uses just now. For any thread.
    std::vector<std::string> GetNames() const;

   private:
    HeldValues& values;
    std::map<std::string, Held> copies;
    bool isAbandoned GUARDED_BY(values.monitor) = false;
  };

 private:
  struct Entry {
    Held held;
    std::vector<const Loan*> loans;
  };

  void RefuseUsed(const std::string& name, const Loan* asking) const REQUIRES(monitor);
  [[noreturn]] void RefuseUnknown(const std::string& name) const REQUIRES(monitor);
  void ForgetNameOf(const Held& held, const std::string& name) REQUIRES(monitor);

  mutable Monitor monitor;
  std::map<std::string, Entry> values GUARDED_BY(monitor);
  // Of the handlers in `values`, so that a name is found without looking at all of them.
  std::set<std::pair<const meta_object::Handler*, std::string>> namesOfHandlers GUARDED_BY(monitor);
};

}  // namespace quenlatrix::host
