#include "meta_object/type_desc.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace quenlatrix::meta_object {
namespace {

using Key = TypeDesc::Key;
using RefType = TypeDesc::RefType;

std::wstring Written(const TypeDesc& desc) {
  WideString text(L"replaced");
  EXPECT_TRUE(desc.Serialize(text));
  return text.getWCharPtr();
}

TypeDesc Read(const std::wstring& text) {
  TypeDesc desc;
  EXPECT_TRUE(desc.Deserialize(text.c_str()));
  return desc;
}

std::wstring Rewritten(const std::wstring& text) { return Written(Read(text)); }

// With a null member, which no text brings about.
TypeDesc Point() {
  TypeDesc desc = Read(L"s,Point%%Struct{[Point]x,int%%Int!y,double%%Real}");
  auto& members = desc.structInfo->members;
  members.insert(members.begin() + 1, nullptr);
  return desc;
}

TEST(TypeDesc, WritesWhatNoTextBringsAbout) {
  EXPECT_EQ(Written(TypeDesc(Key::Void, RefType::ByValue, false)), L",%%Void");
  TypeDesc number = Read(L"int,int%%x%%Int^Byref");
  number.key = static_cast<Key>(9);
  EXPECT_EQ(Written(number), L"int,int%%x%%Unknown^Byref");
  TypeDesc colour(Key::Enum, RefType::ByRef, false);
  EXPECT_EQ(Written(colour), L",%%Enum{}");
  colour.enumInfo->AddEnumItem(L"Red", -1);
  colour.enumInfo->AddEnumItem(L"Green", 4294967297);
  EXPECT_EQ(Written(colour), L",%%Enum{Red=-1,Green=1}");
  colour.enumInfo = nullptr;
  EXPECT_EQ(Written(colour), L",%%Enum{}");
  TypeDesc array(Key::Int, RefType::ByRef, true);
  array.arrayInfo->AddDimensionInfo(0, -1);
  EXPECT_EQ(Written(array), L",%%Array{0,-1}");
  EXPECT_EQ(Written(Point()), L"s,Point%%Struct{[Point]x,int%%Int!y,double%%Real}");
}

TEST(TypeDesc, PartsAppendTheirTextAndStructuresReplaceIt) {
  WideString out(L">");
  Read(L"Array{2,3}").arrayInfo->Serialize(out);
  TypeDesc::EnumInfo colours;
  colours.AddEnumItem(L"Red", 0);
  colours.Serialize(out);
  EXPECT_STREQ(out.getWCharPtr(), L">2,3Red=0");
  Read(L"Struct{[Empty]}").structInfo->Serialize(out);
  EXPECT_STREQ(out.getWCharPtr(), L"[Empty]");
}

TEST(TypeDesc, TextsComeBackUnchanged) {
  const std::vector<std::wstring> texts = {
      L"a,b%%%x%%Currency",
      L"a,java.util.Map<K,V>%%Object",
      L"array of int,int%%Array{0,-1:1,10}",
      L",%%Array{}",
      L",%%Enum{Red=0,Green=-1}",
      L"\u00fcber,\u4e2d\u6587%%\U0001f600%%Date",
      L"p,Point%%note%%Struct{[P\u00f6int]\u00e4,int%%Int!y,double%%z%%Real^Byref}",
      L"o,Outer%%Struct{[O]Struct(a,A%%Struct{[A]})!Struct(b,B%%d%%Struct{[B]c,c%%Int})!z,z%%Int}",
      L"o,%%Struct{[1]Struct(,%%Struct{[2]Struct(,%%Struct{[3]x,%%Int!,%%Enum{A=1,B=2}})!,%%Bool})"
      L"!,%%Array{0,-1}}",
      L",%%Struct{[]Struct(f(),%%Struct{[int[]]m(x,%%Int!Struct(g(a(b)),%%Array{0,3})})!,[I%%Char}",
      L",%%Struct{[[I]x,%%Int}",
  };
  for (const std::wstring& text : texts) {
    EXPECT_EQ(Rewritten(text), text);
  }
}

TEST(TypeDesc, ReadsWhatNobodyWroteAsNearAsItCan) {
  const std::pair<const wchar_t*, const wchar_t*> cases[] = {
      {L"", L",%%Unknown"},
      {L"int", L",%%Unknown"},
      {L"Int^Byref and more", L",%%Int^Byref"},
      {L"head%%Int", L"head,%%Int"},
      {L",%%%%Int", L",%%Int"},
      {L"Array{0,5:7: -1x, +3:1,3}", L",%%Array{0,5:-1,3:1,3}"},
      {L"Array{99999999999999999999,4294967297}", L",%%Array{-1,1}"},
      {L"Array{\u0131,2}", L",%%Array{0,2}"},
      {L"Array{", L",%%Array{}"},
      {L"Enum{A=1,B}", L",%%Enum{A=1}"},
      {L"Enum{,,B,A==x,=7=8}", L",%%Enum{A=0,=7}"},
      {L"Struct{", L",%%Struct{[]}"},
      {L"Struct{[open}", L",%%Struct{[]}"},
      {L"Struct{[S]Int!!Struct(Int)ignored!Struct(Real}",
       L",%%Struct{[S],%%Int!,%%Unknown!,%%Int!,%%Real}"},
      {L",%%Struct{[S]},%%Int!Real}", L",%%Struct{[S]},%%Int!,%%Real}"},
      {L"Struct{Int!}", L",%%Struct{[],%%Int!,%%Unknown}"},
  };
  for (const auto& [text, rewritten] : cases) {
    EXPECT_EQ(Rewritten(text), rewritten) << "reading " << ::testing::PrintToString(text);
  }
}

TEST(TypeDesc, ReadingKeepsWhatTheTextDoesNotMention) {
  TypeDesc desc(Key::Real, RefType::ByRef, false);
  desc.displayName = L"shown";
  desc.typeName = L"typed";
  desc.detail = L"more";
  desc.Deserialize(L"Array{0,5}");
  EXPECT_EQ(desc.key, Key::Real);
  EXPECT_EQ(desc.refType, RefType::ByRef);
  desc.Deserialize(L"Int");
  EXPECT_EQ(desc.key, Key::Int);
  EXPECT_EQ(desc.refType, RefType::ByValue);
  EXPECT_EQ(Written(desc), L"shown,typed%%more%%Array{0,5}");
  desc.Deserialize(L"other%%Enum{A=1}");
  EXPECT_EQ(desc.key, Key::Enum);
  EXPECT_EQ(Written(desc), L"other,typed%%more%%Array{0,5}");
  desc.displayName = L"a,b%%c%%Struct{[S]Int}";
  desc.Deserialize(desc.displayName);
  desc.arrayInfo = nullptr;
  EXPECT_EQ(Written(desc), L"a,b%%c%%Struct{[S],%%Int}");
}

TEST(TypeDesc, OnlyAnUnclosedStructureNameFailsToRead) {
  TypeDesc::StructInfo info = *Point().structInfo;
  EXPECT_TRUE(info.Deserialize(L"[Q]x,int%%Int"));
  EXPECT_EQ(info.members.size(), 1U);
  EXPECT_TRUE(info.Deserialize(L"no name%%Int!Real"));
  EXPECT_EQ(info.structName.getWCharPtr(), nullptr);
  EXPECT_EQ(info.members.size(), 2U);
  EXPECT_FALSE(info.Deserialize(L"[Q"));
  EXPECT_TRUE(info.members.empty());
}

TEST(TypeDesc, NestingEndsAtItsBound) {
  const auto nested = [](int levels) {
    std::wstring text = L",%%Int";
    for (int i = 0; i < levels; ++i) {
      text.insert(0, i + 1 < levels ? L"Struct(,%%Struct{[]" : L",%%Struct{[]");
      text += i + 1 < levels ? L"})" : L"}";
    }
    return text;
  };
  EXPECT_EQ(Rewritten(nested(TypeDesc::kMaxNesting)), nested(TypeDesc::kMaxNesting));
  for (const int tooDeep : {TypeDesc::kMaxNesting + 1, 2000}) {
    TypeDesc desc = Point();
    EXPECT_FALSE(desc.Deserialize(nested(tooDeep).c_str()));
    EXPECT_EQ(Written(desc), Written(Point()));
    const std::wstring structure = L"[S]Struct(" + nested(tooDeep - 1) + L")";
    EXPECT_FALSE(desc.structInfo->Deserialize(structure.c_str()));
    EXPECT_EQ(Written(desc), Written(Point()));
  }
}

TEST(TypeDesc, InformationThatIsThereIsFilledAnewInItsPlace) {
  TypeDesc desc = Read(L"Enum{A=1}");
  const auto* const items = desc.enumInfo.get();
  EXPECT_TRUE(desc.Deserialize(L",%%Struct{[S]x,int%%Int}"));
  const auto* const structure = desc.structInfo.get();
  EXPECT_TRUE(desc.Deserialize(L"Struct{[T]}") && desc.Deserialize(L"Enum{B=2}"));
  EXPECT_EQ(desc.enumInfo.get(), items);
  EXPECT_EQ(desc.structInfo.get(), structure);
  EXPECT_EQ(items->items.size(), 1U);
  EXPECT_TRUE(structure->members.empty());
}

TEST(TypeDesc, KeywordsNameKeysInAnyCase) {
  const std::vector<std::pair<const wchar_t*, Key>> cases = {
      {L"INT", Key::Int},          {L"int", Key::Int},       {L"Float", Key::Real},
      {L"TEXT", Key::String},      {L"BOOL", Key::Bool},     {L"CHAR", Key::Char},
      {L"STRUCTURE", Key::Struct}, {L"DATE", Key::Date},     {L"CURRENCY", Key::Currency},
      {L"enumeration", Key::Enum}, {L"OBJECT", Key::Object}, {L"VOID", Key::Unknown},
      {L"\u0149NT", Key::Unknown}, {L"INTS", Key::Unknown},  {L"IN", Key::Unknown},
      {nullptr, Key::Unknown},
  };
  for (const auto& [keyword, key] : cases) {
    const TypeDesc desc(WideString(keyword), RefType::ByRef, true);
    EXPECT_EQ(desc.key, key);
    EXPECT_EQ(desc.enumInfo != nullptr, key == Key::Enum);
    EXPECT_EQ(desc.structInfo != nullptr, key == Key::Struct);
    EXPECT_TRUE(desc.arrayInfo);
    EXPECT_EQ(desc.refType, RefType::ByRef);
  }
}

TEST(TypeDesc, EqualityAsksWhetherTheRightSideFits) {
  const std::tuple<const wchar_t*, const wchar_t*, bool> cases[] = {
      {L"a,int%%x%%Int", L"b,int%%y%%Int", true},
      {L",int%%Int", L",long%%Int", false},
      {L",X%%Object", L",X%%Object^Byref", false},
      {L",%%Enum{A=1}", L",%%Enum{B=2}", true},
      {L",%%Enum{A=1}", L",%%Int", false},
      {L",%%Array{0,-1}", L",%%Array{0,-1}", true},
      {L",%%Array{0,-1}", L",%%Array{0,5}", false},
      {L",%%Void", L",%%Array{0,-1}", true},
      {L",%%Array{0,-1}", L",%%Void", false},
      {L"a,A%%Struct{[S]Int}", L"b,B%%Struct{[S]Int}", true},
      {L",%%Struct{[S]Int}", L",%%Struct{[T]Int}", false},
      {L",%%Struct{[S]Int}", L",%%Struct{[S]Int!Int}", false},
      {L",%%Struct{[S]Int}", L",%%Struct{[S]Real}", false},
      {L",%%Struct{[S]Int}", L",%%Int", false},
      {L",%%Int", L",%%Struct{[S]Int}", false},
  };
  for (const auto& [left, right, equal] : cases) {
    EXPECT_EQ(Read(left) == Read(right), equal)
        << ::testing::PrintToString(left) << " and " << ::testing::PrintToString(right);
  }
  TypeDesc withoutItems(Key::Enum, RefType::ByValue, false);
  withoutItems.enumInfo = nullptr;
  EXPECT_TRUE(withoutItems == Read(L",%%Enum{A=1}"));
  EXPECT_FALSE(Read(L",%%Enum{A=1}") == withoutItems);
  EXPECT_FALSE(Point() == Point()) << "a null member equals nothing";
}

TEST(TypeDesc, CopiesAreDeepAndMovesLeaveNothing) {
  static_assert(std::is_nothrow_move_constructible_v<TypeDesc>);
  static_assert(std::is_nothrow_move_assignable_v<TypeDesc>);
  TypeDesc source = Read(L"o,O%%d%%Struct{[O]Struct(i,I%%Struct{[I]Int})!Array{0,1}}");
  const std::wstring text = Written(source);
  TypeDesc copy(source);
  copy.structInfo->members[0]->structInfo->members[0]->key = Key::Real;
  EXPECT_EQ(Written(source), text);

  TypeDesc taken(std::move(copy));
  EXPECT_EQ(Written(copy), L",%%Void");  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(Written(taken), L"o,O%%d%%Struct{[O]Struct(i,I%%Struct{[I],%%Real})!,%%Array{0,1}}");
  taken = *taken.structInfo->members[0];
  EXPECT_EQ(Written(taken), L"i,I%%Struct{[I],%%Real}");

  TypeDesc::StructInfo joined(*source.structInfo);
  joined = *taken.structInfo;
  EXPECT_STREQ(joined.structName.getWCharPtr(), L"I");
  EXPECT_EQ(joined.members.size(), 3U);

  TypeDesc numbered = Read(L"Enum{A=1}");
  numbered.key = Key::Int;
  EXPECT_EQ(TypeDesc(numbered).key, Key::Enum);
  numbered.Clear();
  EXPECT_EQ(Written(numbered), L",%%Void");
}

}  // namespace
}  // namespace quenlatrix::meta_object
