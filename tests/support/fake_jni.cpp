// The test VM for ThreadSanitizer, which shares no process with a real one: a table of what the
// plug-in calls, on a handful of classes. It ends the process where -Xcheck:jni would complain, and
// at each use of a reference that is deleted or another thread's. As in real VMs, a new global
// reference gets the number of the one that was deleted last.
#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/fake_classes.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::test {

namespace {

using namespace fake;

[[noreturn]] void Fail(const char* misuse) {
  std::fprintf(stderr, "FATAL ERROR in native method: %s\n", misuse);
  std::abort();
}

// References are numbers: a global one's its place, a multiple of 8; a local one's odd.
std::mutex globalsLock;
std::vector<ObjectPtr> globals;
std::vector<std::size_t> freePlaces;

template <class Reference>
Reference Named(std::uintptr_t number) {
  return reinterpret_cast<Reference>(number);  // NOLINT(performance-no-int-to-ptr)
}
std::uintptr_t NumberOf(jobject reference) { return reinterpret_cast<std::uintptr_t>(reference); }
std::size_t PlaceOf(jobject global) { return NumberOf(global) / 8 - 1; }

// An attached thread.
struct FakeEnv : JNIEnv_ {
  std::map<std::uintptr_t, ObjectPtr> locals;
  std::vector<std::uintptr_t> frames;  // the number before each frame's first
  std::uintptr_t lastLocal = 0;        // local numbers begin with their thread's
  ObjectPtr pending;

  jobject NewLocal(ObjectPtr object) {
    if (object == nullptr) return nullptr;
    lastLocal += 8;
    locals[lastLocal] = std::move(object);
    return Named<jobject>(lastLocal);
  }

  void Throw(const std::string& text) {
    pending = fake::NewObject("java/lang/Throwable");
    pending->text = text;
  }

