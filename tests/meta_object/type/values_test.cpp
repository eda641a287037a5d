#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <typeinfo>

#include "meta_object/type/array.h"
#include "meta_object/type/blob.h"
#include "meta_object/type/scalar_values.h"
#include "meta_object/type/string_values.h"
#include "meta_object/type/struct_value.h"
#include "tests/support/locales.h"

namespace quenlatrix::meta_object::type {
namespace {

using ::testing::IsNull;

using Key = TypeDesc::Key;

std::wstring Text(const WideString& text) {
  const wchar_t* wide = text.getWCharPtr();
  return wide == nullptr ? L"" : wide;
}

std::wstring ValueOf(const Object& value) {
  WideString text(L"what stood there before");
  value.GetValueAsString(text);
  return Text(text);
}

struct Conversion {
  std::function<Object*()> make;
  Key key;
  const wchar_t* initial;
  const wchar_t* given;
  const wchar_t* read;
};

const Conversion kConversions[] = {
    {[] { return new Int(std::numeric_limits<long>::max()); }, Key::Int, L"9223372036854775807",
     L"  42abc", L"42"},
    {[] { return new Int(-5); }, Key::Int, L"-5", L"", L"0"},
    {[] { return new Int(5); }, Key::Int, L"5", L"99999999999999999999", L"9223372036854775807"},
    {[] { return new Real(1.5); }, Key::Real, L"1.500000", L" -2.25e1xyz", L"-22.500000"},
    {[] { return new Real(1e45); }, Key::Real,
     L"999999999999999929757289024535551219930759168.000000", L"", L"0.000000"},
    {[] { return new Real(1234.5); }, Key::Real, L"1234.500000", L"2,25", L"2.000000"},
    {[] { return new Real(0); }, Key::Real, L"0.000000",
     L"1.00000000000000000000000000000000000000000000000000000000000000000000000000000001",
     L"1.000000"},
    {[] { return new String(); }, Key::String, L"", L"a text \u20AC", L"a text \u20AC"},
    {[] { return new String(TypeDesc(Key::Unknown, WideString(), WideString())); }, Key::Unknown,
     L"", L"x", L"x"},
    {[] { return new Date(); }, Key::Date, L"", L"2024-01-31", L"2024-01-31"},
    {[] { return new Currency(); }, Key::Currency, L"", L"12.50", L"12.50"},
    {[] { return new Char(); }, Key::Char, L"", L"xyz", L"x"},
    {[] { return new Char(); }, Key::Char, L"", L"\u0141", L"A"},
    {[] { return new Char(); }, Key::Char, L"", L"\u01E9", L"\u00E9"},
    {[] { return new Char(); }, Key::Char, L"", L"\u0100", L""},
    {[] { return new Bool(); }, Key::Bool, L"false", L"true", L"true"},
    {[] { return new Bool(); }, Key::Bool, L"false", L"TRUE", L"false"},
    {[] { return new Enum(); }, Key::Enum, L"0", L"-17", L"-17"},
    {[] { return new Struct(); }, Key::Struct, L"structure", L"x", L"structure"},
    {[] { return new Void(); }, Key::Void, L"", L"x", L""},
    {[] { return new Array(); }, Key::Int, L"", L"x", L"x"},
    {[] { return new Blob(); }, Key::Object, L"", L"12", L""},
};

TEST(Values, ConvertToAndFromTextByTheirClassInEveryLocale) {
  for (const char* locale : {"C", utf8CommaLocale, singleByteCommaLocale}) {
    const LocaleScope scope(locale);
    for (const Conversion& row : kConversions) {
      const std::unique_ptr<Object> value(row.make());
      SCOPED_TRACE(std::string(locale) + ": " + typeid(*value).name());
      EXPECT_TRUE(value->IsType(row.key));
      EXPECT_FALSE(value->IsType(row.key == Key::Void ? Key::Int : Key::Void));
      EXPECT_EQ(ValueOf(*value), row.initial);
      value->SetValueAsString(WideString(row.given));
      EXPECT_EQ(ValueOf(*value), row.read);
    }
  }
  Real number(0.1);
  number.SetValueAsString(WideString(L"7\u20AC"));
  EXPECT_EQ(number.GetValue(), 0) << "a text that the encoding cannot hold";
}

TEST(Values, CloneIntoAnIndependentValueOfTheSameClass) {
  for (const Conversion& row : kConversions) {
    const std::unique_ptr<Object> value(row.make());
    SCOPED_TRACE(typeid(*value).name());
    value->SetValueAsString(WideString(row.given));
    value->GetMetaItemType().typeName = WideString("some.Type");
    value->SetParamName(WideString("name"));
    value->SetTag(WideString("tag"));
    value->SetDirection(ParamDirection::InOut);
    value->SetVariant(true);
    const std::unique_ptr<Object> clone(value->Clone());
    value->SetValueAsString(WideString("1"));
    value->GetMetaItemType().typeName = WideString();
    value->SetTag(WideString());
    EXPECT_EQ(typeid(*clone), typeid(*value));
    EXPECT_EQ(ValueOf(*clone), row.read);
    EXPECT_EQ(clone->GetMetaItemType().key, row.key);
    EXPECT_EQ(Text(clone->GetMetaItemType().typeName), L"some.Type");
    EXPECT_EQ(Text(clone->GetParamName()), L"name");
    EXPECT_EQ(Text(clone->GetTag()), L"tag");
    EXPECT_EQ(clone->GetDirection(), ParamDirection::InOut);
    EXPECT_TRUE(clone->IsVariant());
    EXPECT_FALSE(clone->IsOptional());
  }
}

TEST(Values, ConvertNarrowTextToo) {
  Int number(0);
  number.SetValueAsText(" 12 ");
  EXPECT_EQ(number.GetValue(), 12);
  ZuText text("old");
  number.GetValueAsText(text);
  EXPECT_STREQ(text.GetTextEx(), "12");
  String empty;
  empty.SetValueAsText(nullptr);
  empty.GetValueAsText(text);
  EXPECT_STREQ(text.GetTextEx(), "");
}

TEST(Values, ReadAndWriteTagsThatNameAVariable) {
  const std::string longName(300, 'n');
  const struct {
    std::string tag;
    bool variable, found;
    std::wstring name, scope;
  } cases[] = {
      {"<@varparam name='x' scope='user'>", true, true, L"x", L"user"},
      {"<@VARPARAM SCOPE=app NAME=\"it's\">", true, true, L"it's", L"app"},
      {"<@VARPARAM NAME=\"" + longName + "\">", true, true,
       std::wstring(longName.begin(), longName.end()), L"unset"},
      {"<@VARPARAM NAME=a>b", true, true, L"a", L"unset"},
      {"<@VARPARAM NAME='' SCOPE='x", true, true, L"", L"unset"},
      {"<@VARPARAM NAME=abc", true, false, L"unset", L"unset"},
      {"<@VARPARAM NAME='abc>", true, false, L"unset", L"unset"},
      {"<@VARPAx", true, false, L"unset", L"unset"},
      {"<@VARP", false, false, L"unset", L"unset"},
      {" <@VARPARAM NAME=a >", false, false, L"unset", L"unset"},
      {"", false, false, L"unset", L"unset"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.tag);
    Void value;
    value.SetTag(WideString(row.tag.c_str()));
    WideString name(L"unset");
    WideString scope(L"unset");
    EXPECT_EQ(value.IsTagged(), !row.tag.empty());
    EXPECT_EQ(value.IsMarloVariable(), row.variable);
    EXPECT_EQ(value.GetNameAndScope(name, scope), row.found);
    EXPECT_EQ(Text(name), row.name);
    EXPECT_EQ(Text(scope), row.scope);
  }
  Void value;
  EXPECT_TRUE(value.SetNameAndScope(WideString("a name"), WideString()));
  EXPECT_EQ(Text(value.GetTag()), L"<@VARPARAM NAME=\"a name\" SCOPE=\"\">");
}

TEST(Values, HelpWithNarrowText) {
  const Void value;
  EXPECT_STREQ(value.stristr("", ""), "");
  EXPECT_THAT(value.stristr(nullptr, "a"), IsNull());
  EXPECT_THAT(value.stristr("a", nullptr), IsNull());
  char lower[] = "AZ[@\xC4";
  value.strlower(lower);
  EXPECT_STREQ(lower, "az[@\xC4");
}

TEST(Values, CopyAStructureWithItsMembers) {
  Struct original;
  original.members.emplace_back(new Int(1));
  original.members.emplace_back(nullptr);
  original.members.emplace_back(new Struct());
  const std::unique_ptr<Object> clone(original.Clone());
  original.members.front()->SetValueAsString(WideString("2"));
  const auto& members = dynamic_cast<const Struct&>(*clone).members;
  ASSERT_EQ(members.size(), 3U);
  EXPECT_EQ(ValueOf(*members[0]), L"1");
  EXPECT_THAT(members[1], IsNull());
  EXPECT_EQ(typeid(*members[2]), typeid(Struct));
}

}  // namespace
}  // namespace quenlatrix::meta_object::type
