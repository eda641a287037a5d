#include "collect/attribute_list.h"

#include <gmock/gmock.h>

#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

using quenlatrix::collect::Attribute;
using quenlatrix::collect::AttributeList;
using quenlatrix::collect::ListIterators;
using quenlatrix::collect::Lists;

AttributeList ListOf(std::initializer_list<Attribute> attributes) {
  return AttributeList(std::vector<Attribute>(attributes));
}

std::string TextOf(const AttributeList& list) {
  std::string text;
  for (const Attribute& attribute : list) {
    text += std::string(attribute.key.GetTextEx()) + "=" + attribute.value.GetTextEx() + " ";
  }
  return text;
}

TEST(AttributeList, FindsTheFirstOrAnyAttributeOfAKey) {
  const AttributeList list = ListOf({{"k", "1"}, {"", "none"}, {"K", "2"}, {"e", ""}});
  EXPECT_EQ(list.numOccurrences("K"), 2u);
  EXPECT_STREQ(list.getValue("k"), "1");
  EXPECT_STREQ(list.getValue("k", 2), "2");
  EXPECT_EQ(list.getValue("k", 3), nullptr);
  EXPECT_EQ(list.getValue("k", 0), nullptr);
  EXPECT_TRUE(list.findAttribute("E"));
  EXPECT_EQ(list.getValue("e"), nullptr);
  for (const char* const nobodys : {"", "other", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(list.findAttribute(nobodys));
    EXPECT_EQ(list.getValue(nobodys), nullptr);
    EXPECT_EQ(list.numOccurrences(nobodys), 0u);
  }
}

TEST(AttributeList, IsAddedToChangedAndRemovedFrom) {
  AttributeList list = ListOf({{"k", "1"}, {"k", "2"}, {"e", ""}});
  EXPECT_FALSE(list.addAttribute(Attribute("K", "3")));
  EXPECT_TRUE(list.addAttribute(Attribute("e", "3")));
  EXPECT_TRUE(list.addAttribute(Attribute("", "4")));
  EXPECT_EQ(TextOf(list), "k=1 k=2 e= e=3 =4 ");
  EXPECT_TRUE(list.changeAttribute("K", "5"));
  EXPECT_TRUE(list.changeAttribute("n", "6"));
  EXPECT_EQ(TextOf(list), "k=5 k=2 e= e=3 =4 n=6 ");
  // A value that was emptied has been set all the same.
  EXPECT_TRUE(list.changeAttribute("n", ""));
  EXPECT_STREQ(list.getValue("n"), "");
  EXPECT_FALSE(list.addAttribute(Attribute("n", "7")));
  EXPECT_TRUE(list.removeAttribute("k"));
  EXPECT_TRUE(list.removeAttribute("e"));
  EXPECT_FALSE(list.removeAttribute("x"));
  EXPECT_FALSE(list.removeAttribute(""));
  EXPECT_EQ(TextOf(list), "k=2 e=3 =4 n= ");
  AttributeList copy = list;
  EXPECT_TRUE(list.removeAllAttributes());
  EXPECT_EQ(TextOf(list), "");
  EXPECT_EQ(TextOf(copy), "k=2 e=3 =4 n= ");
}

TEST(AttributeList, MergedTakesTheValuesOfTheOther) {
  AttributeList list = ListOf({{"k", "1"}, {"k", "2"}, {"a", "3"}});
  EXPECT_TRUE(list.mergeAttributeList(ListOf({{"n", "4"}, {"K", "5"}, {"", "6"}, {"a", ""}})));
  EXPECT_EQ(TextOf(list), "k=5 k=2 a= n=4 =6 ");
}

// A copy of which can be refused.
struct Refusing {
  Refusing() = default;
  Refusing(const Refusing& other) : left(other.left) {
    if (left != nullptr && (*left)-- == 0) throw std::bad_alloc();
  }
  int* left = nullptr;
};

TEST(Lists, LongOnesAreGivenUpHalfMadeWithoutTheStack) {
  int left = 600000;
  Refusing element;
  element.left = &left;
  const std::vector<std::reference_wrapper<const Refusing>> all(1000000, element);
  EXPECT_THROW((Lists<Refusing>(all.begin(), all.end())), std::bad_alloc);
}

TEST(Lists, ThrowTheSameErrorAtTheEndConstOrNot) {
  Lists<Attribute> list;
  EXPECT_THROW(*list.begin(), ListIterators<Attribute>::EndOfListError);
  EXPECT_THROW(*std::as_const(list).begin(), ListIterators<Attribute>::EndOfListError);
}

TEST(AttributeList, NamesAttributesInAValue) {
  AttributeList list = ListOf({{"list", "x:Y::z:"}, {"x", "1"}, {"z", "3"}, {"empty", ""}});
  Lists<Attribute*> named;
  list.getAllAttributes("LIST", named);
  EXPECT_THAT(std::vector<Attribute*>(named.begin(), named.end()),
              testing::ElementsAre(list.getAttribute("x"), list.getAttribute("z")));
  for (const char* const none : {"empty", "other", ""}) {
    EXPECT_EQ(&list.getAllAttributes(none, named), &named);
    EXPECT_EQ(std::distance(named.begin(), named.end()), 2);
  }
  list.changeAttribute("list", "none");
  EXPECT_TRUE(list.getAllAttributes("list", named).isEmpty());
}

}  // namespace
