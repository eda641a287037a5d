#include "tests/faults/failure_sweep.h"

#include <algorithm>
#include <regex>

#include "tests/faults/faulty_allocations.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {

namespace {

using Table = JNINativeInterface_;

constexpr int kNever = -1;

template <bool throws, auto... Entries>
void LoseAll(Table& table) {
  (FaultyJni::Lose<Entries, throws>(table), ...);
}

// Every entry that the plug-in calls and that can fail, as a VM fails that throws for each.
void LoseAny(Table& table) {
  LoseAll<true, &Table::FindClass, &Table::GetMethodID, &Table::ToReflectedMethod,
          &Table::NewObjectV, &Table::NewObjectA, &Table::NewStringUTF, &Table::GetStringUTFChars,
          &Table::NewGlobalRef, &Table::NewLocalRef, &Table::PushLocalFrame,
          &Table::EnsureLocalCapacity, &Table::CallObjectMethodV, &Table::CallObjectMethodA,
          &Table::CallBooleanMethodV, &Table::CallBooleanMethodA, &Table::CallByteMethodA,
          &Table::CallCharMethodA, &Table::CallShortMethodA, &Table::CallIntMethodV,
          &Table::CallIntMethodA, &Table::CallLongMethodA, &Table::CallFloatMethodA,
          &Table::CallDoubleMethodA, &Table::CallVoidMethodV, &Table::CallVoidMethodA,
          &Table::NewObjectArray, &Table::GetObjectArrayElement, &Table::SetObjectArrayElement,
          &Table::NewBooleanArray, &Table::NewByteArray, &Table::NewCharArray,
          &Table::NewShortArray, &Table::NewIntArray, &Table::NewLongArray, &Table::NewFloatArray,
          &Table::NewDoubleArray, &Table::GetIntArrayElements, &Table::GetBooleanArrayRegion,
          &Table::GetByteArrayRegion, &Table::GetCharArrayRegion, &Table::GetShortArrayRegion,
          &Table::GetIntArrayRegion, &Table::GetLongArrayRegion, &Table::GetFloatArrayRegion,
          &Table::GetDoubleArrayRegion, &Table::SetBooleanArrayRegion, &Table::SetByteArrayRegion,
          &Table::SetCharArrayRegion, &Table::SetShortArrayRegion, &Table::SetIntArrayRegion,
          &Table::SetLongArrayRegion, &Table::SetFloatArrayRegion, &Table::SetDoubleArrayRegion>(
      table);
}

// Those for which many a VM throws nothing.
void LoseQuietly(Table& table) {
  LoseAll<false, &Table::GetStringUTFChars, &Table::NewGlobalRef, &Table::NewLocalRef,
          &Table::GetIntArrayElements, &Table::GetObjectClass>(table);
}

// All can be had but memory of our own.
void LoseAllocations(Table&) {}

int detaches = 0;
const JNIInvokeInterface_* healthyMachine = nullptr;

// Attaching can fail, where JNI calls do; a detach is counted only, as the patched table must
// outlive it.
void WatchAttaches(PatchedVm& machine) {
  detaches = 0;
  healthyMachine = &machine.Original();
  machine.Table().AttachCurrentThread = [](JavaVM* vm, void** env, void* arguments) -> jint {
    return !FaultyAllocations::AreCounted() && FaultyJni::IsTurn("AttachCurrentThread")
               ? JNI_ENOMEM
               : healthyMachine->AttachCurrentThread(vm, env, arguments);
  };
  machine.Table().DetachCurrentThread = [](JavaVM*) -> jint {
    ++detaches;
    return JNI_OK;
  };
}

}  // namespace

meta_object::Handler* FailureSweep::Keep() {
  meta_object::Handler* const handler = plugin->GetHandlerObject();
  if (handler != nullptr) kept.push_back(handler);
  return handler;
}

void FailureSweep::Unload() {
  TearDown();
  plugin.reset();
  host.registered.clear();
  host.cache.clear();
  EXPECT_EQ(FaultyAllocations::Live(), 0U) << "memory is left";
}

void FailureSweep::Reload() {
  Unload();
  SetUp();
  FaultyAllocations::Watch(plugin->handle);
}

std::string FailureSweep::Act(const Scenario& scenario, FaultyJni::Fault fault, int faultAt,
                              int& calls) {
  host.cache.clear();
  host.log.clear();
  kept.clear();
  const Action action = scenario.prepare(*this);
  kept.insert(kept.end(), host.registered.begin() + 1, host.registered.end());
  std::string text = "failed";
  {
    const FaultyJni faulty(Env(), fault, faultAt);
    const FaultyAllocations allocations(fault == LoseAllocations);
    EXPECT_NO_THROW(text = action());
    EXPECT_TRUE(faulty.HasFailed()) << "the failure never came";
    calls = faulty.Calls();
  }
  for (std::size_t i = 1; i < host.registered.size(); ++i) {
    meta_object::Handler* const handler = host.registered[i];
    const bool mayStay = std::ranges::count(kept, handler) != 0;
    EXPECT_LE(handler->GetReferenceCount(), mayStay ? 1U : 0U) << "a handler is left";
    handler->Release();
    plugin->FreeHandlerObject(handler);
  }
  host.registered.resize(1);
  return text;
}

FailureSweep::Outcome FailureSweep::Run(const Scenario& scenario, FaultyJni::Fault fault,
                                        int faultAt) {
  PatchedVm machine(TestVm::Get());
  WatchAttaches(machine);
  const JniReferenceTracker tracker(Env());
  Outcome outcome;
  outcome.text = Act(scenario, fault, faultAt, outcome.calls);
  EXPECT_EQ(Env()->ExceptionCheck(), JNI_FALSE);
  EXPECT_EQ(tracker.LiveLocals() + tracker.OpenFrames(), 0) << "local references are left";
  outcome.again = Act(scenario, fault, kNever, outcome.callsAgain);
  outcome.globals = tracker.LiveGlobals();
  // Undoes the fixture's attach, which is the last one, and makes it again.
  EXPECT_EQ(detaches, 0) << "detached too often";
  host.registered.front()->CloseIntrospect();
  EXPECT_EQ(detaches, 1) << "attached too often";
  host.registered.front()->OpenIntrospect(nullptr);
  return outcome;
}

void FailureSweep::Sweep(const Scenario& scenario) {
  SCOPED_TRACE(scenario.name);
  int calls = 0;
  for (const FaultyJni::Fault fault : {LoseAny, LoseQuietly, LoseAllocations}) {
    Reload();
    const Outcome whole = Run(scenario, fault, kNever);
    calls += whole.calls;
    ASSERT_FALSE(whole.text.starts_with("failed")) << "unhindered: " << whole.text;
    EXPECT_EQ(whole.again, whole.text);
    const std::regex promised(scenario.promised(whole.text));
    for (int faultAt = 0; faultAt < whole.calls; ++faultAt) {
      if (whole.callsAgain != whole.calls) Reload();
      const Outcome hindered = Run(scenario, fault, faultAt);
      const std::string& text = hindered.text;
      EXPECT_TRUE(text.starts_with("failed") || text == whole.text ||
                  std::regex_match(text, promised))
          << text << "\ninstead of " << whole.text;
      EXPECT_EQ(hindered.again, whole.text);
      EXPECT_EQ(hindered.globals, whole.globals);
      ASSERT_FALSE(HasFailure()) << "call " << faultAt << " failed: " << FaultyJni::Failed();
    }
  }
  EXPECT_GT(calls, 0);
  Unload();
}

}  // namespace quenlatrix::test
