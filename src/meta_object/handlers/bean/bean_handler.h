#pragma once

#include <jni.h>

#include <atomic>
#include <memory>
#include <string>

#include "meta_object/handler.h"
#include "meta_object/handlers/bean/live_references.h"
#include "meta_object/info/cached_method_info.h"
#include "meta_object/type_desc.h"

namespace quenlatrix::meta_object::handlers::bean {

class BeanIntrospector;

// One Java Bean that scripts can see: a Java object in the host's VM, held by a global reference,
// and its class. The class name is the handler data of the object's identity, with dots
// ("JAVABEAN://shop.cart.Widget"). Threads: as for every Handler; introspections, calls and walks
// stay on the thread that opened them.
class BeanHandler : public Handler {
 public:
  BeanHandler();
  ~BeanHandler() override;

  // The instance's reference as a jobject; null while nothing is bound.
  void* GetObjectRef() override { return objectRef.load(); }
  const void* GetObjectRef() const override { return objectRef.load(); }
  // True when a jar is registered for the class that the identity text names.
  bool IsHandlerAvailable(const char* objectName) const override;

  // Each OpenIntrospect leaves the thread attached, whatever it answers, until CloseIntrospect.
  HandlerStatus OpenIntrospect(const char* identity) override;
  HandlerStatus CloseIntrospect() override;
  HandlerStatus GetMethodIDs(std::list<WideString>*& ids) override;
  std::uint32_t GetMethodCount() override;
  HandlerStatus GetMethodInfo(const WideString& methodId, unsigned long requestMask,
                              info::MethodInfo*& methodInfo, unsigned long context) override;
  HandlerStatus GetParamInfo(const WideString& methodId, unsigned int paramIndex,
                             unsigned long requestMask, info::ParamInfo*& paramInfo,
                             unsigned long context) override;
  HandlerStatus GetObjectInfo(info::ObjectInfo*& objectInfo, const char* identity,
                              bool withDetails) override;

  // Gives the bare method name, whatever the flag.
  HandlerStatus ParseMethodID(const WideString& methodId, WideString& methodName,
                              MethodType& methodType, bool flag) const override;
  // Finds the catalogued method of that name and those parameter types. `methodId` stays as it is
  // when there is none. The flag is not used.
  HandlerStatus BuildMethodID(WideString& methodId, const WideString& methodName,
                              MethodType& methodType, std::list<TypeDesc*>* paramTypes,
                              bool flag) override;
  // The native type of a meta type keyword. The flag is not used.
  HandlerStatus BuildNativeType(WideString& metaType, WideString& nativeType,
                                bool flag) const override;

  // Each OpenMethodCall leaves the thread attached, whatever it answers, until CloseMethodCall,
  // which undoes one attach also where no call is open.
  HandlerStatus OpenMethodCall(context::MethodCallContext& context,
                               const WideString& methodId) override;
  HandlerStatus PrepareMethodCall(context::MethodCallContext& context,
                                  std::list<type::Object*>& params) override;
  HandlerStatus SetReturnDataType(context::MethodCallContext& context,
                                  const TypeDesc& returnType) override;
  HandlerStatus InvokeMethod(context::MethodCallContext& context, MethodInvokeStatus& status,
                             type::Object** result) override;
  HandlerStatus CloseMethodCall(context::MethodCallContext& context) override;

  HandlerStatus OpenCollection(context::CollectionContext& context) override;
  HandlerStatus ResetCollection(context::CollectionContext& context) override;
  HandlerStatus GetNextItems(context::CollectionContext& context, int count,
                             std::list<type::Object*>& items, int* delivered) override;
  HandlerStatus SkipItems(context::CollectionContext& context, int count) override;
  HandlerStatus GetCollectionSize(context::CollectionContext& context, int& size) override;
  HandlerStatus CloseCollection(context::CollectionContext& context) override;

  // Always empty.
  const WideString& GetErrorText() const override { return errorText; }

