#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "meta_object/info/cached_method_info.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/property.h"

namespace quenlatrix::meta_object::info {
namespace {

using cache::CachedMethodInfo;
using cache::CachedParamInfo;

using Bytes = std::vector<unsigned char>;

template <typename Record>
Bytes Serialized(const Record& record) {
  void* buffer = nullptr;
  int size = -1;
  EXPECT_TRUE(record.Serialize(&buffer, &size));
  const std::unique_ptr<char[]> owned(static_cast<char*>(buffer));
  return {owned.get(), owned.get() + size};
}

std::wstring Text(const WideString& text) {
  return text.getWCharPtr() == nullptr ? L"" : text.getWCharPtr();
}

ObjectInfo Sample() {
  ObjectInfo info;
  info.infoKind = 0x01020304;
  info.description = L"d\U0001f600";
  info.flagA = false;
  info.flagB = true;
  info.properties.push_back(new Property(L"a name of twenty chars", L"and a value", false));
  info.properties.push_back(nullptr);
  info.properties.push_back(new Property());
  info.properties.back()->code = 0xFFFFFFFF;
  info.properties.back()->number = -2;
  return info;
}

TEST(Property, IsWrittenByteForByteAsHostsReadIt) {
  const Bytes expected = {1, 'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0, 0, 0,  // name
                          1, 0,   0, 0,                               // code
                          1, 'x', 0, 0, 0, 0,   0, 0, 0,              // value
                          0, 0,   0, 0, 0, 0,   0, 0,                 // number
                          1, 0,   0};                                 // flag, trailing bytes
  EXPECT_EQ(Serialized(Property(L"ab", L"x", true)), expected);
  const Bytes empty = {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0};
  EXPECT_EQ(Serialized(Property()), empty);

  void* buffer = &buffer;
  int size = 0;
  EXPECT_FALSE(Property().Serialize(nullptr, &size));
  EXPECT_FALSE(Property().Serialize(&buffer, nullptr));
  EXPECT_EQ(buffer, &buffer);
}

TEST(Property, AbsentTextsKeepWhatTheTargetHolds) {
  Bytes record = Serialized(Property(WideString(), L"new", false));
  Property target(L"kept", L"old", true);
  EXPECT_TRUE(target.Deserialize(record.data()));
  EXPECT_EQ(Text(target.name), L"kept");
  EXPECT_EQ(Text(target.value), L"new");
  EXPECT_FALSE(target.flag);
}

TEST(ObjectInfo, ComesBackWholeWithoutItsNullProperties) {
  Bytes record = Serialized(Sample());
  EXPECT_EQ(record.size(), 4 + 13 + 2 + 5 + 8 + (8 + 4 * 33 + 25) + (8 + 25) + 8U);
  EXPECT_EQ(record[24], 3) << "the list's length, the null entry included";
  ObjectInfo read;
  read.note = L"kept";
  read.properties.push_back(new Property(L"first", L"", true));
  EXPECT_TRUE(read.Deserialize(record.data(), record.size()));
  EXPECT_EQ(read.infoKind, 0x01020304U);
  EXPECT_EQ(Text(read.description), L"d\U0001f600");
  EXPECT_FALSE(read.flagA);
  EXPECT_TRUE(read.flagB);
  EXPECT_EQ(Text(read.note), L"kept");
  ASSERT_EQ(read.properties.size(), 3U);
  EXPECT_EQ(Text(read.properties[0]->name), L"first");
  EXPECT_EQ(Text(read.properties[1]->name), L"a name of twenty chars");
  EXPECT_EQ(read.properties[2]->number, -2);
}

// Each shortened record is a block of its own, so that AddressSanitizer sees any read past it.
template <typename Record>
void ExpectEveryPrefixRefused(const Record& written, const Record& target) {
  const Bytes whole = Serialized(written);
  const Bytes before = Serialized(target);
  Record read(target);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const std::unique_ptr<unsigned char[]> cut(new unsigned char[size]);
    std::memcpy(cut.get(), whole.data(), size);
    EXPECT_FALSE(read.Deserialize(cut.get(), size)) << "cut to " << size << " bytes";
  }
  EXPECT_FALSE(read.Deserialize(nullptr, 0));
  EXPECT_EQ(Serialized(read), before);
}

TEST(Records, CutShortAreRefusedAndChangeNothing) {
  ExpectEveryPrefixRefused(Property(L"name", L"value", true), Property(L"own", L"", false));
  ObjectInfo written = Sample();
  ExpectEveryPrefixRefused(ObjectInfo(written), ObjectInfo());
}

TEST(Records, HostileNumbersAreRefusedOrHarmless) {
  const Bytes whole = Serialized(ObjectInfo(Sample()));
  const std::size_t count = 4 + 13 + 2 + 5;
  const std::tuple<std::size_t, Bytes, bool, std::size_t> cases[] = {
      {count, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, true, 0},  // a count of -1
      {count, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}, true, 2},  // ends at the zeros
      {count + 8, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, false, 0},
      {count + 8, {24, 0, 0, 0, 0, 0, 0, 0}, false, 0},  // shorter than its text
      {count + 17, {0xFF, 0xFF, 0xFF, 0xFF}, true, 2},   // no code point
  };
  for (const auto& [offset, number, isRead, properties] : cases) {
    Bytes record = whole;
    std::ranges::copy(number, record.begin() + static_cast<std::ptrdiff_t>(offset));
    ObjectInfo read;
    EXPECT_EQ(read.Deserialize(record.data(), record.size()), isRead);
    EXPECT_EQ(read.properties.size(), properties);
    if (offset == count + 17) {
      EXPECT_EQ(read.properties.at(0)->name.getWCharPtr()[0], static_cast<wchar_t>(0xFFFFFFFF));
      EXPECT_EQ(read.properties.at(0)->name.getCharPtr(), nullptr);
    }
  }
}

