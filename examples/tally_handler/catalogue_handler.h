#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "meta_object/handler.h"
#include "meta_object/type/object.h"
#include "meta_object/type_desc.h"

// What every handler does in the same way when its methods are a fixed list: it describes them from
// that list, carries calls from opening to closing, and walks what its object holds. Made to be
// copied; TallyHandler shows what is left to write.

namespace catalogue {

namespace meta_object = quenlatrix::meta_object;
using meta_object::HandlerStatus;

struct Parameter {
  const wchar_t* name;
  meta_object::TypeDesc type;
};

// A method that scripts can call. Its name is its identifier too, so no two may share one.
struct Method {
  const wchar_t* name;
  meta_object::TypeDesc returnType;
  std::vector<Parameter> parameters;
};

using Catalogue = std::vector<Method>;
using Value = std::unique_ptr<meta_object::type::Object>;
using Arguments = std::vector<const meta_object::type::Object*>;

// Descriptors under the names that hosts know these types by.
meta_object::TypeDesc VoidType();
meta_object::TypeDesc IntType();
meta_object::TypeDesc TextType();
meta_object::TypeDesc TextArrayType();

// The text that a value stands for; a null one has none.
std::wstring TextOf(const meta_object::type::Object* value);

// Threads: as for every Handler. The catalogue is the concrete handler's and outlives it.
class CatalogueHandler : public meta_object::Handler {
 public:
  explicit CatalogueHandler(const Catalogue& methods) : methods(methods) {}

  bool IsHandlerAvailable(const char* objectName) const override;

  HandlerStatus OpenIntrospect(const char* identity) override;
  HandlerStatus CloseIntrospect() override;
  HandlerStatus GetMethodIDs(std::list<WideString>*& ids) override;
  std::uint32_t GetMethodCount() override;
  HandlerStatus GetMethodInfo(const WideString& methodId, unsigned long requestMask,
                              meta_object::info::MethodInfo*& methodInfo,
                              unsigned long context) override;
  HandlerStatus GetParamInfo(const WideString& methodId, unsigned int paramIndex,
                             unsigned long requestMask, meta_object::info::ParamInfo*& paramInfo,
                             unsigned long context) override;
  HandlerStatus GetObjectInfo(meta_object::info::ObjectInfo*& objectInfo, const char* identity,
                              bool withDetails) override;
  HandlerStatus ParseMethodID(const WideString& methodId, WideString& methodName,
                              meta_object::MethodType& methodType, bool bareName) const override;
  HandlerStatus BuildMethodID(WideString& methodId, const WideString& methodName,
                              meta_object::MethodType& methodType,
                              std::list<meta_object::TypeDesc*>* paramTypes, bool flag) override;
  HandlerStatus BuildNativeType(WideString& metaType, WideString& nativeType,
                                bool flag) const override;

  HandlerStatus OpenMethodCall(meta_object::context::MethodCallContext& context,
                               const WideString& methodId) override;
  HandlerStatus PrepareMethodCall(meta_object::context::MethodCallContext& context,
                                  std::list<meta_object::type::Object*>& params) override;
  HandlerStatus SetReturnDataType(meta_object::context::MethodCallContext& context,
                                  const meta_object::TypeDesc& returnType) override;
  HandlerStatus InvokeMethod(meta_object::context::MethodCallContext& context,
                             meta_object::MethodInvokeStatus& status,
                             meta_object::type::Object** result) override;
  HandlerStatus CloseMethodCall(meta_object::context::MethodCallContext& context) override;

  HandlerStatus OpenCollection(meta_object::context::CollectionContext& context) override;
  HandlerStatus ResetCollection(meta_object::context::CollectionContext& context) override;
  HandlerStatus GetNextItems(meta_object::context::CollectionContext& context, int count,
                             std::list<meta_object::type::Object*>& items, int* delivered) override;
  HandlerStatus SkipItems(meta_object::context::CollectionContext& context, int count) override;
  HandlerStatus GetCollectionSize(meta_object::context::CollectionContext& context,
                                  int& size) override;
  HandlerStatus CloseCollection(meta_object::context::CollectionContext& context) override;

  const WideString& GetErrorText() const override { return WideString::empty; }

  using Handler::Release;
  void Release(std::list<WideString>* ids) override;
  void Release(std::list<meta_object::info::MethodInfo*>* methodInfos) override;
  void Release(std::list<meta_object::type::Object*>* values) override;
  void Release(std::list<meta_object::info::ParamInfo*>* paramInfos) override;
  void Release(meta_object::info::MethodInfo* methodInfo) override;
  void Release(meta_object::type::Object* value) override;
  void Release(meta_object::info::ParamInfo* paramInfo) override;
  void Release(meta_object::info::ObjectInfo* objectInfo) override;

  const meta_object::info::HandlerInfo* GetHandlerInfo() const override;

 protected:
  HandlerStatus CreateObjectImp(const char* identity,
                                meta_object::context::CreateObjectContext* context) override;
  HandlerStatus ReleaseObjectImp() override;

  // Makes the real object that the identity's data names; false when there is none.
  virtual bool MakeObject(const std::string& data) = 0;
  virtual void DropObject() = 0;
  // Does what the method at that position of the catalogue says, with as many arguments as it has
  // parameters. Null for a method without a result. What it throws is the failure's text.
  virtual Value Call(std::size_t method, const Arguments& arguments) = 0;
  // The elements of a walk, as they are now. False where the object is no collection.
  virtual bool GatherElements(std::vector<Value>& elements) = 0;

 private:
  // Null when the catalogue has no such method.
  const Method* Find(const WideString& methodId) const;

  const Catalogue& methods;
};

}  // namespace catalogue
