#include <string>
#include <utility>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/java_text.h"
#include "meta_object/handlers/bean/java_thread.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/info/security_info.h"
#include "meta_object/no_throw.h"

namespace quenlatrix::meta_object::handlers::bean {

bool BeanHandler::CheckSecurity(const char* identity, context::CreateObjectContext*) {
  if (_pEnvironment == nullptr || _pEnvironment->checkSecurity == nullptr) {
    return true;
  }
  info::SecurityInfo security;
  const Identity parsed(identity);
  if (const char* const handlerType = _HandlerInfo->GetHandlerType()) {
    security.firstValue = handlerType;
  }
  security.secondValue = parsed.handlerData;
  return _pEnvironment->checkSecurity(&security);
}

HandlerStatus BeanHandler::CreateObjectImp(const char* identity,
                                           context::CreateObjectContext* context) {
  return NoThrow(handler_status::kObjectNotMade, [&] {
    if (!CheckSecurity(identity, context)) {
      return handler_status::kRefused;
    }
    SetIdentity(identity);
    std::string className;
    {
      const MutexLock lock(objectLock);
      if (!objectIdentity.IsValid()) {
        return handler_status::kInvalidIdentity;
      }
      className = objectIdentity.handlerData;
    }
    JavaThread const thread;
    return thread ? MakeInstance(thread.Get(), std::move(className))
                  : handler_status::kObjectNotMade;
  });
}

HandlerStatus BeanHandler::MakeInstance(JNIEnv* env, std::string className) {
  const JavaUtf8 slashName(dotsToSlashes(className.data()));
  if (slashName.Get() == nullptr) {
    return handler_status::kObjectNotMade;
  }
  auto cls = FindJavaClass(env, slashName.Get());
  if (!cls) {
    return handler_status::kObjectNotMade;
  }
  const jmethodID constructor = keptLookups->FindPublicConstructor(env, cls.Get(), slashName.Get());
  if (constructor == nullptr) {
    return handler_status::kObjectNotMade;
  }
  const auto instance = NewJavaObject(env, cls.Get(), constructor, nullptr);
  if (!instance) {
    return handler_status::kObjectNotMade;
  }
  auto classReference = GlobalRef<jclass>::Make(env, cls.Get());
  cls.Reset();
  bean::IsJavaExceptionHappened(env, nullptr);
  auto objectReference = GlobalRef<jobject>::Make(env, instance.Get());
  if (bean::IsJavaExceptionHappened(env, nullptr) || !objectReference) {
    return handler_status::kObjectNotMade;
  }
  Bind(objectReference.Get(), classReference.Get());
  static_cast<void>(objectReference.Release());
  static_cast<void>(classReference.Release());
  return handler_status::kSuccess;
}

HandlerStatus BeanHandler::ReleaseObjectImp() {
  return NoThrow(handler_status::kLastReferenceReleased, [this] {
    JavaThread const thread;
    const jobject object = objectRef;
    const jclass cls = classRef;
    // Nobody acquires the object from here on.
    Bind(nullptr, nullptr);
    if (thread) {
      GlobalRef<jobject>::Adopt(thread.Get(), object).Reset();
      GlobalRef<jclass>::Adopt(thread.Get(), cls).Reset();
      orphanedReferences->DeleteAll(thread.Get());
    } else {
      NoThrow([&] {
        orphanedReferences->Add(object);
        orphanedReferences->Add(cls);
      });
    }
    SetIdentity(nullptr);
    UnbindObject();
    return handler_status::kLastReferenceReleased;
  });
}

HandlerStatus BeanHandler::BindObject(void* object, const char* identity) {
  return NoThrow(handler_status::kNothingToBind, [&] {
    if (object == nullptr) {
      return handler_status::kNothingToBind;
    }
    JavaThread const thread;
    if (!thread) {
      return handler_status::kNothingToBind;
    }
    JNIEnv* const env = thread.Get();
    auto* const instance = static_cast<jobject>(object);
    SetIdentity(identity);
    auto const cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(instance));
    auto classReference = GlobalRef<jclass>::Make(env, cls.Get());
    bean::IsJavaExceptionHappened(env, nullptr);
    Bind(instance, classReference.Get());
    static_cast<void>(classReference.Release());
    return handler_status::kSuccess;
  });
}

void BeanHandler::UnbindObject() {
  NoThrow([this] {
    Bind(nullptr, nullptr);
    SetIdentity(nullptr);
  });
}

void BeanHandler::Bind(jobject object, jclass cls) {
  const LiveInstance bound = liveReferences->Add(object);
  if (objectRef != object) {
    liveReferences->Remove(objectRef);
  }
  serial = bound.serial;
  classRef = cls;
  objectRef = object;
}

}  // namespace quenlatrix::meta_object::handlers::bean
