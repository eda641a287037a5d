#include "meta_object/handlers/bean/bean_handler.h"

#include <memory>

#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_lookup.h"
#include "meta_object/handlers/bean/java_thread.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/no_throw.h"
#include "meta_object/type/object.h"

namespace quenlatrix::meta_object::handlers::bean {

BeanHandler::BeanHandler() = default;

// The references belong to whoever released or didn't release this handler; only the right to pass
// them as arguments ends here.
BeanHandler::~BeanHandler() { liveReferences->Remove(objectRef); }

std::shared_ptr<const Identity> BeanHandler::GetIdentity() {
  const MutexLock lock(objectLock);
  if (identityCopy == nullptr || identityCopy->identity != objectIdentity.identity) {
    identityCopy = std::make_shared<const Identity>(objectIdentity);
  }
  return identityCopy;
}

bool BeanHandler::IsHandlerAvailable(const char* objectName) const {
  return NoThrow(false, [objectName] { return IsValidBeanName(objectName); });
}

bool BeanHandler::IsHandlerClassAvailable() {
  return NoThrow(false, [] {
    JavaThread const thread;
    return thread && FindJavaClass(thread.Get(), "BeanHandler");
  });
}

bool BeanHandler::IsJavaExceptionHappened(JNIEnv* env) {
  return bean::IsJavaExceptionHappened(env, nullptr);
}

const info::HandlerInfo* BeanHandler::GetHandlerInfo() const { return &*_HandlerInfo; }

void BeanHandler::Release(std::list<WideString>* ids) { delete ids; }
void BeanHandler::Release(std::list<info::MethodInfo*>* methodInfos) { delete methodInfos; }
void BeanHandler::Release(std::list<type::Object*>* values) { delete values; }
void BeanHandler::Release(std::list<info::ParamInfo*>* paramInfos) { delete paramInfos; }
void BeanHandler::Release(info::MethodInfo* methodInfo) { delete methodInfo; }
void BeanHandler::Release(type::Object* value) { delete value; }
void BeanHandler::Release(info::ParamInfo* paramInfo) { delete paramInfo; }
void BeanHandler::Release(info::ObjectInfo* objectInfo) { delete objectInfo; }

}  // namespace quenlatrix::meta_object::handlers::bean
