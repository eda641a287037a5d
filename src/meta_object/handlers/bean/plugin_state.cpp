#include "meta_object/handlers/bean/plugin_state.h"

#include <memory>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/java_types.h"

using quenlatrix::meta_object::Environment;
using quenlatrix::meta_object::handlers::bean::BeanHandlerInfo;

namespace quenlatrix::meta_object::handlers::bean {

JavaVM* _pJavaVM = nullptr;

const WideString strEmptyString("4DCDFAD3_25A9_11D3_8062_00C04F5219CB");
const WideString strStringType(StringType);

}  // namespace quenlatrix::meta_object::handlers::bean

[[gnu::visibility("default")]] Environment* _pEnvironment = nullptr;
[[gnu::visibility("default")]] BeanHandlerInfo _HandlerInfo;
JarPathBeanSet _JarPathBeanSet;

namespace quenlatrix::meta_object::handlers::bean {

TlsValue<unsigned long> TlsJniAttachCount;
// Needs "/dev/zero": without it the library can't be loaded.
UGuard _mutexClassPathFile(Mutex::Shared);
StaticMutex classPathTurn;
LiveReferences liveReferences;
OrphanedReferences orphanedReferences;
KeptLookups keptLookups;

BeanHandler* AllocHandlerObject() {
  auto handler = std::make_unique<BeanHandler>();
  if (_pEnvironment != nullptr) {
    _pEnvironment->GCRegHandlerObject(handler.get(), _HandlerInfo.moduleHandle);
  }
  return handler.release();
}

}  // namespace quenlatrix::meta_object::handlers::bean
