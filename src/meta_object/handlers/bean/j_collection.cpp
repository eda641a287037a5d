#include "meta_object/handlers/bean/j_collection.h"

#include <utility>

#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/plugin_state.h"

namespace quenlatrix::meta_object::handlers::bean {

WalkedElements::~WalkedElements() {
  for (const jobject object : objects) {
    GlobalRef<jobject>::Adopt(env, object).Reset();
  }
}

void WalkedElements::Add(GlobalRef<jobject> element, const char* type, bool isOfNewClass) {
  objects.push_back(element.Get());
  static_cast<void>(element.Release());
  if (isOfNewClass || runs.empty()) {
    runs.push_back({type, 0});
  }
  runs.back().end = objects.size();
}

GlobalRef<jobject> WalkedElements::Take(std::size_t index) {
  return GlobalRef<jobject>::Adopt(env, std::exchange(objects[index], nullptr));
}

JCollection::~JCollection() { CloseCollection(); }

bool JCollection::SetCollection(LiveInstance collection, JNIEnv* env) {
  this->collection = collection;
  this->env = env;
  if (collection.reference == nullptr || env == nullptr) {
    return false;
  }
  return introspector.CreateIntrospector(env) && getIterator();
}

// The host may have released the instance since the walk was opened, and may do so at any time.
LocalRef<jobject> JCollection::Acquire() {
  return env == nullptr ? LocalRef<jobject>() : liveReferences->Acquire(env, collection);
}

bool JCollection::getIterator() {
  const auto held = Acquire();
  if (!held) {
    return false;
  }
  cleanIterator();
  if (FindIterator(held.Get())) {
    return true;
  }
  IsJavaExceptionHappened(env, nullptr);
  cleanIterator();
  return false;
}

bool JCollection::FindIterator(jobject held) {
  const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(held));
  if (!cls) {
    return false;
  }
  iteratorMethod = FindJavaMethod(env, cls.Get(), "iterator", "()Ljava/util/Iterator;");
  if (iteratorMethod == nullptr) {
    return false;
  }
  sizeMethod = FindJavaMethod(env, cls.Get(), "size", "()I");
  if (sizeMethod == nullptr) {
    return false;
  }
  const auto made = LocalRef<jobject>::Adopt(env, env->CallObjectMethod(held, iteratorMethod));
  if (IsJavaExceptionHappened(env, nullptr) || !made) {
    return false;
  }
  iterator = env->NewGlobalRef(made.Get());
  if (IsJavaExceptionHappened(env, nullptr) || iterator == nullptr) {
    return false;
  }
  const auto iteratorClass = LocalRef<jclass>::Adopt(env, env->GetObjectClass(iterator));
  if (!iteratorClass) {
    return false;
  }
  hasNextMethod = FindJavaMethod(env, iteratorClass.Get(), "hasNext", "()Z");
  if (hasNextMethod == nullptr) {
    return false;
  }
  nextMethod = FindJavaMethod(env, iteratorClass.Get(), "next", "()Ljava/lang/Object;");
  return nextMethod != nullptr;
}

bool JCollection::Reset() { return getIterator(); }

bool JCollection::IsCollection() const {
  return collection.reference != nullptr && env != nullptr && iteratorMethod != nullptr;
}

// False when hasNext() threw.
bool JCollection::HasNext(bool& has) {
  has = env->CallBooleanMethod(iterator, hasNextMethod) == JNI_TRUE;
  return !IsJavaExceptionHappened(env, nullptr);
}

bool JCollection::Next(int, WalkedElements& elements) {
  const auto held = Acquire();
  bool has = false;
  if (!held || iterator == nullptr || hasNextMethod == nullptr || nextMethod == nullptr ||
      !HasNext(has)) {
    return false;
  }
  // Neighbours are mostly of one class, whose name needn't be asked for again.
  ZuText type;
  LocalRef<jclass> typeClass;
  while (has) {
    auto object = LocalRef<jobject>::Adopt(env, env->CallObjectMethod(iterator, nextMethod));
    if (IsJavaExceptionHappened(env, nullptr) || !object) {
      return false;
    }
    auto reference = GlobalRef<jobject>::Make(env, object.Get());
    if (IsJavaExceptionHappened(env, nullptr) || !reference) {
      return false;
    }
    object.Reset();
    auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(reference.Get()));
    const bool isKnown = typeClass && env->IsSameObject(cls.Get(), typeClass.Get()) == JNI_TRUE;
    if (!isKnown && !GetObjectType(env, reference.Get(), type, introspector)) {
      return false;
    }
    typeClass = std::move(cls);
    if (!HasNext(has)) {
      return false;
    }
    if (type.GetSize() > 0) {
      elements.Add(std::move(reference), type.GetTextEx(), !isKnown);
    }
  }
  return true;
}

bool JCollection::GetObjectType(JNIEnv* env, jobject object, ZuText& type,
                                BeanIntrospector& introspector) {
  type.Clear();
  if (env == nullptr || object == nullptr) {
    return false;
  }
  const auto cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(object));
  const auto name = LocalRef<jstring>::Adopt(env, introspector.getClassName(env, cls.Get()));
  if (!name) {
    IsJavaExceptionHappened(env, nullptr);
    return false;
  }
  const auto length = static_cast<unsigned long>(env->GetStringUTFLength(name.Get()));
  if (length == 0) {
    return false;
  }
  const UtfChars chars(env, name.Get());
  if (chars.Get() == nullptr) {
    IsJavaExceptionHappened(env, nullptr);
    return false;
  }
  type.SetEqualTo(chars.Get(), length, 0);
  return type.GetSize() == length;
}

bool JCollection::Skip(int count) {
  const auto held = Acquire();
  if (!held || iterator == nullptr || hasNextMethod == nullptr || nextMethod == nullptr) {
    return false;
  }
  bool has = false;
  HasNext(has);
  for (int skipped = 0; skipped < count && has; ++skipped) {
    const auto object = LocalRef<jobject>::Adopt(env, env->CallObjectMethod(iterator, nextMethod));
    IsJavaExceptionHappened(env, nullptr);
    if (!object) {
      return true;
    }
    HasNext(has);
  }
  return true;
}

bool JCollection::GetSize(int& size) {
  const auto held = Acquire();
  if (!held) {
    return false;
  }
  const int told = sizeMethod == nullptr ? 0 : env->CallIntMethod(held.Get(), sizeMethod);
  size = IsJavaExceptionHappened(env, nullptr) ? 0 : told;
  return true;
}

bool JCollection::cleanIterator() {
  if (env != nullptr) {
    GlobalRef<jobject>::Adopt(env, iterator).Reset();
  }
  iterator = nullptr;
  ResetMethodIDs();
  return true;
}

void JCollection::ResetMethodIDs() {
  iteratorMethod = nullptr;
  hasNextMethod = nullptr;
  nextMethod = nullptr;
  sizeMethod = nullptr;
}

bool JCollection::CloseCollection() {
  if (env != nullptr) {
    introspector.DestroyIntrospector(env);
  }
  cleanIterator();
  collection = {};
  env = nullptr;
  return true;
}

}  // namespace quenlatrix::meta_object::handlers::bean
