#include "meta_object/info/method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/param_info.h"
#include "meta_object/info/property.h"
#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"
#include "tests/support/locales.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Handler;
using meta_object::MethodType;
using meta_object::ParamDirection;
using meta_object::info::MethodInfo;
using meta_object::info::ObjectInfo;
using meta_object::info::ParamInfo;
using testing::ElementsAre;

constexpr unsigned long kAllFields = 31;

class IntrospectionTest : public PluginTest {
 protected:
  static std::vector<std::string> MethodIds(Handler& bean) {
    std::list<WideString>* ids = nullptr;
    EXPECT_EQ(bean.GetMethodIDs(ids), 0U);
    std::vector<std::string> texts;
    for (const WideString& id : *ids) texts.push_back(Utf8(id));
    bean.Release(ids);
    return texts;
  }

  // "Get:getItems:3(int index) array of java.lang.String"; "*" marks what comes back.
  static std::string Signature(Handler& bean, const std::string& id) {
    MethodInfo* method = nullptr;
    EXPECT_EQ(bean.GetMethodInfo(WideString(id.c_str()), kAllFields, method, 4711), 0U) << id;
    EXPECT_EQ(method->context, 4711U);
    EXPECT_EQ(Utf8(method->methodId), id);
    EXPECT_EQ(id.substr(id.find(':') + 1, id.rfind(':') - id.find(':') - 1), Utf8(method->name));
    std::string text = id + "(";
    for (unsigned int i = 0; i < method->paramCount; ++i) {
      ParamInfo* param = nullptr;
      EXPECT_EQ(bean.GetParamInfo(WideString(id.c_str()), i, kAllFields, param, 4712), 0U) << id;
      EXPECT_EQ(param->context, 4712U);
      EXPECT_EQ(param->index, i);
      EXPECT_EQ(Utf8(param->methodId), id);
      EXPECT_FALSE(param->option1 || param->option2);
      text += (i == 0 ? "" : ", ") + Utf8(param->type.displayName) + " " + Utf8(param->name) +
              (param->direction == ParamDirection::InOut ? "*" : "");
      bean.Release(param);
    }
    text += ") " + Utf8(method->returnType.displayName);
    bean.Release(method);
    return text;
  }

  std::vector<std::string> Catalogue(const std::string& className) {
    Handler& bean = Make(className);
    Introspect(bean);
    std::vector<std::string> all;
    for (const std::string& id : MethodIds(bean)) all.push_back(Signature(bean, id));
    EXPECT_EQ(bean.GetMethodCount(), all.size());
    return all;
  }
};

TEST_F(IntrospectionTest, ListsAccessorsByBitsAndThenMethods) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"beans.PlainProperty",
       {"Get:getColor:0() int", "Set:setColor:1(int color) ", "Get:getName:2() java.lang.String",
        "Set:setName:3(java.lang.String name) ",
        "Invoke:paint:4(java.lang.String param1, int param2) int"}},
      {"beans.IndexedProperty",
       {"Get:getFlag:0( index) boolean", "Set:setFlag:1( index, boolean flag) ",
        "Get:isFlag:2( index) boolean", "Get:getItems:3() array of java.lang.String",
        "Set:setItems:4(array of java.lang.String items) ",
        "Get:getItems:5( index) java.lang.String",
        "Set:setItems:6( index, java.lang.String items) ", "Get:getSize:7() int",
        "Invoke:getSize:8(int param1) int",
        "Invoke:setItems:9(int param1, java.lang.Object param2*) void",
        "Invoke:setSize:10(int param1, int param2) void"}},
      {"beans.BooleanProperty",
       {"Get:isLevel:0() boolean", "Get:getLevel:1() int", "Set:setOpen:2(boolean open) ",
        "Get:isOpen:3() boolean", "Get:getShut:4() boolean", "Get:isShut:5() boolean",
        "Invoke:isKnown:6() java.lang.Boolean"}},
      {"beans.NamedParameters",
       {"Set:setColor:0(int color) ", "Invoke:area:1(int width, int height) int"}}};
  for (const auto& [name, catalogue] : cases) EXPECT_EQ(Catalogue(name), catalogue);
  EXPECT_THAT(Catalogue("beans.ArrayEcho"), testing::Each(testing::HasSubstr("*"))) << "arrays";
}

