#include "meta_object/type/array.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <cstddef>
#include <fstream>
#include <memory>
#include <utility>
#include <vector>

#include "meta_object/type/scalar_values.h"

namespace quenlatrix::meta_object::type {
namespace {

using ::testing::ElementsAre;
using ::testing::IsNull;

using Dimensions = std::vector<std::pair<int, int>>;

TypeDesc ShapeOf(const Dimensions& dimensions) {
  TypeDesc desc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, true);
  for (const auto& [lowerBound, elementCount] : dimensions) {
    desc.arrayInfo->AddDimensionInfo(lowerBound, elementCount);
  }
  return desc;
}

// An element that counts how many of its kind live.
class Counted : public Int {
 public:
  explicit Counted(long value) : Int(value) { ++living; }
  Counted(const Counted& other) : Int(other) { ++living; }
  ~Counted() override { --living; }
  Object* Clone() const override { return new Counted(*this); }

  static inline int living = 0;
};

TEST(ArrayIterator, VisitsEveryElementOnceInStorageOrder) {
  int lower[] = {1, -1};
  int upper[] = {2, 0};
  int current[] = {9, 9};
  MultidimensionalArrayIterator it(2, lower, upper, current);
  for (int walk = 0; walk < 2; ++walk) {
    std::vector<std::vector<int>> visited;
    for (it.SetFirst(); !it.EOA(); it.Next()) {
      visited.push_back({current[0], current[1], static_cast<int>(it.GetPosition())});
    }
    EXPECT_THAT(visited, ElementsAre(ElementsAre(1, -1, 0), ElementsAre(1, 0, 1),
                                     ElementsAre(2, -1, 2), ElementsAre(2, 0, 3)));
    it.Next();
    EXPECT_EQ(it.GetPosition(), 3U);
    EXPECT_TRUE(it.EOA());
  }
  MultidimensionalArrayIterator single(0, nullptr, nullptr, nullptr);
  single.SetFirst();
  EXPECT_FALSE(single.EOA());
  single.Next();
  EXPECT_TRUE(single.EOA());
}

TEST(Array, FindsPlacesByIndicesIteratorAndLinearIndexAlike) {
  Array array;
  ASSERT_TRUE(array.Create(ShapeOf({{1, 2}, {0, 3}, {-1, 4}})));
  EXPECT_EQ(array.GetItemCount(), 24);
  int lower[] = {1, 0, -1};
  int upper[] = {2, 2, 2};
  int current[3];
  MultidimensionalArrayIterator it(3, lower, upper, current);
  for (it.SetFirst(); !it.EOA(); it.Next()) {
    auto* item = new Int(0);
    ASSERT_TRUE(array.SetItem(item, current[0], current[1], current[2]));
    EXPECT_EQ(array.GetItem(current[0], current[1], current[2]), item);
    EXPECT_EQ(array.GetItem(&it), item);
    EXPECT_EQ(array.GetItemAt(it.GetPosition()), item);
    int reversed[] = {current[2], current[1], current[0]};
    EXPECT_EQ(array.GetLinearIndex(reversed, 3), it.GetPosition());
    EXPECT_THAT(reversed, ElementsAre(current[2] + 1, current[1], current[0] - 1));
  }
  EXPECT_EQ(it.GetPosition(), 23U);
  it.SetFirst();
  const std::unique_ptr<Object> replaced(array.GetItemAt(0));
  EXPECT_TRUE(array.SetItem(nullptr, &it));
  EXPECT_THAT(array.GetItem(1, 0, -1), IsNull());
}

TEST(Array, RefusesPlacesThatItDoesNotHave) {
  Array array;
  Int item(1);
  EXPECT_FALSE(array.SetItem(&item, 0)) << "without storage";
  ASSERT_TRUE(array.Create(ShapeOf({{1, 3}, {0, 2}})));
  const std::pair<int, int> outside[] = {
      {0, 0}, {4, 0}, {1, -1}, {1, 2}, {-2147483647 - 1, 0}, {2147483647, 0}};
  for (const auto& [first, second] : outside) {
    EXPECT_FALSE(array.SetItem(&item, first, second)) << first << ',' << second;
    EXPECT_THAT(array.GetItem(first, second), IsNull());
    int reversed[] = {second, first};
    EXPECT_EQ(array.GetLinearIndex(reversed, 2), Array::kNoIndex);
  }
  int one[] = {1};
  EXPECT_EQ(array.GetLinearIndex(one, 1), Array::kNoIndex);
  Array shifted;
  ASSERT_TRUE(shifted.Create(ShapeOf({{1, 3}, {5, 2}})));
  int second[] = {6, 9};
  EXPECT_EQ(shifted.GetLinearIndex(second, 2), Array::kNoIndex);
  EXPECT_THAT(second, ElementsAre(1, 9)) << "the last dimension's comes first";
  EXPECT_FALSE(array.SetItemAt(&item, 6));
  EXPECT_FALSE(array.SetItem(&item, nullptr));
  EXPECT_THAT(array.GetItem(nullptr), IsNull());

  // A descriptor that outgrew its storage since: the first index would be 2^32.
  array.GetMetaItemType() = ShapeOf({{0, 65537}, {0, 65536}});
  EXPECT_FALSE(array.SetItem(&item, 65536, 0));
  EXPECT_FALSE(array.SetItem(&item, 0, 6));
}

TEST(Array, TakesOnlyShapesThatItCanHold) {
  const struct {
    Dimensions dimensions;
    bool created;
    int count;
  } cases[] = {
      {{}, false, 2},
      {{{0, 0}}, false, 2},
      {{{0, 46341}, {0, 46341}}, false, 2},
      {{{0, -1}, {0, 4}}, true, -4},
      {{{5, 1}, {5, 7}}, true, 7},
  };
  for (const auto& row : cases) {
    Array array;
    ASSERT_TRUE(array.Create(ShapeOf({{0, 2}})));
    EXPECT_EQ(array.Create(ShapeOf(row.dimensions)), row.created);
    EXPECT_EQ(array.GetItemCount(), row.count);
    Int item(1);
    EXPECT_EQ(array.SetItemAt(&item, 1), row.count > 0);
    array.SetItemAt(nullptr, 1);
  }
  Array array;
  EXPECT_FALSE(array.Create(TypeDesc(TypeDesc::Key::Int, TypeDesc::RefType::ByValue, false)));
  EXPECT_EQ(array.GetDimensionCount(), 0);
}

TEST(Array, RefusesAShapeThatMemoryCannotHoldAndStaysAsItWas) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer's allocator ends the program instead of answering null";
#endif
  Array array;
  ASSERT_TRUE(array.Create(ShapeOf({{3, 2}})));
  rlimit old{};
  ASSERT_EQ(getrlimit(RLIMIT_AS, &old), 0);
  const rlimit limited{8UL << 30, old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limited), 0);
  EXPECT_FALSE(array.Create(ShapeOf({{0, 2147483647}})));
  setrlimit(RLIMIT_AS, &old);
  int lowerBound = 0;
  int elementCount = 0;
  EXPECT_TRUE(array.GetDimensionInfo(0, lowerBound, elementCount));
  EXPECT_EQ(lowerBound, 3);
  EXPECT_EQ(elementCount, 2);
  for (const int none : {-1, 1}) {
    EXPECT_FALSE(array.GetDimensionInfo(none, lowerBound, elementCount));
  }
  EXPECT_EQ(lowerBound, 3);
}

