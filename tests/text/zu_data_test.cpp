#include "text/zu_data.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>

#include "tests/support/binary_layout.h"
#include "text/zu_text_local.h"

namespace {

std::string Bytes(const ZuData& d) {
  return d.GetBuffer() == nullptr
             ? ""
             : std::string(reinterpret_cast<const char*>(d.GetBuffer()), d.GetDataSize());
}

ZuData Data(const char* bytes) {
  ZuData d;
  d.SetEqualTo(bytes, std::strlen(bytes), 0);
  return d;
}

TEST(ZuData, BuffersGrowInStepsAndShrinkOnlyByThirtyTwoBytesOrMore) {
  const std::array<unsigned long, 3> cases[] = {
      {0, 100, 100},      {100, 101, 112},    {100, 112, 128},     {100, 69, 100},
      {100, 68, 68},      {4096, 4097, 4112}, {4097, 4098, 8192},  {5000, 5001, 8192},
      {5000, 4980, 5000}, {5000, 4000, 4000}, {5000, 8192, 12288}, {100, 0, 0}};
  for (const auto& [before, asked, after] : cases) {
    ZuData d(before);
    EXPECT_TRUE(d.SetBufferSize(asked));
    EXPECT_EQ(d.GetBufferSize(), after) << before << " asked for " << asked;
  }
  ZuData d = Data(std::string(100, 'x').c_str());
  EXPECT_TRUE(d.SetBufferSize(10));
  EXPECT_EQ(Bytes(d), std::string(10, 'x'));
}

TEST(ZuData, ImpossibleRequestsFailAndChangeNothing) {
  ZuData d = Data("abc");
  for (const unsigned long n : {ULONG_MAX, ULONG_MAX - 15, ULONG_MAX / 2}) {
    EXPECT_FALSE(d.SetBufferSize(n));
    EXPECT_FALSE(d.Replace(1, 0, nullptr, n));
    EXPECT_EQ(Bytes(d), "abc");
    EXPECT_EQ(d.GetBufferSize(), 3U);
  }
  EXPECT_EQ(d.SetDataSize(4), 3U);
  EXPECT_EQ(d.SetUsableDataSize(2), 2U);
}

TEST(ZuData, BorrowedStorageIsNeverReallocatedOrFreed) {
  unsigned char storage[8] = "abcdefg";
  {
    ZuData d(storage, 8, 3);
    EXPECT_FALSE(d.SetBufferSize(9));
    EXPECT_FALSE(d.Replace(1, 1, "123456789", 9));
    EXPECT_EQ(Bytes(d), "abc");
    EXPECT_EQ(d.SetEqualTo("0123456789", 10, 0), 8U);
    EXPECT_EQ(d.SetEqualTo("0123456789", 10, 12), 6U);
    EXPECT_EQ(Bytes(d), "012345");
    EXPECT_EQ(d.SetEqualTo("0", 1, 12), 0U);
    EXPECT_EQ(d.GetBuffer(), storage);
    storage[0] = 'x';
  }
  EXPECT_EQ(storage[0], '\0');
  ZuData d = Data("own");
  d.SetBuffer(storage, 8, 2);
  d.ReleaseData();
  EXPECT_EQ(d.GetBuffer(), nullptr);
  EXPECT_EQ(d.SetEqualTo("123456789", 9, 20), 9U);
  EXPECT_EQ(d.GetBufferSize(), 20U);
}

TEST(ZuData, WritesNothingToStorageOfNoBytes) {
  unsigned char byte = 'x';
  {
    ZuData none(&byte, 0, 0);
    none.Clear();
  }
  EXPECT_EQ(byte, 'x');
}

TEST(ZuData, AReleasedBufferIsTheCallers) {
  ZuData d = Data("abc");
  unsigned long dataSize = 0;
  unsigned long bufferSize = 0;
  void* const buffer = d.ReleaseBuffer(&dataSize, &bufferSize);
  EXPECT_EQ(std::memcmp(buffer, "abc", 3), 0);
  EXPECT_TRUE(dataSize == 3 && bufferSize == 3);
  std::free(buffer);
  EXPECT_EQ(d.GetBuffer(), nullptr);
  EXPECT_EQ(d.GetDataSize() + d.GetBufferSize(), 0U);
  EXPECT_EQ(d.ReleaseBuffer(nullptr, nullptr), nullptr);
}

TEST(ZuData, ReplacesWithinTheData) {
  const std::tuple<unsigned long, unsigned long, const char*, const char*> cases[] = {
      {1, 2, "XY", "aXYd"}, {1, 2, "", "ad"},          {0, 0, "12", "12abcd"},
      {9, 1, "!", "abcd!"}, {2, 99, "....", "ab...."}, {1, 1, "123", "a123cd"}};
  for (const auto& [pos, count, with, expected] : cases) {
    ZuData d = Data("abcd");
    EXPECT_TRUE(d.Replace(pos, count, with, std::strlen(with)));
    EXPECT_EQ(Bytes(d), expected);
  }
  ZuData d;
  EXPECT_TRUE(d.Replace(7, 7, Data("ab")));
  EXPECT_TRUE(d.Replace(1, 0, static_cast<unsigned char>('-')));
  EXPECT_TRUE(d.Replace(1, 1, -42L));
  EXPECT_EQ(Bytes(d), "a-42b");
}

TEST(ZuData, TakesItsOwnBytesAsArgument) {
  ZuData d = Data("abcd");
  EXPECT_TRUE(d.Replace(1, 2, d));
  EXPECT_EQ(Bytes(d), "aabcdd");
  EXPECT_TRUE(d.Replace(0, 1, d.GetBuffer() + 2, 3));
  EXPECT_EQ(Bytes(d), "bcdabcdd");
  d.SetEqualTo(d.GetBuffer() + 1, 3, 99);
  d.SetEqualTo(d);
  EXPECT_EQ(Bytes(d), "cda");
  d.Copy(d, 1, 9);
  EXPECT_EQ(Bytes(d), "da");
}

TEST(ZuData, CopiesComparesAndIndexesWithinTheData) {
  ZuData d = Data("abcd");
  unsigned char out[8] = "-------";
  EXPECT_EQ(d.Copy(out, 2), 2U);
  EXPECT_EQ(d.Copy(out + 2, 5, 1, 9), 3U);
  EXPECT_STREQ(reinterpret_cast<char*>(out), "abbcd--");
  EXPECT_EQ(d.Copy(nullptr, 5) + d.Copy(out, 5, 4, 1), 0U);
  EXPECT_TRUE(d.Equals("abcd", 4) && !d.Equals("abcd", 3) && !d.Equals(Data("abcD")));
  EXPECT_TRUE(ZuData().Equals(ZuData(5)));
  d[1] = 'X';
  EXPECT_EQ(Bytes(d), "aXcd");
  EXPECT_EQ(&d[4], &ZuData()[0]);
  const ZuData copy(d);
  EXPECT_EQ(copy.GetBufferSize(), 4U);
}

TEST(ZuData, VirtualOperationsKeepTheirSlots) {
  using U = unsigned long;
  using D = ZuData;
  using T = ZuText;
  using Bytes = unsigned char*;
  const auto slots =
      SlotsOf(&D::SetUsableDataSize, &D::GetUsableDataSize, &D::SetBufferSize, &D::ReleaseBuffer,
              &D::ReleaseData, &D::Clear, static_cast<bool (D::*)(D const&) const>(&D::Equals),
              static_cast<bool (D::*)(const char*, U) const>(&D::Equals),
              static_cast<U (D::*)(D const&)>(&D::SetEqualTo),
              static_cast<U (D::*)(const void*, U, U)>(&D::SetEqualTo),
              static_cast<void (D::*)(D&, U, U) const>(&D::Copy),
              static_cast<U (D::*)(Bytes, U) const>(&D::Copy),
              static_cast<U (D::*)(Bytes, U, U, U) const>(&D::Copy),
              static_cast<bool (D::*)(U, U, D const&)>(&D::Replace),
              static_cast<bool (D::*)(U, U, const void*, U)>(&D::Replace),
              static_cast<bool (D::*)(U, U, unsigned char)>(&D::Replace),
              static_cast<bool (D::*)(U, U, long)>(&D::Replace), &T::GetSize, &T::ReplaceText,
              static_cast<void (T::*)(T const&, T const&)>(&T::ReplaceAll),
              static_cast<void (T::*)(T const&, T const&, bool)>(&T::ReplaceAll),
              &T::ReplaceOccurrence, static_cast<bool (T::*)(D const&, bool) const>(&T::Equals),
              static_cast<bool (T::*)(const char*, U, bool) const>(&T::Equals), &T::FirstNEquals);
  EXPECT_EQ(slots, SlotsFrom(2, 25));
}

}  // namespace
