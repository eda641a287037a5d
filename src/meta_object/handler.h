#pragma once

#include <cstdint>
#include <list>
#include <string_view>

#include "meta_object/context.h"
#include "meta_object/handler_status.h"
#include "meta_object/identity.h"
#include "meta_object/method_type.h"
#include "os/mutex.h"
#include "os/thread_annotations.h"
#include "text/wide_string.h"
#include "text/zu_text.h"

namespace quenlatrix::meta_object {

class TypeDesc;

namespace type {
class Object;
}

namespace info {
class HandlerInfo;
class MethodInfo;
class ObjectInfo;
class ParamInfo;
}  // namespace info

// One object that scripts can see, of the kind that a concrete handler serves. The host makes it
// empty, binds it to a real object with CreateObject, shares it by counting references, describes
// it, calls its methods, walks it as a collection, and at last has its collector free it: the last
// Release lets the real object go, never the Handler itself.
//
// Lists, description records and value objects that a handler hands out go back to it through its
// Release overloads. The host never frees a handler's memory.
//
// Threads: any thread may call any operation, but one introspection, method call or walk belongs to
// the thread that opened it. The object's lock is held while the count changes and while
// IsValidObjectImp, CreateObjectImp and ReleaseObjectImp run; it is re-entrant, so these may call
// the object's public operations.
//
// Operations answer a HandlerStatus and throw nothing. The order of the virtual operations and the
// order of the fields are a binary contract with the host: a new one goes into the concrete class.
class Handler {
 public:
  class Attribute;
  // The registry's view of handlers: handler_registry.h.
  class Enum;
  class EnumInfo;

  // An empty object: no real object, no identity, one reference.
  Handler();
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

 protected:
  // What a concrete handler supplies: making and freeing the real object, and what is to be done
  // after every CreateObject and before the last Release (both without the lock).
  virtual HandlerStatus CreateObjectImp(const char* identity,
                                        context::CreateObjectContext* context) = 0;
  virtual HandlerStatus ReleaseObjectImp() = 0;
  virtual HandlerStatus OnConstructObject(const char* identity,
                                          context::CreateObjectContext* context);
  virtual HandlerStatus OnDestructObject();
  virtual bool IsValidObjectImp() = 0;

 public:
  // Leaves the real object alone: ReleaseObjectImp is what lets it go.
  virtual ~Handler();

  // Takes over the identity's text, parsed anew.
  virtual void SetObjectIdentity(const Identity& identity);
  // Is a real object bound?
  virtual bool IsValidObject();
  // Makes the real object that `identity` names, unless one is bound already. A failed creation
  // answers the hook's own status.
  virtual HandlerStatus CreateObject(const char* identity, context::CreateObjectContext* context);
  virtual HandlerStatus AddRef();
  // kSuccess, or kLastReferenceReleased when the real object went with the reference, or
  // kReleasedTwice when there was none left.
  virtual HandlerStatus Release();
  virtual std::uint32_t GetReferenceCount();
  // Can this handler make an object of that name?
  virtual bool IsHandlerAvailable(const char* objectName) const = 0;
  // The real object's reference, lent; null when none is bound.
  virtual void* GetObjectRef() = 0;
  virtual const void* GetObjectRef() const = 0;

  // Description. What is opened is to be closed on the same thread. `identity` may be null: the
  // object's own. `requestMask` says which fields to fill; `context` is copied into the record.
  virtual HandlerStatus OpenIntrospect(const char* identity) = 0;
  virtual HandlerStatus CloseIntrospect() = 0;
  virtual HandlerStatus GetMethodIDs(std::list<WideString>*& ids) = 0;
  virtual std::uint32_t GetMethodCount() = 0;
  virtual HandlerStatus GetMethodInfo(const WideString& methodId, unsigned long requestMask,
                                      info::MethodInfo*& methodInfo, unsigned long context) = 0;
  virtual HandlerStatus GetParamInfo(const WideString& methodId, unsigned int paramIndex,
                                     unsigned long requestMask, info::ParamInfo*& paramInfo,
                                     unsigned long context) = 0;
  virtual HandlerStatus GetObjectInfo(info::ObjectInfo*& objectInfo, const char* identity,
                                      bool withDetails) = 0;