  ObjectPtr Resolve(jobject reference) const {
    ObjectPtr object;
    if (NumberOf(reference) % 2 != 0) {
      const auto found = locals.find(NumberOf(reference));
      if (found != locals.end()) object = found->second;
    } else {
      const std::lock_guard lock(globalsLock);
      if (PlaceOf(reference) < globals.size()) object = globals[PlaceOf(reference)];
    }
    if (object == nullptr) Fail("a reference that is null, deleted or of another thread");
    return object;
  }
};

thread_local std::unique_ptr<FakeEnv> attached;

FakeEnv& Here(JNIEnv* env) {
  if (env != attached.get()) Fail("an environment of another thread or from before a detach");
  return *attached;
}

// For what must not be called while an exception is pending.
FakeEnv& Calm(JNIEnv* env) {
  if (Here(env).pending != nullptr) Fail("a call with an exception pending");
  return *attached;
}

// Steps over a parameter's signature; whether it is a reference.
bool TakeParameter(const char*& code) {
  const bool isReference = *code == 'L' || *code == '[';
  code += std::strspn(code, "[");
  code = *code == 'L' ? std::strchr(code, ';') + 1 : code + 1;
  return isReference;
}

const Method& MethodOf(jmethodID id) { return *reinterpret_cast<const Method*>(id); }

Value Run(FakeEnv& env, const ObjectPtr& self, jmethodID id, const jvalue* arguments) {
  const Method& method = MethodOf(id);
  if (FindMethod(self->cls, method.name, method.signature) != &method)
    Fail("another class's method");
  Values values;
  for (const char* code = method.signature.c_str() + 1; *code != ')'; ++arguments) {
    if (!TakeParameter(code))
      values.push_back({nullptr, arguments->i});
    else
      values.push_back({arguments->l == nullptr ? nullptr : env.Resolve(arguments->l)});
  }
  try {
    return method.body(*self, values);
  } catch (const Thrown& thrown) {
    env.Throw(thrown.text);
    return {};
  }
}

template <class Result>
Result CallA(JNIEnv* env, jobject self, jmethodID id, const jvalue* arguments) {
  FakeEnv& here = Calm(env);
  const Value value = Run(here, here.Resolve(self), id, arguments);
  if constexpr (std::is_same_v<Result, jobject>)
    return here.NewLocal(value.object);
  else
    return static_cast<Result>(value.number);
}

template <class Result>
Result CallV(JNIEnv* env, jobject self, jmethodID id, va_list list) {
  std::vector<jvalue> arguments;
  for (const char* code = MethodOf(id).signature.c_str() + 1; *code != ')';) {
    arguments.emplace_back();
    if (TakeParameter(code))
      arguments.back().l = va_arg(list, jobject);
    else
      arguments.back().i = va_arg(list, jint);
  }
  return CallA<Result>(env, self, id, arguments.data());
}

void FillLookups(JNINativeInterface_& table) {
  table.FindClass = [](JNIEnv* env, const char* name) -> jclass {
    FakeEnv& here = Calm(env);
    const ObjectPtr found = FindClass(name);
    if (found != nullptr) return static_cast<jclass>(here.NewLocal(found));
    here.Throw("java.lang.NoClassDefFoundError");
    return nullptr;
  };
  table.GetMethodID = [](JNIEnv* env, jclass cls, const char* name, const char* signature) {
    FakeEnv& here = Calm(env);
    const Method* const method = FindMethod(here.Resolve(cls)->described, name, signature);
    if (method == nullptr) here.Throw("java.lang.NoSuchMethodError");
    return reinterpret_cast<jmethodID>(const_cast<Method*>(method));
  };
  table.ToReflectedMethod = [](JNIEnv* env, jclass cls, jmethodID, jboolean) {
    Calm(env).Resolve(cls);
    return Here(env).NewLocal(NewObject("java/lang/reflect/Constructor"));
  };
  table.GetObjectClass = [](JNIEnv* env, jobject object) {
    FakeEnv& here = Calm(env);
    return static_cast<jclass>(here.NewLocal(FindClass(here.Resolve(object)->cls->name)));
  };
  table.IsSameObject = [](JNIEnv* env, jobject one, jobject other) -> jboolean {
    return Calm(env).Resolve(one) == Here(env).Resolve(other);
  };
  table.NewObjectA = [](JNIEnv* env, jclass cls, jmethodID constructor, const jvalue* arguments) {
    FakeEnv& here = Calm(env);
    const auto object = NewObject(here.Resolve(cls)->described->name);
    Run(here, object, constructor, arguments);
    return here.NewLocal(object);
  };
  table.CallObjectMethodA = CallA<jobject>;
  table.CallBooleanMethodA = CallA<jboolean>;
  table.CallIntMethodA = CallA<jint>;
  table.CallObjectMethodV = CallV<jobject>;
  table.CallBooleanMethodV = CallV<jboolean>;
  table.CallIntMethodV = CallV<jint>;
  table.ExceptionOccurred = [](JNIEnv* env) {
    return static_cast<jthrowable>(Here(env).NewLocal(Here(env).pending));
  };
  table.ExceptionCheck = [](JNIEnv* env) -> jboolean { return Here(env).pending != nullptr; };
  table.ExceptionClear = [](JNIEnv* env) { Here(env).pending = nullptr; };
}

void FillReferences(JNINativeInterface_& table) {
  table.NewGlobalRef = [](JNIEnv* env, jobject reference) -> jobject {
    if (reference == nullptr) return nullptr;
    ObjectPtr object = Calm(env).Resolve(reference);
    const std::lock_guard lock(globalsLock);
    if (freePlaces.empty()) {
      freePlaces.push_back(globals.size());
      globals.emplace_back();
    }
    const std::size_t place = freePlaces.back();
    freePlaces.pop_back();
    globals[place] = std::move(object);
    return Named<jobject>((place + 1) * 8);
  };
  table.DeleteGlobalRef = [](JNIEnv* env, jobject reference) {
    Here(env).Resolve(reference);
    const std::lock_guard lock(globalsLock);
    globals[PlaceOf(reference)] = nullptr;
    freePlaces.push_back(PlaceOf(reference));
  };
  // Classes are never unloaded here.
  table.NewWeakGlobalRef = table.NewGlobalRef;
  table.DeleteWeakGlobalRef = table.DeleteGlobalRef;
  table.NewLocalRef = [](JNIEnv* env, jobject reference) {
    return reference == nullptr ? nullptr : Calm(env).NewLocal(Here(env).Resolve(reference));
  };
  table.DeleteLocalRef = [](JNIEnv* env, jobject reference) {
    if (Here(env).locals.erase(NumberOf(reference)) == 0) Fail("no local reference to delete");
  };
  table.EnsureLocalCapacity = [](JNIEnv* env, jint) {
    Calm(env);
    return JNI_OK;
  };
  table.PushLocalFrame = [](JNIEnv* env, jint) {
    Calm(env).frames.push_back(Here(env).lastLocal);
    return JNI_OK;
  };
  table.PopLocalFrame = [](JNIEnv* env, jobject result) {
    FakeEnv& here = Here(env);
    const ObjectPtr kept = result == nullptr ? nullptr : here.Resolve(result);
    here.locals.erase(here.locals.upper_bound(here.frames.back()), here.locals.end());
    here.frames.pop_back();
    return here.NewLocal(kept);
  };
}

void FillData(JNINativeInterface_& table) {
  table.NewStringUTF = [](JNIEnv* env, const char* text) {
    return static_cast<jstring>(Calm(env).NewLocal(NewString(text)));
  };
  table.GetStringLength = [](JNIEnv* env, jstring text) {
    return static_cast<jsize>(Calm(env).Resolve(text)->text.size());
  };
  table.GetStringUTFLength = table.GetStringLength;
  table.GetStringRegion = [](JNIEnv* env, jstring text, jsize start, jsize length, jchar* units) {
    std::copy_n(Calm(env).Resolve(text)->text.begin() + start, length, units);
  };
  table.GetStringUTFChars = [](JNIEnv* env, jstring text, jboolean*) -> const char* {
    return strdup(Calm(env).Resolve(text)->text.c_str());
  };
  table.ReleaseStringUTFChars = [](JNIEnv* env, jstring text, const char* chars) {
    Here(env).Resolve(text);
    std::free(const_cast<char*>(chars));
  };
  table.NewObjectArray = [](JNIEnv* env, jsize length, jclass, jobject) {
    const ObjectPtr array = NewObject("[Ljava/lang/String;");
    array->elements.resize(static_cast<std::size_t>(length));
    return static_cast<jobjectArray>(Calm(env).NewLocal(array));
  };
  table.GetObjectArrayElement = [](JNIEnv* env, jobjectArray array, jsize index) {
    FakeEnv& here = Calm(env);
    return here.NewLocal(here.Resolve(array)->elements.at(static_cast<std::size_t>(index)));
  };
  table.NewIntArray = [](JNIEnv* env, jsize length) {
    const ObjectPtr array = NewObject("[I");
    array->numbers.resize(static_cast<std::size_t>(length));
    return static_cast<jintArray>(Calm(env).NewLocal(array));
  };
  table.GetIntArrayElements = [](JNIEnv* env, jintArray array, jboolean*) {
    return Calm(env).Resolve(array)->numbers.data();
  };
  table.ReleaseIntArrayElements = [](JNIEnv* env, jintArray array, jint*, jint) {
    Here(env).Resolve(array);
  };
}

JNINativeInterface_ MakeTable() {
  JNINativeInterface_ table = {};  // an entry that isn't here crashes
  FillLookups(table);
  FillReferences(table);
  FillData(table);
  return table;
}

jint Attach(JavaVM*, void** env, void*) {
  static const JNINativeInterface_ table = MakeTable();
  static std::atomic<std::uintptr_t> threads = 0;
  if (attached == nullptr) {
    attached = std::make_unique<FakeEnv>();
    attached->functions = &table;
    attached->lastLocal = (threads.fetch_add(1, std::memory_order_relaxed) + 1) << 40 | 1;
  }
  *env = attached.get();
  return JNI_OK;
}

jint Detach(JavaVM*) {
  if (attached == nullptr || attached->pending != nullptr) Fail("a detach that nobody waits for");
  if (!attached->locals.empty()) Fail("local references are left");
  attached.reset();
  return JNI_OK;
}

}  // namespace

JavaVM* TestVm::Get() {
  static const JNIInvokeInterface_ table = {.reserved0 = nullptr,
                                            .reserved1 = nullptr,
                                            .reserved2 = nullptr,
                                            .DestroyJavaVM = nullptr,
                                            .AttachCurrentThread = Attach,
                                            .DetachCurrentThread = Detach,
                                            .GetEnv = nullptr,
                                            .AttachCurrentThreadAsDaemon = nullptr};
  static JavaVM vm = {&table};
  return &vm;
}

}  // namespace quenlatrix::test