std::size_t ResidentPages() {
  std::size_t whole = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> whole >> resident;
  return resident;
}

TEST(Array, EmptyPlacesCostNoMemoryInACopyEither) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer keeps records of memory that is only read";
#endif
  Array array;
  ASSERT_TRUE(array.Create(ShapeOf({{0, 4000000}})));
  const std::size_t before = ResidentPages();
  const std::unique_ptr<Object> clone(array.Clone());
  EXPECT_LT(ResidentPages(), before + 2000) << "of 7800 pages";
}

TEST(Array, OwnsItsElementsAndClonesThem) {
  {
    Array array;
    ASSERT_TRUE(array.Create(ShapeOf({{0, 3}})));
    array.SetDesc(WideString("text"));
    array.SetItem(new Counted(1), 0);
    array.SetItem(new Counted(2), 2);
    std::unique_ptr<Object> clone(array.Clone());
    EXPECT_EQ(Counted::living, 4);
    const auto& copy = dynamic_cast<const Array&>(*clone);
    EXPECT_EQ(copy.GetItemCount(), 3);
    EXPECT_EQ(dynamic_cast<Counted&>(*copy.GetItem(2)).GetValue(), 2);
    EXPECT_THAT(copy.GetItem(1), IsNull());
    WideString text;
    copy.GetDesc(text);
    EXPECT_STREQ(text.getWCharPtr(), L"text");
    clone.reset();
    EXPECT_EQ(Counted::living, 2);
    EXPECT_EQ(dynamic_cast<Counted&>(*array.GetItem(2)).GetValue(), 2);

    std::unique_ptr<Object> forgotten[] = {std::unique_ptr<Object>(array.GetItem(0)),
                                           std::unique_ptr<Object>(array.GetItem(2))};
    ASSERT_TRUE(array.Create(array.GetMetaItemType()));
    EXPECT_EQ(Counted::living, 2) << "a new shape deletes nothing";
    array.SetItem(new Counted(3), 0);
    array.ReleaseItem();
    EXPECT_EQ(Counted::living, 2);
    EXPECT_EQ(array.GetItemCount(), 0);
    EXPECT_EQ(array.GetDimensionCount(), 1) << "the shape stays";
    ASSERT_TRUE(array.Create(ShapeOf({{0, 1}})));
    array.SetItem(new Counted(4), 0);
  }
  EXPECT_EQ(Counted::living, 0);
}

}  // namespace
}  // namespace quenlatrix::meta_object::type
