#include "collect/lists.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "collect/attribute.h"

namespace {

using quenlatrix::collect::Attribute;
using quenlatrix::collect::Lists;

TEST(Lists, KeepTheirOrderWhenElementsAreRemoved) {
  Lists<std::string> list;
  for (const char* const element : {"a", "b", "a", "c"}) {
    list.append(element);
  }
  const Lists<std::string> before = list;
  EXPECT_TRUE(list.remove("a"));
  EXPECT_TRUE(list.remove("c"));
  EXPECT_FALSE(list.remove("c"));
  EXPECT_EQ(list.append("d"), "d");
  EXPECT_THAT(std::vector<std::string>(list.begin(), list.end()),
              testing::ElementsAre("b", "a", "d"));
  EXPECT_THAT(std::vector<std::string>(before.begin(), before.end()),
              testing::ElementsAre("a", "b", "a", "c"));
  list.removeAll();
  EXPECT_TRUE(list.isEmpty());
}

TEST(Lists, OfPointersLeaveWhatTheyPointAtAlone) {
  Attribute attribute("k", "v");
  {
    Lists<Attribute*> list;
    list.append(&attribute);
  }
  EXPECT_STREQ(attribute.value.GetTextEx(), "v");
}

}  // namespace
