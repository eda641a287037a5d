#include "meta_object/handlers/bean/method_id.h"

#include "tests/meta_object/handlers/bean/plugin_fixture.h"

namespace quenlatrix::meta_object::handlers::bean {
namespace {

using info::cache::CachedMethodInfo;
using info::cache::CachedParamInfo;
using test::Utf8;
using Key = TypeDesc::Key;

TEST(MethodId, IsMadeOfKindNameAndIndexAndTakenApartAtItsFirstAndLastSeparator) {
  WideString id(L"former");
  EXPECT_TRUE(CreateMethodID(id, L"gr\u00F6\u00DFe", static_cast<MethodType>(9), 2147483647));
  EXPECT_EQ(Utf8(id),
            "Invoke:gr\xC3\xB6\xC3\x9F"
            "e:2147483647");
  struct Case {
    const char* id;
    MethodType type;
    const char* nameWithIndex;
    const char* bareName;
  };
  const Case cases[] = {
      {"Get:getColor:0", MethodType::Get, "getColor:0", "getColor"},
      {"SET:setX:4", MethodType::Set, "setX:4", "setX"},
      {"getX", MethodType::Invoke, "getX", "getX"},
      {":x:1", MethodType::Invoke, "x:1", "x"},
      {"Get:a:b:1", MethodType::Get, "a:b:1", "a:b"},
      {"Get::0", MethodType::Get, ":0", ""},
      {"Get:", MethodType::Get, "", ""},
      {"", MethodType::Invoke, "", ""},
  };
  for (const Case& c : cases) {
    WideString name(L"former");
    auto type = static_cast<MethodType>(7);
    EXPECT_TRUE(ParseMethodID(c.id, name, type, false)) << c.id;
    EXPECT_EQ(type, c.type) << c.id;
    EXPECT_EQ(Utf8(name), c.nameWithIndex) << c.id;
    EXPECT_EQ(MethodId2MethodName(WideString(name), name), *c.bareName != '\0') << c.id;
    EXPECT_EQ(Utf8(name), c.bareName) << c.id;
    EXPECT_TRUE(ParseMethodID(c.id, name, type, true)) << c.id;
    EXPECT_EQ(Utf8(name), c.bareName) << c.id;
  }
}

TEST(MethodId, ItsIndexIsReadOnlyFromThreeFields) {
  const std::pair<int, std::vector<const wchar_t*>> cases[] = {
      {12, {L"any thing:at all:12"}},
      {7, {L"a:b: +7rest"}},
      {3, {L"Invoke:repaint:3:4"}},
      {0, {L"a:b:0x10"}},
      {-1, {L"a:b:", L"a:b:x", L"a::1", L"a:b", L":b:1", L"", L"Get:gr\u00F6\u00DFe:12"}}};
  for (const auto& [expected, ids] : cases) {
    for (const wchar_t* id : ids) {
      unsigned long index = 99;
      const bool isRead = ReadMethodIndex(id, index);
      EXPECT_EQ(isRead ? static_cast<int>(index) : -1, expected) << Utf8(id);
    }
  }
}

TEST(JavaTypeName, GivesKeyNamesAndDimensions) {
  const std::tuple<const wchar_t*, Key, const char*, std::size_t> cases[] = {
      {L"void", Key::Void, "void", 0},
      {L"Z", Key::Bool, "boolean", 0},
      {L"J", Key::Int, "long", 0},
      {L"int;", Key::Int, "int", 0},
      {L"[[[D", Key::Real, "double", 3},
      {L"[Ljava.lang.String;", Key::String, "java.lang.String", 1},
      {L"V", Key::Object, "V", 0},
      {L"[", Key::Object, "", 1},
      {L"L;", Key::Object, ";", 0},
      {L"Linked", Key::Object, "Linked", 0},
      {L"a;;", Key::Object, "a;", 0},
      {L"caf\u00E9", Key::Object, "caf\xC3\xA9", 0},
      {nullptr, Key::Object, "", 0},
  };
  for (const auto& [name, key, typeName, dimensions] : cases) {
    const TypeDesc desc = GetTypeDesc(name);
    std::string displayName = typeName;
    for (std::size_t i = 0; i < dimensions; ++i) displayName.insert(0, "array of ");
    EXPECT_EQ(desc.key, key) << displayName;
    EXPECT_EQ(Utf8(desc.typeName), typeName);
    EXPECT_EQ(Utf8(desc.displayName), displayName);
    ASSERT_EQ(desc.arrayInfo != nullptr, dimensions > 0) << displayName;
    if (desc.arrayInfo == nullptr) continue;
    EXPECT_EQ(desc.arrayInfo->dimensions,
              std::vector<TypeDesc::ArrayInfo::DimensionInfo>(dimensions, {0, -1}));
  }
}

TEST(JavaTypeName, IsTrimmedAtItsLengthOrOfOneStrayCharacter) {
  std::tuple<std::wstring, int, const wchar_t*> cases[] = {
      {L"name;;", 4, L"name"}, {L"name;", 0, L"name"}, {L"name;;", 0, L"name;"},
      {L"name_", 0, L"name_"}, {L";", 0, L";"},        {L"", 0, L""},
      {L"name;", -1, L"name"}, {L"name", 1, L"n"},
  };
  for (auto& [text, length, trimmed] : cases) {
    TrimJavaString(text.data(), length);
    EXPECT_STREQ(text.c_str(), trimmed);
  }
}

TEST(JavaTypeName, ReturnCodesHaveNumbers) {
  const std::string codes = "VZBCSIJFD";
  for (std::size_t i = 0; i <= codes.size(); ++i) {
    int number = 77;
    EXPECT_TRUE(Type2Num(i < codes.size() ? codes.substr(i, 1).c_str() : "void", number));
    EXPECT_EQ(number, static_cast<int>(i));
  }
}

class BuildMethodIdTest : public test::PluginTest {
 protected:
  // Adds a method with these parameter types; "?" at the end of a type makes it optional.
  void Add(const wchar_t* name, MethodType type, const std::vector<std::string>& params) {
    auto& entry = host.cache["beans.Point"];
    auto method = std::make_unique<CachedMethodInfo>();
    method->name.assign(L"shown");
    method->altName.assign(name);
    method->methodType = type;
    if (!params.empty()) method->params = new CachedMethodInfo::ParamList;
    for (const std::string& param : params) {
      const WideString typeName(param.substr(0, param.find('?')).c_str());
      method->params->push_back(
          new CachedParamInfo(L"p", GetTypeDesc(typeName.getWCharPtr()), ParamDirection::In));
      method->params->back()->option1 = param.ends_with('?');
    }
    entry.info.methods.push_back(method.get());
    entry.owned.push_back(std::move(method));
  }
};

TEST_F(BuildMethodIdTest, FindsTheOverloadOfTheGivenTypes) {
  Handler& bean = Make("beans.Point");
  MethodType invoke = MethodType::Invoke;
  WideString id;
  EXPECT_EQ(bean.BuildMethodID(id, L"add", invoke, nullptr, false),
            handler_status::kNoClassDescription);

  Add(L"getcolor", MethodType::Get, {});
  host.cache["beans.Point"].info.methods.push_back(nullptr);
  Add(L"add", MethodType::Invoke, {"int"});
  Add(L"add", MethodType::Invoke, {"java.lang.String"});
  Add(L"paint", MethodType::Invoke, {"int"});
  Add(L"paint", MethodType::Invoke, {});
  Add(L"paint", MethodType::Invoke, {"long"});
  Add(L"scale", MethodType::Invoke, {"int", "double?", "double?"});
  Add(L"turn", MethodType::Set, {"[I"});
  struct Case {
    const wchar_t* name;
    MethodType type;
    std::vector<const wchar_t*> types;
    const char* id;
  };
  const Case cases[] = {
      {L"add", MethodType::Invoke, {L"java.lang.String"}, "Invoke:add:3"},
      {L"add", MethodType::Invoke, {L"long"}, "former"},
      {L"add", MethodType::Invoke, {L"int", L"int"}, "former"},
      {L"add", MethodType::Invoke, {}, "Invoke:add:3"},
      {L"paint", MethodType::Invoke, {}, "Invoke:paint:5"},
      {L"color", MethodType::Get, {}, "Get:getcolor:0"},
      {L"Color", MethodType::Get, {}, "former"},
      {L"color", MethodType::Invoke, {}, "former"},
      {L"shown", MethodType::Invoke, {}, "former"},
      {L"scale", MethodType::Invoke, {L"int"}, "Invoke:scale:7"},
      {L"scale", MethodType::Invoke, {L"int", L"double"}, "Invoke:scale:7"},
      {L"turn", MethodType::Invoke, {L"[I"}, "Set:turn:8"},
      {L"turn", MethodType::Invoke, {L"int"}, "former"},
  };
  for (const Case& c : cases) {
    std::list<TypeDesc> descs;
    std::list<TypeDesc*> types;
    for (const wchar_t* type : c.types) types.push_back(&descs.emplace_back(GetTypeDesc(type)));
    id.assign(L"former");
    MethodType type = c.type;
    EXPECT_EQ(bean.BuildMethodID(id, c.name, type, &types, true), 0U);
    EXPECT_EQ(Utf8(id), c.id) << Utf8(c.name) << c.types.size();
  }
}

TEST_F(BuildMethodIdTest, KnowsBareNamesAndTheNativeTypeOfEachKeyword) {
  Handler& bean = NewHandler();
  const std::pair<const wchar_t*, const char*> cases[] = {
      {L"FLOAT", "FLOAT"}, {L"text", "java.lang.String"}, {L"obJect", "obJect"},
      {L"blob", nullptr},  {L"INTEGER", nullptr},         {L"", nullptr},
  };
  WideString name;
  MethodType type = MethodType::Invoke;
  EXPECT_EQ(bean.ParseMethodID(L"Get:getColor:0", name, type, false), 0U);
  EXPECT_EQ(Utf8(name), "getColor") << "bare whatever the flag";
  for (const auto& [keyword, native] : cases) {
    WideString metaType(keyword);
    WideString nativeType(L"former");
    EXPECT_EQ(bean.BuildNativeType(metaType, nativeType, false),
              native == nullptr ? handler_status::kUnknownTypeKeyword : 0U);
    EXPECT_EQ(Utf8(nativeType), native == nullptr ? "former" : native);
  }
}

}  // namespace
}  // namespace quenlatrix::meta_object::handlers::bean