  using Handler::Release;
  void Release(std::list<WideString>* ids) override;
  void Release(std::list<info::MethodInfo*>* methodInfos) override;
  void Release(std::list<type::Object*>* values) override;
  void Release(std::list<info::ParamInfo*>* paramInfos) override;
  void Release(info::MethodInfo* methodInfo) override;
  void Release(type::Object* value) override;
  void Release(info::ParamInfo* paramInfo) override;
  void Release(info::ObjectInfo* objectInfo) override;

  const info::HandlerInfo* GetHandlerInfo() const override;

  // Binds an object that exists: takes over `object`, a global reference, when the answer is
  // kSuccess. A null `identity` leaves the handler without one. For a handler that no other thread
  // sees yet.
  virtual HandlerStatus BindObject(void* object, const char* identity);
  // Forgets the references without deleting them, and the identity.
  virtual void UnbindObject();

  // Asks the host whether it allows an object of that identity; true when it didn't say how to ask.
  bool CheckSecurity(const char* identity, context::CreateObjectContext* context);
  // Is the Java class "BeanHandler" on the VM's class path?
  bool IsHandlerClassAvailable();
  // The exception check, without a text.
  bool IsJavaExceptionHappened(JNIEnv* env);

  // What is described, and under which identity the host's cache keeps it. Non-owning.
  struct DescribedClass {
    jclass cls;  // null where no object is bound: a class without members
    const Identity& identity;
  };
  // Describe the class of an object into the host's cache: one without members where there is no
  // object, a failure where it has been released. False with the Java exception cleared or pending;
  // entries added before a failure stay.
  HandlerStatus InitIntrospectionCache(JNIEnv* env, const Identity& identity,
                                       const LiveInstance& bound);
  bool LoadAccessors(JNIEnv* env, BeanIntrospector& introspector, const DescribedClass& described);
  bool LoadMethods(JNIEnv* env, BeanIntrospector& introspector, const DescribedClass& described);
  // Adds one accessor of a property: `kind` is its bit (1 get, 2 set, 4 is, 8 indexed get, 16
  // indexed set, 32 indexed is). Always true.
  bool AddAccessorMethod(int kind, const wchar_t* propertyName, const wchar_t* propertyType,
                         const Identity& identity);
  // The given parameter name, or "param" and the 1-based number when it is null or empty.
  void GetParamName(int number, const wchar_t* given, WideString& out) const;
  // The cached entry of a method, the host's; null when there is none.
  const info::cache::CachedMethodInfo* GetMethodCacheEntry(const WideString& methodId);

 protected:
  HandlerStatus CreateObjectImp(const char* identity,
                                context::CreateObjectContext* context) override;
  HandlerStatus ReleaseObjectImp() override;
  bool IsValidObjectImp() override { return objectRef.load() != nullptr; }

 private:
  // Makes the instance: the status of CreateObjectImp once security and identity are settled.
  HandlerStatus MakeInstance(JNIEnv* env, std::string className);
  // The host's record of this object's class; null when there is none.
  const info::cache::CachedObjectInfo* CachedClass();
  // The identity as it is now, which another thread may change at any time.
  std::shared_ptr<const Identity> GetIdentity();
  // The bound object; nothing while there is none.
  LiveInstance Instance() const { return {objectRef.load(), serial.load()}; }
  // Binds the object, whose references the handler takes over; with null it is bound to none. What
  // was bound before is no longer among the live references, and not deleted.
  void Bind(jobject object, jclass cls);

  // Read without a lock. An instance of the one object's reference and another one's serial is none
  // that lives.
  std::atomic<jobject> objectRef{nullptr};
  std::atomic<jclass> classRef{nullptr};
  WideString errorText;
  std::atomic<std::uint64_t> serial{0};
  // Made when an operation needs it, of `objectIdentity`.
  std::shared_ptr<const Identity> identityCopy GUARDED_BY(objectLock);
};

}  // namespace quenlatrix::meta_object::handlers::bean