TEST(ObjectInfo, ARecordThatIsTrustedIsReadWhateverLengthItStates) {
  ObjectInfo written;
  written.properties.push_back(new Property(L"name", L"value", true));
  Bytes record = Serialized(written);
  const std::size_t statedLength = 4 + 5 + 2 + 5 + 8;
  record.at(statedLength) = 1;
  ObjectInfo read;
  EXPECT_TRUE(read.Deserialize(record.data()));
  ASSERT_EQ(read.properties.size(), 1U);
  EXPECT_EQ(Text(read.properties[0]->value), L"value");
}

TEST(ObjectInfo, AssignmentReplacesAndClearRestores) {
  ObjectInfo target;
  target.properties.push_back(new Property(L"gone", L"", true));
  const ObjectInfo source = Sample();
  target = source;
  ASSERT_EQ(target.properties.size(), 2U);
  EXPECT_EQ(Text(target.properties[0]->value), L"and a value");
  target.Clear();
  EXPECT_EQ(Serialized(target), Serialized(ObjectInfo()));
}

CachedMethodInfo Method() {
  CachedMethodInfo method;
  method.name = L"add";
  method.altName = L"add";
  method.description = L"adds";
  method.returnType.key = TypeDesc::Key::Int;
  method.methodType = MethodType::Set;
  method.params = new CachedMethodInfo::ParamList;
  const TypeDesc type(TypeDesc::Key::Int, L"int", L"int");
  method.params->push_back(new CachedParamInfo(L"a", type, ParamDirection::In));
  method.params->push_back(nullptr);
  method.params->push_back(new CachedParamInfo(L"b", type, ParamDirection::InOut));
  method.params->back()->option2 = true;
  return method;
}

TEST(CachedMethodInfo, CopiesDeepWithoutDescriptionAndNullParameters) {
  const CachedMethodInfo source = Method();
  const CachedMethodInfo copy(source);
  EXPECT_EQ(copy.description.getWCharPtr(), nullptr);
  ASSERT_EQ(copy.params->size(), 2U);
  EXPECT_EQ(copy.GetParamInfo(-1), nullptr);
  EXPECT_EQ(copy.GetParamInfo(2), nullptr);
  ASSERT_NE(copy.GetParamInfo(1), nullptr);
  EXPECT_NE(copy.GetParamInfo(1), source.GetParamInfo(2));
  EXPECT_TRUE(*copy.GetParamInfo(1) == *source.GetParamInfo(2));
  EXPECT_EQ(source.GetParamInfo(1), nullptr);
  EXPECT_EQ(CachedMethodInfo().GetParamInfo(0), nullptr);
}

TEST(CachedMethodInfo, EqualityLooksAtAllButTheDescription) {
  const CachedMethodInfo original = Method();
  const CachedMethodInfo same(original);
  const std::pair<void (*)(CachedMethodInfo&), bool> changes[] = {
      {[](CachedMethodInfo& m) { m.description = L"other"; }, true},
      {[](CachedMethodInfo& m) { m.params->at(0)->type.displayName = L"other"; }, true},
      {[](CachedMethodInfo& m) { m.name = L"other"; }, false},
      {[](CachedMethodInfo& m) { m.altName = WideString(); }, false},
      {[](CachedMethodInfo& m) { m.returnType.refType = TypeDesc::RefType::ByRef; }, false},
      {[](CachedMethodInfo& m) { m.methodType = MethodType::Get; }, false},
      {[](CachedMethodInfo& m) { m.params->at(0)->name = L"other"; }, false},
      {[](CachedMethodInfo& m) { m.params->at(0)->type.typeName = L"long"; }, false},
      {[](CachedMethodInfo& m) { m.params->at(0)->direction = ParamDirection::InOut; }, false},
      {[](CachedMethodInfo& m) { m.params->at(0)->option1 = true; }, false},
      {[](CachedMethodInfo& m) { m.params->at(1)->option2 = false; }, false},
      {[](CachedMethodInfo& m) { m.params->push_back(new CachedParamInfo(*m.params->at(0))); },
       false},
      {[](CachedMethodInfo& m) { m.Clear(); }, false},
  };
  int number = 0;
  for (const auto& [change, isEqual] : changes) {
    CachedMethodInfo changed(same);
    change(changed);
    EXPECT_EQ(same == changed, isEqual) << "change " << number;
    EXPECT_EQ(changed == same, isEqual) << "change " << number;
    ++number;
  }
  CachedMethodInfo emptyList;
  emptyList.params = new CachedMethodInfo::ParamList;
  EXPECT_FALSE(emptyList == CachedMethodInfo());
  EXPECT_TRUE(CachedMethodInfo() == CachedMethodInfo());
}

}  // namespace
}  // namespace quenlatrix::meta_object::info
