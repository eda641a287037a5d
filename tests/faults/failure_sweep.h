#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

// Runs a piece of work on a real VM once for each JNI call and each allocation in it that can fail,
// with that one failing as it does when memory runs out, and sees that nothing is broken by it.
class FailureSweep : public PluginTest {
 public:
  // Gives a text of all that came of the work: one that begins with "failed" when an operation
  // said so.
  using Action = std::function<std::string()>;

  struct Scenario {
    std::string name;
    // Makes ready, unhindered, what the work needs.
    std::function<Action(FailureSweep&)> prepare;
    // The outcomes that are promised for a failure that the work survives: a regular expression,
    // made from the whole outcome. None by default.
    std::function<std::string(const std::string& whole)> promised = [](auto&) { return ""; };
  };

  // Work that costs less the second time has a new image of the plug-in for each run, so that what
  // is kept is looked up again.
  void Sweep(const Scenario& scenario);

  // A new handler that an action may leave with its one reference; null when there is no memory.
  meta_object::Handler* Keep();
  // Lets go of all that came from the plug-in, and of its image.
  void Unload();
  using PluginTest::host;
  using PluginTest::Introspect;
  using PluginTest::Make;

 private:
  struct Outcome {
    std::string text;
    std::string again;  // what came of the same work afterwards, unhindered
    int calls = 0;      // or allocations that can fail
    int callsAgain = 0;
    int globals = 0;  // references that are left
  };

  Outcome Run(const Scenario& scenario, FaultyJni::Fault fault, int faultAt);
  // Prepares the work, does it and releases what was prepared.
  std::string Act(const Scenario& scenario, FaultyJni::Fault fault, int faultAt, int& calls);
  void Reload();

  std::vector<meta_object::Handler*> kept;
};

}  // namespace quenlatrix::test