TEST_F(IntrospectionTest, FillsOnlyTheFieldsThatTheMaskNames) {
  Handler& bean = Make("beans.IndexedProperty");
  Introspect(bean);
  const WideString id(L"any:text:6");
  for (unsigned long bit = 1; bit <= 16; bit *= 2) {
    MethodInfo* method = nullptr;
    ASSERT_EQ(bean.GetMethodInfo(id, bit, method, 1), 0U);
    EXPECT_EQ(Utf8(method->name), bit == 1 ? "setItems" : "");
    EXPECT_EQ(method->paramCount, bit == 4 ? 2U : 0U);
    EXPECT_EQ(method->methodType, bit == 8 ? MethodType::Set : MethodType::Invoke);
    bean.Release(method);
    ParamInfo* param = nullptr;
    ASSERT_EQ(bean.GetParamInfo(id, 1, bit, param, 1), 0U);
    EXPECT_EQ(Utf8(param->type.typeName), bit == 1 ? "java.lang.String" : "");
    EXPECT_EQ(Utf8(param->name), bit == 2 ? "items" : "");
    EXPECT_EQ(param->index, 1U);
    bean.Release(param);
  }
  MethodInfo* method = nullptr;
  ASSERT_EQ(bean.GetMethodInfo(WideString(L"a:b:3"), 2, method, 1), 0U);
  EXPECT_EQ(Utf8(method->returnType.typeName), "java.lang.String");
  bean.Release(method);
}

TEST_F(IntrospectionTest, WhatIsNotInTheCatalogueIsNotFound) {
  Handler& bean = Make("beans.PlainProperty");
  Introspect(bean);
  host.cache["beans.PlainProperty"].info.methods.push_back(nullptr);
  const std::pair<const wchar_t*, meta_object::HandlerStatus> cases[] = {
      {L"Invoke:paint:4", 0},
      {L"Get:getColor:0", status::kInvalidIdentity},
      {L"Invoke:paint:5", status::kIntrospectionFailed},
      {L"Invoke:paint:6", status::kIntrospectionFailed},
      {L"Invoke:paint:-1", status::kIntrospectionFailed},
      {L"Invoke:paint:99999999999999999999999", status::kIntrospectionFailed},
      {L"Invoke:paint", status::kIntrospectionFailed},
      {L"", status::kIntrospectionFailed},
  };
  for (const auto& [id, expected] : cases) {
    ParamInfo* param = nullptr;
    EXPECT_EQ(bean.GetParamInfo(WideString(id), 1, kAllFields, param, 0), expected) << Utf8(id);
    EXPECT_EQ(param != nullptr, expected == 0);
    bean.Release(param);
    MethodInfo* method = nullptr;
    const bool isMethod = expected != status::kIntrospectionFailed;
    EXPECT_EQ(bean.GetMethodInfo(WideString(id), kAllFields, method, 0), isMethod ? 0U : expected);
    EXPECT_EQ(method != nullptr, isMethod) << Utf8(id);
    bean.Release(method);
  }
  EXPECT_EQ(MethodIds(bean).size(), 5U) << "the empty entry is left out";
  EXPECT_EQ(bean.GetMethodCount(), 6U) << "but counted";
}

TEST_F(IntrospectionTest, DescribesAnObjectByItsClassAndItsCounts) {
  Handler& bean = Make("beans.PlainProperty");
  ObjectInfo* info = nullptr;
  EXPECT_EQ(bean.GetObjectInfo(info, "JAVABEAN://shop.Widget", true), status::kIntrospectionFailed);
  EXPECT_EQ(Utf8(info->description), "shop.Widget in CLASSPATH environment")
      << "handed out all the same";
  bean.Release(info);
  Introspect(bean);
  host.cache["beans.PlainProperty"].info.methods.push_back(nullptr);
  EXPECT_EQ(bean.GetObjectInfo(info, nullptr, true), 0U);
  EXPECT_EQ(Utf8(info->description), "beans.PlainProperty in CLASSPATH environment");
  EXPECT_EQ(info->infoKind, 1U);
  EXPECT_TRUE(info->flagA);
  std::string properties;
  for (const meta_object::Property* property : info->properties) {
    EXPECT_TRUE(property->flag);
    properties += Utf8(property->name) + " = " + Utf8(property->value) + "\n";
  }
  EXPECT_EQ(properties, "Attribute Methods = 4\nRegular Methods = 1\n");
  bean.Release(info);
}

