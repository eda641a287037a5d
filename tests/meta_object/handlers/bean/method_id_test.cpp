#include "meta_object/handlers/bean/method_id.h"

#include "tests/meta_object/handlers/bean/plugin_fixture.h"

namespace quenlatrix::meta_object::handlers::bean {
namespace {

using info::cache::CachedMethodInfo;
using info::cache::CachedParamInfo;
using test::Utf8;
using Key = TypeDesc::Key;

TEST(MethodId, IsKindNameAndIndex) {
  struct Case {
    MethodType type;
    const wchar_t* name;
    int index;
    const char* id;
  };
  const Case cases[] = {
      {MethodType::Get, L"getColor", 0, "Get:getColor:0"},
      {MethodType::Set, L"setColor", 1, "Set:setColor:1"},
      {MethodType::Invoke, L"repaint", 2147483647, "Invoke:repaint:2147483647"},
      {static_cast<MethodType>(9), L"gr\u00F6\u00DFe", 3,
       "Invoke:gr\xC3\xB6\xC3\x9F"
       "e:3"},
      {MethodType::Invoke, L"", 0, "Invoke::0"},
  };
  for (const Case& c : cases) {
    WideString id(L"former");
    EXPECT_TRUE(CreateMethodID(id, WideString(c.name), c.type, c.index));
    EXPECT_EQ(Utf8(id), c.id);
  }
}

TEST(MethodId, IsTakenApartAtItsFirstAndLastSeparator) {
  struct Case {
    const char* id;
    MethodType type;
    const char* nameWithIndex;
    const char* bareName;
  };
  const Case cases[] = {
      {"Get:getColor:0", MethodType::Get, "getColor:0", "getColor"},
      {"set:setX:4", MethodType::Set, "setX:4", "setX"},
      {"SET:setX:4", MethodType::Set, "setX:4", "setX"},
      {"gEtter:setX:4", MethodType::Get, "setX:4", "setX"},
      {"Invoke:getX:4", MethodType::Invoke, "getX:4", "getX"},
      {"getX", MethodType::Invoke, "getX", "getX"},
      {":x:1", MethodType::Invoke, "x:1", "x"},
      {"Get:a:b:1", MethodType::Get, "a:b:1", "a:b"},
      {"Get:a", MethodType::Get, "a", "a"},
      {"Get::0", MethodType::Get, ":0", ""},
      {"Get:", MethodType::Get, "", ""},
      {"", MethodType::Invoke, "", ""},
  };
  for (const Case& c : cases) {
    const WideString id(c.id);
    WideString name(L"former");
    auto type = static_cast<MethodType>(7);
    EXPECT_TRUE(ParseMethodID(id, name, type, false)) << c.id;
    EXPECT_EQ(type, c.type) << c.id;
    EXPECT_EQ(Utf8(name), c.nameWithIndex) << c.id;
    EXPECT_EQ(MethodId2MethodName(WideString(name), name), *c.bareName != '\0') << c.id;
    EXPECT_EQ(Utf8(name), c.bareName) << c.id;
    EXPECT_TRUE(ParseMethodID(id, name, type, true)) << c.id;
    EXPECT_EQ(Utf8(name), c.bareName) << c.id;
  }
}

TEST(MethodId, ItsIndexIsReadOnlyFromThreeFields) {
  struct Case {
    const wchar_t* id;
    long index;  // -1: none
  };
  const Case cases[] = {
      {L"Get:getColor:0", 0},
      {L"any thing:at all:12", 12},
      {L"a:b: +7rest", 7},
      {L"a:b:", -1},
      {L"a:b:x", -1},
      {L"a:b", -1},
      {L"a::1", -1},
      {L":b:1", -1},
      {L"", -1},
      {L"Invoke:repaint:3:4", 3},
      {L"a:b:0x10", 0},
      {L"Get:gr\u00F6\u00DFe:12", -1},
  };
  for (const Case& c : cases) {
    unsigned long index = 99;
    EXPECT_EQ(ReadMethodIndex(WideString(c.id), index), c.index >= 0) << Utf8(c.id);
    if (c.index >= 0) {
      EXPECT_EQ(index, static_cast<unsigned long>(c.index)) << Utf8(c.id);
    }
  }
}

TEST(MethodId, MangledNamesGetTheirPrefixOnceAndNoCapitalLetter) {
  struct Case {
    MethodType type;
    const char* name;
    const char* mangled;
  };
  const Case cases[] = {
      {MethodType::Get, "color", "getcolor"},
      {MethodType::Get, "Color", "getColor"},
      {MethodType::Get, "GETCOLOR", "GETCOLOR"},
      {MethodType::Get, "ge", "getge"},
      {MethodType::Get, "setColor", "getsetColor"},
      {MethodType::Set, "Color", "setColor"},
      {MethodType::Set, "settle", "settle"},
      {MethodType::Invoke, "color", "color"},
      {MethodType::Get, "", "get"},
  };
  for (const Case& c : cases) {
    WideString name(c.name);
    MethodType type = c.type;
    mangleMethodName(name, type);
    EXPECT_EQ(Utf8(name), c.mangled);
  }
}

TEST(JavaTypeName, GivesKeyNamesAndDimensions) {
  struct Case {
    const wchar_t* name;
    Key key;
    const char* typeName;
    const char* displayName;
    std::size_t dimensions;
  };
  const Case cases[] = {
      {L"void", Key::Void, "void", "void", 0},
      {L"int", Key::Int, "int", "int", 0},
      {L"I", Key::Int, "int", "int", 0},
      {L"Z", Key::Bool, "boolean", "boolean", 0},
      {L"S", Key::Int, "short", "short", 0},
      {L"J", Key::Int, "long", "long", 0},
      {L"F", Key::Real, "float", "float", 0},
      {L"D", Key::Real, "double", "double", 0},
      {L"C", Key::Char, "char", "char", 0},
      {L"B", Key::Int, "byte", "byte", 0},
      {L"V", Key::Object, "V", "V", 0},
      {L"java.lang.Boolean", Key::Bool, "java.lang.Boolean", "java.lang.Boolean", 0},
      {L"java.lang.Integer", Key::Int, "java.lang.Integer", "java.lang.Integer", 0},
      {L"java.lang.Character", Key::Char, "java.lang.Character", "java.lang.Character", 0},
      {L"java.lang.Byte", Key::Int, "java.lang.Byte", "java.lang.Byte", 0},
      {L"java.lang.Double", Key::Real, "java.lang.Double", "java.lang.Double", 0},
      {L"java.lang.String", Key::String, "java.lang.String", "java.lang.String", 0},
      {L"Ljava.lang.String;", Key::String, "java.lang.String", "java.lang.String", 0},
      {L"java.util.Vector", Key::Object, "java.util.Vector", "java.util.Vector", 0},
      {L"[[I", Key::Int, "int", "array of array of int", 2},
      {L"[Ljava.lang.String;", Key::String, "java.lang.String", "array of java.lang.String", 1},
      {L"[Ljava.awt.Point;", Key::Object, "java.awt.Point", "array of java.awt.Point", 1},
      {L"[[[D", Key::Real, "double", "array of array of array of double", 3},
      {L"[", Key::Object, "", "array of ", 1},
      {L"L", Key::Object, "L", "L", 0},
      {L"L;", Key::Object, ";", ";", 0},
      {L"Linked", Key::Object, "Linked", "Linked", 0},
      {L"int;", Key::Int, "int", "int", 0},
      {L"a;;", Key::Object, "a;", "a;", 0},
      {L"Inner$_", Key::Object, "Inner$_", "Inner$_", 0},
      {L"caf\u00E9", Key::Object, "caf\xC3\xA9", "caf\xC3\xA9", 0},
      {L"Int", Key::Object, "Int", "Int", 0},
      {L"", Key::Object, "", "", 0},
      {nullptr, Key::Object, "", "", 0},
  };
  for (const Case& c : cases) {
    const TypeDesc desc = GetTypeDesc(c.name);
    const std::string name = Utf8(WideString(c.name));
    EXPECT_EQ(desc.key, c.key) << name;
    EXPECT_EQ(desc.refType, TypeDesc::RefType::ByValue) << name;
    EXPECT_EQ(Utf8(desc.typeName), c.typeName) << name;
    EXPECT_EQ(Utf8(desc.displayName), c.displayName) << name;
    ASSERT_EQ(desc.arrayInfo != nullptr, c.dimensions > 0) << name;
    if (desc.arrayInfo != nullptr) {
      EXPECT_EQ(desc.arrayInfo->dimensions,
                std::vector<TypeDesc::ArrayInfo::DimensionInfo>(c.dimensions, {0, -1}))
          << name;
    }
  }
}

TEST(JavaTypeName, IsTrimmedAtItsLengthOrOfOneStrayCharacter) {
  struct Case {
    std::wstring text;
    int length;
    const wchar_t* trimmed;
  };
  Case cases[] = {
      {L"name;;", 4, L"name"}, {L"name;", 0, L"name"}, {L"name;;", 0, L"name;"},
      {L"name_", 0, L"name_"}, {L";", 0, L";"},        {L"", 0, L""},
      {L"name;", -1, L"name"}, {L"name", 1, L"n"},
  };
  for (Case& c : cases) {
    TrimJavaString(c.text.data(), c.length);
    EXPECT_STREQ(c.text.c_str(), c.trimmed);
  }
}

TEST(JavaTypeName, ReturnCodesHaveNumbers) {
  const std::pair<const char*, int> cases[] = {{"I", 5}, {"Z", 1}, {"B", 2},    {"C", 3},
                                               {"S", 4}, {"J", 6}, {"F", 7},    {"D", 8},
                                               {"V", 0}, {"", 0},  {"void", 9}, {"[I", 0}};
  for (const auto& [code, expected] : cases) {
    int number = 77;
    EXPECT_TRUE(Type2Num(ZuText(code), number));
    EXPECT_EQ(number, expected) << code;
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
    if (!params.empty()) {
      method->params = new CachedMethodInfo::ParamList;
    }
    for (const std::string& param : params) {
      const std::string typeName = param.substr(0, param.find('?'));
      method->params->push_back(new CachedParamInfo(
          L"p", GetTypeDesc(WideString(typeName.c_str()).getWCharPtr()), ParamDirection::In));
      method->params->back()->option1 = typeName != param;
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
    std::vector<std::string> types;
    const char* id;
  };
  const Case cases[] = {
      {L"add", MethodType::Invoke, {"java.lang.String"}, "Invoke:add:3"},
      {L"add", MethodType::Invoke, {"int"}, "Invoke:add:2"},
      {L"add", MethodType::Invoke, {"long"}, "former"},
      {L"add", MethodType::Invoke, {"int", "int"}, "former"},
      {L"add", MethodType::Invoke, {}, "Invoke:add:3"},
      {L"paint", MethodType::Invoke, {}, "Invoke:paint:5"},
      {L"Paint", MethodType::Invoke, {}, "former"},
      {L"color", MethodType::Get, {}, "Get:getcolor:0"},
      {L"color", MethodType::Invoke, {}, "former"},
      {L"shown", MethodType::Invoke, {}, "former"},
      {L"scale", MethodType::Invoke, {"int"}, "Invoke:scale:7"},
      {L"scale", MethodType::Invoke, {"int", "double"}, "Invoke:scale:7"},
      {L"turn", MethodType::Invoke, {"[I"}, "Set:turn:8"},
      {L"turn", MethodType::Invoke, {"int"}, "former"},
  };
  for (const Case& c : cases) {
    std::vector<TypeDesc> descs;
    for (const std::string& type : c.types) {
      descs.push_back(GetTypeDesc(WideString(type.c_str()).getWCharPtr()));
    }
    std::list<TypeDesc*> types;
    for (TypeDesc& desc : descs) {
      types.push_back(&desc);
    }
    id.assign(L"former");
    MethodType type = c.type;
    EXPECT_EQ(bean.BuildMethodID(id, c.name, type, &types, true), 0U);
    EXPECT_EQ(Utf8(id), c.id) << Utf8(c.name) << c.types.size();
  }
}

TEST_F(BuildMethodIdTest, KnowsBareNamesAndTheNativeTypeOfEachKeyword) {
  Handler& bean = NewHandler();
  const std::pair<const wchar_t*, const char*> cases[] = {
      {L"Int", "Int"},       {L"FLOAT", "FLOAT"},         {L"text", "java.lang.String"},
      {L"bool", "bool"},     {L"Structure", "Structure"}, {L"currency", "currency"},
      {L"char", "char"},     {L"date", "date"},           {L"Enumeration", "Enumeration"},
      {L"obJect", "obJect"}, {L"blob", nullptr},          {L"INTEGER", nullptr},
      {L"", nullptr},
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