  // Method identifiers and type names. What the flags mean is the concrete handler's business.
  virtual HandlerStatus ParseMethodID(const WideString& methodId, WideString& methodName,
                                      MethodType& methodType, bool bareName) const = 0;
  virtual HandlerStatus BuildMethodID(WideString& methodId, const WideString& methodName,
                                      MethodType& methodType, std::list<TypeDesc*>* paramTypes,
                                      bool flag) = 0;
  virtual HandlerStatus BuildNativeType(WideString& metaType, WideString& nativeType,
                                        bool flag) const = 0;

  // A method call: open, prepare, name the result's type, invoke, close. The parameters stay the
  // host's; `result` receives a value that goes back through Release, or null.
  virtual HandlerStatus OpenMethodCall(context::MethodCallContext& context,
                                       const WideString& methodId) = 0;
  virtual HandlerStatus PrepareMethodCall(context::MethodCallContext& context,
                                          std::list<type::Object*>& params) = 0;
  virtual HandlerStatus SetReturnDataType(context::MethodCallContext& context,
                                          const TypeDesc& returnType) = 0;
  virtual HandlerStatus InvokeMethod(context::MethodCallContext& context,
                                     MethodInvokeStatus& status, type::Object** result) = 0;
  virtual HandlerStatus CloseMethodCall(context::MethodCallContext& context) = 0;

  // A walk over the elements. Items are appended and go back through Release; `delivered` may be
  // null.
  virtual HandlerStatus OpenCollection(context::CollectionContext& context) = 0;
  virtual HandlerStatus ResetCollection(context::CollectionContext& context) = 0;
  virtual HandlerStatus GetNextItems(context::CollectionContext& context, int count,
                                     std::list<type::Object*>& items, int* delivered) = 0;
  virtual HandlerStatus SkipItems(context::CollectionContext& context, int count) = 0;
  virtual HandlerStatus GetCollectionSize(context::CollectionContext& context, int& size) = 0;
  virtual HandlerStatus CloseCollection(context::CollectionContext& context) = 0;

  virtual const WideString& GetErrorText() const = 0;

  // Takes back what this handler gave out; null is ignored. A list of records or values goes alone:
  // its elements stay valid until each is released itself.
  virtual void Release(std::list<WideString>* ids) = 0;
  virtual void Release(std::list<info::MethodInfo*>* methodInfos) = 0;
  virtual void Release(std::list<type::Object*>* values) = 0;
  virtual void Release(std::list<info::ParamInfo*>* paramInfos) = 0;
  virtual void Release(info::MethodInfo* methodInfo) = 0;
  virtual void Release(type::Object* value) = 0;
  virtual void Release(info::ParamInfo* paramInfo) = 0;
  virtual void Release(info::ObjectInfo* objectInfo) = 0;

  // Lent; lives as long as the plug-in.
  virtual const info::HandlerInfo* GetHandlerInfo() const = 0;

 protected:
  // Sets the identity's text under the lock; null clears it. An identity of the same text is left
  // alone. Throws std::bad_alloc, with the identity as it was.
  void SetIdentity(const char* text);
  void SetIdentity(std::string_view text);

  std::uint32_t referenceCount GUARDED_BY(objectLock) = 1;
  Mutex objectLock;
  Identity objectIdentity GUARDED_BY(objectLock);
};

// A configuration attribute of a handler: a key and its value, from the registry's stanza
// `handlerName`. What there is no memory for throws std::bad_alloc; one that is assigned to is then
// as it was. Plain data: threads that share one see to their own order.
class Handler::Attribute {
 public:
  Attribute(const ZuText& handlerName, const ZuText& key, const ZuText& value);
  Attribute(const Attribute& other);
  Attribute& operator=(const Attribute& other);
  virtual ~Attribute() = default;

  ZuText key;
  ZuText value;
  ZuText handlerName;
};

}  // namespace quenlatrix::meta_object