TEST_F(IntrospectionTest, FillsAClassOnceAndLeavesNoReference) {
  Handler& bean = Make("beans.PlainProperty");
  host.log.clear();
  {
    const JniReferenceTracker tracker(Env());
    Introspect(bean);
    EXPECT_EQ(tracker.Left(), 0);
    EXPECT_GT(tracker.LocalsMade(), 20);
  }
  Handler& other = Make("beans.PlainProperty");
  const JniReferenceTracker tracker(Env());
  Introspect(other);
  EXPECT_EQ(tracker.LocalsMade(), 0) << "no Java call for a class that is known";
  EXPECT_THAT(host.log, ElementsAre("open beans.PlainProperty", "done", "close beans.PlainProperty",
                                    "may JAVABEAN beans.PlainProperty", "open beans.PlainProperty",
                                    "close beans.PlainProperty"));
  EXPECT_EQ(other.GetMethodCount(), 5U);
}

TEST_F(IntrospectionTest, HoldsTheMethodsAloneThatCanBeAskedFor) {
  const std::pair<const char*, bool> cases[] = {{utf8Locale, false}, {singleByteCommaLocale, true}};
  for (const auto& [locale, hasUmlauts] : cases) {
    const LocaleScope scope(locale);
    host.cache.clear();
    Handler& bean = Make("beans.UnusualNames");
    Introspect(bean);
    const auto ids = MethodIds(bean);
    EXPECT_EQ(bean.GetMethodCount(), ids.size()) << locale;
    for (const std::string& id : ids) {
      MethodInfo* method = nullptr;
      EXPECT_EQ(bean.GetMethodInfo(host::ToWideString(id), kAllFields, method, 0), 0U) << id;
      bean.Release(method);
    }
    EXPECT_EQ(testing::Value(ids, testing::Contains(testing::HasSubstr("gr\xC3\xB6"))), hasUmlauts);
  }
}

TEST_F(IntrospectionTest, AClassThatCannotBeExaminedIsNoClassWithoutMembers) {
  const CallOutcome lacking = Call(Make("beans.LoaderTrick"), "alone", "java.lang.Object",
                                   ValuesOf({{"java.lang.String", L"beans.ObjectTaker"},
                                             {"java.lang.String", L"beans.ObjectTaker"},
                                             {"java.lang.String", L"beans.Point"}}));
  Handler& bean = *lacking.Object();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(bean.OpenIntrospect("JAVABEAN://beans.ObjectTaker"), status::kIntrospectionFailed);
    EXPECT_EQ(bean.CloseIntrospect(), 0U);
    EXPECT_EQ(bean.GetMethodCount(), 0U);
    EXPECT_FALSE(host.cache["beans.ObjectTaker"].isDone);
  }
}

TEST_F(IntrospectionTest, WithoutAnObjectOrTheCachesLeaveThereIsNoCatalogue) {
  Handler& bean = Make("beans.Point");
  for (bool TestHost::*const answer : {&TestHost::isOpened, &TestHost::isDoneAccepted}) {
    host.*answer = false;
    EXPECT_EQ(bean.OpenIntrospect(nullptr), status::kIntrospectionFailed);
    bean.CloseIntrospect();
    host.*answer = true;
  }
  host.cache.clear();
  Handler& empty = NewHandler();
  EXPECT_EQ(empty.OpenIntrospect("no identity"), status::kInvalidIdentity);
  EXPECT_EQ(empty.CloseIntrospect(), 0U);
  EXPECT_EQ(empty.OpenIntrospect("JAVABEAN://beans.Point"), 0U);
  EXPECT_EQ(empty.CloseIntrospect(), 0U);
  EXPECT_EQ(empty.GetMethodCount(), 0U);
  std::list<WideString>* ids = nullptr;
  EXPECT_EQ(empty.GetMethodIDs(ids), status::kIntrospectionFailed);
  EXPECT_EQ(ids, nullptr);

  static Handler* leaving = nullptr;
  leaving = &Make("beans.Point");
  const auto open = std::exchange(host.environment.cacheOpenIntrospect,
                                  [](void*, const meta_object::Identity&, bool& mustIntrospect) {
                                    mustIntrospect = true;
                                    return leaving->Release() == status::kLastReferenceReleased;
                                  });
  EXPECT_EQ(leaving->OpenIntrospect(nullptr), status::kIntrospectionFailed)
      << "an object that is released meanwhile leaves no empty class";
  leaving->CloseIntrospect();
  host.environment.cacheOpenIntrospect = open;

  host.log.clear();
  host.environment.cacheGetMethodInfo = nullptr;
  EXPECT_EQ(bean.OpenIntrospect(nullptr), status::kIntrospectionFailed);
  bean.CloseIntrospect();
  EXPECT_THAT(host.log, ElementsAre()) << "a cache that isn't whole is not asked";
  EXPECT_EQ(Answer(bean, "getX", "int"), "Int 0");
}

}  // namespace
}  // namespace quenlatrix::test
