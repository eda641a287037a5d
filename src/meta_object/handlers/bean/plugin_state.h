#pragma once

#include <jni.h>

#include "meta_object/environment.h"
#include "meta_object/handler.h"
#include "meta_object/handlers/bean/bean_handler_info.h"
#include "meta_object/handlers/bean/kept_lookups.h"
#include "meta_object/handlers/bean/live_references.h"
#include "meta_object/handlers/bean/orphaned_references.h"
#include "meta_object/handlers/bean/u_guard.h"
#include "meta_object/handlers/bean/until_unloaded.h"
#include "os/mutex.h"
#include "os/tls_slot.h"
#include "text/wide_string.h"

// The state of the process's one plug-in. All of it is defined in one file, so that it is made and
// destroyed in one fixed order. A thread that outlives the end of the program finds it as it was;
// only unloading destroys it. The two pointers are the host's: stored once, during its
// single-threaded start-up, and never changed again.

// The host's services; null until SetEnvironment. Exported.
extern quenlatrix::meta_object::Environment* _pEnvironment;

// This handler's description; filled by InitHandler. Exported.
extern quenlatrix::meta_object::handlers::bean::UntilUnloaded<
    quenlatrix::meta_object::handlers::bean::BeanHandlerInfo>
    _HandlerInfo;

namespace quenlatrix::meta_object::handlers::bean {

// A mutex of the plug-in's own, destroyed when it is unloaded.
class PluginMutex : public StaticMutex {
 public:
  PluginMutex() : StaticMutex(Mutex::Private) {}
  PluginMutex(const PluginMutex&) = delete;
  PluginMutex& operator=(const PluginMutex&) = delete;
  ~PluginMutex() { DestroyMutex(); }
};

// The running VM; null until SetJavaVM.
extern JavaVM* _pJavaVM;

// How often each thread is attached.
extern UntilUnloaded<TlsValue<unsigned long>> TlsJniAttachCount;

// Stands for an empty Java string in a value text.
extern const UntilUnloaded<WideString> strEmptyString;

// "java.lang.String".
extern const UntilUnloaded<WideString> strStringType;

// Held while the class-path file is read, by the thread whose turn it is.
extern UntilUnloaded<UGuard> _mutexClassPathFile;
extern UntilUnloaded<PluginMutex> classPathTurn;

extern UntilUnloaded<LiveReferences> liveReferences;

extern UntilUnloaded<OrphanedReferences> orphanedReferences;

extern UntilUnloaded<KeptLookups> keptLookups;

class BeanHandler;

// A new handler, registered with the host's collector (unregistered when there is no environment
// yet). The host frees it with FreeHandlerObject.
BeanHandler* AllocHandlerObject();

}  // namespace quenlatrix::meta_object::handlers::bean
