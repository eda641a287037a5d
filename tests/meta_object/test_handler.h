#pragma once

#include <string>
#include <vector>

#include "meta_object/handler.h"

namespace quenlatrix::meta_object {

// A handler whose real object is the test's own. It writes down which hooks ran; the operations
// that tests of the base have no use for answer success.
class TestHandler : public Handler {
 public:
  using Calls = std::vector<std::string>;

  HandlerStatus CreateObjectImp(const char* identity, context::CreateObjectContext*) override {
    calls.push_back(std::string("create ") + identity);
    objectRef = createStatus == 0 ? this : nullptr;
    return createStatus;
  }
  HandlerStatus ReleaseObjectImp() override {
    calls.emplace_back("release");
    objectRef = nullptr;
    return handler_status::kLastReferenceReleased;
  }
  HandlerStatus OnConstructObject(const char*, context::CreateObjectContext*) override {
    calls.emplace_back("construct");
    return constructStatus;
  }
  HandlerStatus OnDestructObject() override {
    // Hooks may use the object that they run on.
    calls.push_back("destruct " + std::to_string(GetReferenceCount()));
    return handler_status::kSuccess;
  }
  bool IsValidObjectImp() override { return objectRef != nullptr; }

  HandlerStatus AddRef() override { return addRefStatus != 0 ? addRefStatus : Handler::AddRef(); }
  using Handler::Release;
  bool IsHandlerAvailable(const char*) const override { return true; }
  void* GetObjectRef() override { return objectRef; }
  const void* GetObjectRef() const override { return objectRef; }

  HandlerStatus OpenIntrospect(const char*) override { return 0; }
  HandlerStatus CloseIntrospect() override { return 0; }
  HandlerStatus GetMethodIDs(std::list<WideString>*&) override { return 0; }
  std::uint32_t GetMethodCount() override { return 0; }
  HandlerStatus GetMethodInfo(const WideString&, unsigned long, info::MethodInfo*&,
                              unsigned long) override {
    return 0;
  }
  HandlerStatus GetParamInfo(const WideString&, unsigned int, unsigned long, info::ParamInfo*&,
                             unsigned long) override {
    return 0;
  }
  HandlerStatus GetObjectInfo(info::ObjectInfo*&, const char*, bool) override { return 0; }
  HandlerStatus ParseMethodID(const WideString&, WideString&, MethodType&, bool) const override {
    return 0;
  }
  HandlerStatus BuildMethodID(WideString&, const WideString&, MethodType&, std::list<TypeDesc*>*,
                              bool) override {
    return 0;
  }
  HandlerStatus BuildNativeType(WideString&, WideString&, bool) const override { return 0; }
  HandlerStatus OpenMethodCall(context::MethodCallContext&, const WideString&) override {
    return 0;
  }
  HandlerStatus PrepareMethodCall(context::MethodCallContext&, std::list<type::Object*>&) override {
    return 0;
  }
  HandlerStatus SetReturnDataType(context::MethodCallContext&, const TypeDesc&) override {
    return 0;
  }
  HandlerStatus InvokeMethod(context::MethodCallContext&, MethodInvokeStatus&,
                             type::Object**) override {
    return 0;
  }
  HandlerStatus CloseMethodCall(context::MethodCallContext&) override { return 0; }
  HandlerStatus OpenCollection(context::CollectionContext&) override { return 0; }
  HandlerStatus ResetCollection(context::CollectionContext&) override { return 0; }
  HandlerStatus GetNextItems(context::CollectionContext&, int, std::list<type::Object*>&,
                             int*) override {
    return 0;
  }
  HandlerStatus SkipItems(context::CollectionContext&, int) override { return 0; }
  HandlerStatus GetCollectionSize(context::CollectionContext&, int&) override { return 0; }
  HandlerStatus CloseCollection(context::CollectionContext&) override { return 0; }
  const WideString& GetErrorText() const override { return errorText; }

  void Release(std::list<WideString>*) override {}
  void Release(std::list<info::MethodInfo*>*) override {}
  void Release(std::list<type::Object*>*) override {}
  void Release(std::list<info::ParamInfo*>*) override {}
  void Release(info::MethodInfo*) override {}
  void Release(type::Object*) override {}
  void Release(info::ParamInfo*) override {}
  void Release(info::ObjectInfo*) override {}
  const info::HandlerInfo* GetHandlerInfo() const override { return nullptr; }

  Calls calls;
  void* objectRef = nullptr;
  HandlerStatus createStatus = 0;
  HandlerStatus constructStatus = 0;
  HandlerStatus addRefStatus = 0;
  WideString errorText;
};

}  // namespace quenlatrix::meta_object
