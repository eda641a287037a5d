#include "collect/attribute.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

using quenlatrix::collect::Attribute;

TEST(Attribute, ElementsOfItsValueAreCountedAndRead) {
  const char* const none = nullptr;
  const struct {
    const char* value;
    unsigned long count;
    std::vector<const char*> elements;
  } cases[] = {{"", 0, {none}},
               {"a", 1, {"a", none}},
               {"a:b:c", 3, {"a", "b", "c", none}},
               {"a:", 2, {"a", none}},
               {":", 2, {"", none}},
               {"::b", 3, {"", "", "b", none}},
               {"a::", 3, {"a", "", none}}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.value);
    const Attribute attribute("k", test.value);
    for (unsigned long i = 0; i < test.elements.size(); ++i) {
      ZuText out("as it was");
      EXPECT_EQ(attribute.getValueListElement(i, out), test.elements[i] != none);
      EXPECT_STREQ(out.GetTextEx(), test.elements[i] == none ? "as it was" : test.elements[i]);
    }
    EXPECT_EQ(attribute.getValueListElementCount(), test.count);
  }
}

TEST(Attribute, AnElementIsReplacedOrAppendedWithEmptyOnesBetween) {
  const struct {
    const char* before;
    unsigned long index;
    const char* element;
    bool done;
    const char* after;
  } cases[] = {
      {"a:b:c", 1, "x", true, "a:x:c"}, {"a:b:c", 0, "longer", true, "longer:b:c"},
      {"a:b:c", 2, "", true, "a:b:"},   {"a::c", 1, "x", true, "a:x:c"},
      {"a", 3, "x", true, "a:::x"},     {"a:", 2, "x", true, "a::x"},
      {"a", 1, nullptr, true, "a:"},    {"a:", 1, "x", false, "a:"},
      {"", 0, "x", false, ""},          {"a", ~0ul, "xy", false, "a"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(std::string(test.before) + " " + std::to_string(test.index));
    Attribute attribute("k", test.before);
    EXPECT_EQ(attribute.updateValueListElement(test.index, test.element), test.done);
    EXPECT_STREQ(attribute.value.GetTextEx(), test.after);
    EXPECT_EQ(attribute.value.GetSize(), std::strlen(test.after));
  }
  Attribute itself("k", "ab:c");
  EXPECT_TRUE(itself.updateValueListElement(4, itself.value.GetText()));
  EXPECT_STREQ(itself.getValue(itself.value).GetTextEx(), "ab:c:::ab:c");
}

TEST(Attribute, IsOrderedAndFoundByItsKeyWithoutRegardToCase) {
  std::vector<Attribute> attributes = {{"b", ""}, {"C", ""}, {"", "x"}, {"A", ""}};
  std::sort(attributes.begin(), attributes.end());
  std::string keys;
  for (const Attribute& attribute : attributes) {
    keys += std::string(attribute.key.GetTextEx()) + ",";
  }
  EXPECT_EQ(keys, ",A,b,C,");
  EXPECT_TRUE(attributes[1] == Attribute("a", "other"));
  EXPECT_TRUE(attributes[1] == "a");
  EXPECT_FALSE(attributes[1] == attributes[2]);
  EXPECT_TRUE(Attribute() == attributes[0]);
  EXPECT_FALSE(attributes[0] == "");
  EXPECT_FALSE(attributes[1] == static_cast<const char*>(nullptr));
}

}  // namespace
