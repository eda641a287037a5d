#include <string>

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
    objectIdentity.SetIdentity(identity);
    if (!objectIdentity.IsValid()) {
      return handler_status::kInvalidIdentity;
    }
    JavaThread const thread;
    return thread ? MakeInstance(thread.Get()) : handler_status::kObjectNotMade;
  });
}

HandlerStatus BeanHandler::MakeInstance(JNIEnv* env) {
  std::string className = objectIdentity.handlerData;
  const JavaUtf8 slashName(dotsToSlashes(className.data()));
  if (slashName.Get() == nullptr) {
    return handler_status::kObjectNotMade;
  }
  auto cls = FindJavaClass(env, slashName.Get());
  if (!cls) {
    return handler_status::kObjectNotMade;
  }
  const jmethodID constructor = FindJavaMethod(env, cls.Get(), "<init>", "()V");
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
  liveReferences->Add(objectReference.Get());
  classRef = classReference.Release();
  objectRef = objectReference.Release();
  return handler_status::kSuccess;
}

HandlerStatus BeanHandler::ReleaseObjectImp() {
  return NoThrow(handler_status::kLastReferenceReleased, [this] {
    JavaThread const thread;
    liveReferences->Remove(objectRef);
    if (thread) {
      GlobalRef<jobject>::Adopt(thread.Get(), objectRef).Reset();
      GlobalRef<jclass>::Adopt(thread.Get(), classRef).Reset();
      orphanedReferences->DeleteAll(thread.Get());
    } else {
      NoThrow([this] {
        orphanedReferences->Add(objectRef);
        orphanedReferences->Add(classRef);
      });
    }
    objectRef = nullptr;
    classRef = nullptr;
    objectIdentity.Clear();
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
    objectIdentity.SetIdentity(identity);
    auto const cls = LocalRef<jclass>::Adopt(env, env->GetObjectClass(instance));
    auto classReference = GlobalRef<jclass>::Make(env, cls.Get());
    bean::IsJavaExceptionHappened(env, nullptr);
    liveReferences->Remove(objectRef);
    liveReferences->Add(instance);
    objectRef = instance;
    classRef = classReference.Release();
    return handler_status::kSuccess;
  });
}

void BeanHandler::UnbindObject() {
  NoThrow([this] {
    liveReferences->Remove(objectRef);
    objectRef = nullptr;
    classRef = nullptr;
    objectIdentity.Clear();
  });
}

}  // namespace quenlatrix::meta_object::handlers::bean
