#pragma once

#include <list>
#include <memory>

#include "meta_object/handler.h"
#include "text/wide_string.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object {

namespace info {
struct SecurityInfo;
namespace cache {
struct CachedMethodInfo;
struct CachedObjectInfo;
}  // namespace cache
}  // namespace info

// The services that the host offers to a handler plug-in. The host builds and owns the record and
// hands its address to the plug-in; the order of the fields is a contract between the two.
//
// Threads: the record is filled before the plug-in starts and only read afterwards, so any thread
// may ask. Assignment and Clear are for whoever owns it alone.
class Environment {
 public:
  using CacheOpenIntrospectCallback = bool (*)(void* hostContext, const Identity& identity,
                                               bool& mustIntrospect);
  using CacheIntrospectDoneCallback = bool (*)(void* hostContext, const Identity& identity,
                                               bool succeeded);
  using CacheCloseIntrospectCallback = bool (*)(void* hostContext, const Identity& identity);
  using CacheAddMethodInfoCallback = bool (*)(void* hostContext, const Identity& identity,
                                              const info::cache::CachedMethodInfo& method);
  using CacheGetMethodInfoCallback =
      const info::cache::CachedMethodInfo* (*)(void* hostContext, const Identity& identity,
                                               const char* methodId);
  using CacheGetObjectInfoCallback =
      const info::cache::CachedObjectInfo* (*)(void* hostContext, const Identity& identity);
  using GcRegHandlerObjectCallback = void (*)(void* hostContext, Handler* handler,
                                              const void* ownerModule);
  using CheckSecurityCallback = bool (*)(info::SecurityInfo* securityInfo);

  // Empty: no attributes, no texts, no context and no callbacks.
  Environment() = default;
  Environment(const Environment&) = delete;
  // Clears the target, then copies the texts, the attributes (deeply) and checkSecurity. The host's
  // context and the other callbacks serve one host only and are not copied.
  Environment& operator=(const Environment& other);
  ~Environment() = default;

  // Deletes the attributes, empties the texts and forgets the host's context and the first seven
  // callbacks. hostFlag and checkSecurity stay.
  void Clear();

  // Did the host provide the whole introspection cache? All six callbacks or none: where one is
  // missing, every operation below answers false or null without calling the host.
  bool IsMethodCacheSupported() const;
  // Opens the cache entry of the object's class; sets `mustIntrospect` when nothing is known of the
  // class yet.
  bool CacheOpenIntrospect(const Identity& identity, bool& mustIntrospect) const;
  // Ends the filling of the entry.
  bool CacheIntrospectDone(const Identity& identity, bool succeeded) const;
  bool CacheCloseIntrospect(const Identity& identity) const;
  bool CacheAddMethodInfo(const Identity& identity,
                          const info::cache::CachedMethodInfo& method) const;
  // Both are lent by the host; null when there is no such entry.
  const info::cache::CachedMethodInfo* CacheGetMethodInfo(const Identity& identity,
                                                          const char* methodId) const;
  const info::cache::CachedObjectInfo* CacheGetObjectInfo(const Identity& identity) const;

  // Tells the host's collector of a new handler object; nothing happens without a context or the
  // callback.
  void GCRegHandlerObject(Handler* handler, const void* ownerModule) const;

  // The value of the first attribute with this key, and of this handler unless `handlerName` is
  // null; both compared exactly. Lent; null when there is none or `key` is null.
  const char* GetAttribute(const char* key, const char* handlerName) const;

  void* hostContext = nullptr;
  std::list<ZuText> textList;
  std::list<std::unique_ptr<Handler::Attribute>> attributes;
  bool hostFlag = false;
  WideString firstWideText;
  WideString secondWideText;
  CacheOpenIntrospectCallback cacheOpenIntrospect = nullptr;
  CacheIntrospectDoneCallback cacheIntrospectDone = nullptr;
  CacheCloseIntrospectCallback cacheCloseIntrospect = nullptr;
  CacheAddMethodInfoCallback cacheAddMethodInfo = nullptr;
  CacheGetMethodInfoCallback cacheGetMethodInfo = nullptr;
  CacheGetObjectInfoCallback cacheGetObjectInfo = nullptr;
  GcRegHandlerObjectCallback gcRegHandlerObject = nullptr;
  // Decides whether an object may be created; null allows everything.
  CheckSecurityCallback checkSecurity = nullptr;
};

}  // namespace quenlatrix::meta_object
