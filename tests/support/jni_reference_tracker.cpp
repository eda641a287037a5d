#include "tests/support/jni_reference_tracker.h"

#include <algorithm>
#include <utility>

namespace quenlatrix::test {

namespace {

using Table = JNINativeInterface_;

thread_local JniReferenceTracker* current = nullptr;

// What Java's own native code makes goes when it returns: none of the test's business.
template <auto Entry, class Result, class... Args>
Result RunsJava(JNIEnv* env, Args... args) {
  struct Pause {
    bool before = std::exchange(isJavaRunning, true);
    ~Pause() { isJavaRunning = before; }
  };
  const Pause pause;
  return (current->Original().*Entry)(env, args...);
}

template <auto Entry, class Reference, class... Args>
Reference MakesLocal(JNIEnv* env, Args... args) {
  const Reference reference = RunsJava<Entry, Reference>(env, args...);
  current->NoteLocal(reference);
  return reference;
}

// Patches one entry that gives out a local reference; its type follows from the entry.
template <auto Entry>
struct LocalMaker {
  template <class Reference, class... Args>
  static void Patch(Table& table, Reference (*Table::*)(JNIEnv*, Args...)) {
    table.*Entry = &MakesLocal<Entry, Reference, Args...>;
  }
};

// Patches one entry that may run Java code.
template <auto Entry>
struct JavaRunner {
  template <class Result, class... Args>
  static void Patch(Table& table, Result (*Table::*)(JNIEnv*, Args...)) {
    table.*Entry = &RunsJava<Entry, Result, Args...>;
  }
};

template <template <auto> class Patcher, auto... Entries>
void PatchAll(Table& table) {
  (Patcher<Entries>::Patch(table, Entries), ...);
}

jobject NewGlobalRef(JNIEnv* env, jobject object) {
  const jobject reference = current->Original().NewGlobalRef(env, object);
  current->NoteGlobal(reference);
  return reference;
}

void DeleteGlobalRef(JNIEnv* env, jobject reference) {
  current->ForgetGlobal(reference);
  current->Original().DeleteGlobalRef(env, reference);
}

void DeleteLocalRef(JNIEnv* env, jobject reference) {
  current->ForgetLocal(reference);
  current->Original().DeleteLocalRef(env, reference);
}

jint PushLocalFrame(JNIEnv* env, jint capacity) {
  const jint answer = current->Original().PushLocalFrame(env, capacity);
  if (answer == JNI_OK) {
    current->PushFrame();
  }
  return answer;
}

jobject PopLocalFrame(JNIEnv* env, jobject result) {
  const jobject kept = current->Original().PopLocalFrame(env, result);
  current->PopFrame();
  current->NoteLocal(kept);
  return kept;
}

}  // namespace

JniReferenceTracker::JniReferenceTracker(JNIEnv* env, SharedGlobals* shared)
    : env(env), patch(env), globals(shared == nullptr ? own : *shared), frames(1) {
  current = this;
  Table& table = patch.Table();
  PatchAll<LocalMaker, &Table::FindClass, &Table::DefineClass, &Table::ToReflectedMethod,
           &Table::ToReflectedField, &Table::GetSuperclass, &Table::ExceptionOccurred,
           &Table::NewLocalRef, &Table::AllocObject, &Table::NewObjectV, &Table::NewObjectA,
           &Table::GetObjectClass, &Table::CallObjectMethodV, &Table::CallObjectMethodA,
           &Table::CallNonvirtualObjectMethodV, &Table::CallNonvirtualObjectMethodA,
           &Table::GetObjectField, &Table::CallStaticObjectMethodV, &Table::CallStaticObjectMethodA,
           &Table::GetStaticObjectField, &Table::NewString, &Table::NewStringUTF,
           &Table::NewObjectArray, &Table::GetObjectArrayElement, &Table::NewBooleanArray,
           &Table::NewByteArray, &Table::NewCharArray, &Table::NewShortArray, &Table::NewIntArray,
           &Table::NewLongArray, &Table::NewFloatArray, &Table::NewDoubleArray,
           &Table::NewDirectByteBuffer>(table);
  PatchAll<JavaRunner, &Table::GetMethodID, &Table::GetStaticMethodID, &Table::CallBooleanMethodV,
           &Table::CallBooleanMethodA, &Table::CallByteMethodA, &Table::CallCharMethodA,
           &Table::CallShortMethodA, &Table::CallIntMethodV, &Table::CallIntMethodA,
           &Table::CallLongMethodA, &Table::CallFloatMethodA, &Table::CallDoubleMethodA,
           &Table::CallVoidMethodV, &Table::CallVoidMethodA, &Table::ThrowNew>(table);
  table.NewGlobalRef = NewGlobalRef;
  table.DeleteGlobalRef = DeleteGlobalRef;
  table.DeleteLocalRef = DeleteLocalRef;
  table.PushLocalFrame = PushLocalFrame;
  table.PopLocalFrame = PopLocalFrame;
}

JniReferenceTracker::~JniReferenceTracker() { current = nullptr; }

int JniReferenceTracker::LiveLocals() const {
  int live = 0;
  for (const std::set<jobject>& frame : frames) {
    live += static_cast<int>(frame.size());
  }
  return live;
}

int JniReferenceTracker::Left() const {
  return LiveLocals() + LiveGlobals() + OpenFrames() + (env->ExceptionCheck() ? 1 : 0);
}

void JniReferenceTracker::NoteLocal(jobject reference) {
  if (!isJavaRunning && reference != nullptr) {
    frames.back().insert(reference);
    ++localsMade;
    mostLocals = std::max(mostLocals, LiveLocals());
  }
}

void JniReferenceTracker::NoteGlobal(jobject reference) {
  if (!isJavaRunning && reference != nullptr) {
    globals.Note(reference);
    ++globalsMade;
  }
}

void JniReferenceTracker::ForgetLocal(jobject reference) {
  for (std::set<jobject>& frame : frames) {
    frame.erase(reference);
  }
}

void JniReferenceTracker::ForgetGlobal(jobject reference) { globals.Forget(reference); }

void JniReferenceTracker::PushFrame() {
  if (!isJavaRunning) {
    frames.emplace_back();
  }
}

void JniReferenceTracker::PopFrame() {
  if (!isJavaRunning && frames.size() > 1) {
    frames.pop_back();
  }
}

}  // namespace quenlatrix::test
