#include "meta_object/handlers/bean/plugin_state.h"

#include <memory>

#include "meta_object/handlers/bean/bean_handler.h"
#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/java_types.h"

using quenlatrix::meta_object::Environment;
using quenlatrix::meta_object::handlers::bean::BeanHandlerInfo;
using quenlatrix::meta_object::handlers::bean::UntilUnloaded;

namespace quenlatrix::meta_object::handlers::bean {

// What a library registers for its own unloading runs before the destructors of its statics then.
// At the process's end these come first.
bool isUnloading = false;
[[gnu::destructor]] static void NoteUnloading() { isUnloading = true; }

JavaVM* _pJavaVM = nullptr;

const UntilUnloaded<WideString> strEmptyString("4DCDFAD3_25A9_11D3_8062_00C04F5219CB");
const UntilUnloaded<WideString> strStringType(StringType);

}  // namespace quenlatrix::meta_object::handlers::bean

[[gnu::visibility("default")]] Environment* _pEnvironment = nullptr;
[[gnu::visibility("default")]] UntilUnloaded<BeanHandlerInfo> _HandlerInfo;
UntilUnloaded<JarPathBeanSet> _JarPathBeanSet;

namespace quenlatrix::meta_object::handlers::bean {

UntilUnloaded<TlsValue<unsigned long>> TlsJniAttachCount;
// Needs "/dev/zero": without it no lock of it is granted.
UntilUnloaded<UGuard> _mutexClassPathFile(Mutex::Shared);
UntilUnloaded<PluginMutex> classPathTurn;
UntilUnloaded<LiveReferences> liveReferences;
UntilUnloaded<OrphanedReferences> orphanedReferences;
UntilUnloaded<KeptLookups> keptLookups;

BeanHandler* AllocHandlerObject() {
  auto handler = std::make_unique<BeanHandler>();
  if (_pEnvironment != nullptr) {
    _pEnvironment->GCRegHandlerObject(handler.get(), _HandlerInfo->moduleHandle);
  }
  return handler.release();
}

}  // namespace quenlatrix::meta_object::handlers::bean
