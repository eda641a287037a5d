#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

// Runs a piece of work on a real VM once for each call in it that can fail, with that call failing
// as a VM fails when memory runs out, and sees that nothing is broken by it.
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

  // Each run has a new image of the plug-in, so that what it keeps is looked up again.
  void Sweep(const Scenario& scenario);

  // A new handler that an action may leave with its one reference.
  meta_object::Handler& Keep();
  using PluginTest::host;
  using PluginTest::Make;

 private:
  struct Outcome {
    std::string text;
    std::string again;  // what came of the same work afterwards, unhindered
    int calls = 0;      // that can fail
    int globals = 0;    // references that are left
  };

  Outcome Run(const Scenario& scenario, FaultyJni::Fault fault, int faultAt);
  // Prepares the work, does it as `how` says and releases what was prepared.
  std::string Act(const Scenario& scenario, const std::function<std::string(const Action&)>& how);
  // A new image of the plug-in, without handlers but the fixture's.
  void Renew();

  std::vector<meta_object::Handler*> kept;
};

}  // namespace quenlatrix::test
