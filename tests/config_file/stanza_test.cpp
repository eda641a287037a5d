#include "config_file/stanza.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "tests/config_file/temporary_file.h"
#include "tests/support/binary_layout.h"

namespace {

using quenlatrix::collect::Attribute;
using quenlatrix::collect::AttributeList;
using quenlatrix::config_file::ConfigFile;
using Stanza = ConfigFile::Stanza;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

std::string TextOf(const Stanza& stanza) {
  std::string text;
  for (unsigned long i = 0; i < stanza.getNumberOfAttributes(); ++i) {
    ZuText key;
    ZuText value;
    EXPECT_TRUE(stanza.getAttributeKey(i, key) && stanza.getAttributeValue(i, value));
    text += std::string(key.GetTextEx()) + "=" + value.GetTextEx() + " ";
  }
  return text;
}

AttributeList ListOf(std::initializer_list<Attribute> attributes) {
  return AttributeList(std::vector<Attribute>(attributes));
}

Stanza StanzaOf(std::initializer_list<Attribute> attributes) {
  return Stanza("name", ListOf(attributes));
}

TEST(Stanza, GivesItsAttributesByKeyAndByPosition) {
  Stanza stanza = StanzaOf({{"k", "1"}, {"K", "2"}, {"empty", ""}});
  ZuText out("before");
  EXPECT_TRUE(stanza.getValue("empty", out));
  EXPECT_STREQ(out.GetTextEx(), "");
  EXPECT_TRUE(stanza.getValue("k", 2, out));
  EXPECT_STREQ(out.GetTextEx(), "2");
  EXPECT_FALSE(stanza.getValue("k", 3, out));
  EXPECT_STREQ(out.GetTextEx(), "");
  Attribute attribute;
  EXPECT_TRUE(stanza.getAttribute("K", attribute));
  EXPECT_STREQ(attribute.value.GetTextEx(), "1");
  EXPECT_TRUE(stanza.getAttributeIndex(1, attribute));
  EXPECT_STREQ(attribute.key.GetTextEx(), "K");
  EXPECT_THROW(stanza.getAttributeIndex(3, attribute), AttributeList::EndOfListError);
  EXPECT_THROW(stanza.getAttributeKey(3, out), AttributeList::EndOfListError);
  // The lock that the throw passed is free.
  EXPECT_TRUE(Stanza("copy").copyAttributeList(stanza));
}

TEST(Stanza, AttributeListsAreAddedReadChangedAndRemoved) {
  Stanza stanza = StanzaOf({{"a", "0"}, {"other", "1"}});
  const AttributeList members = ListOf({{"a", "2"}, {"b", "3"}});
  EXPECT_TRUE(stanza.addAttributeList("list", members));
  EXPECT_EQ(TextOf(stanza), "a=2 other=1 list=a:b b=3 ");
  EXPECT_FALSE(stanza.addAttributeList("LIST", members));
  AttributeList out = ListOf({{"before", ""}});
  EXPECT_TRUE(stanza.getAttributeList("list", out));
  EXPECT_EQ(TextOf(Stanza("", out)), "a=2 b=3 ");
  EXPECT_TRUE(stanza.changeAttributeList("list", ListOf({{"c", "4"}})));
  EXPECT_EQ(TextOf(stanza), "other=1 list=c c=4 ");
  EXPECT_FALSE(stanza.changeAttributeList("none", members));
  EXPECT_TRUE(stanza.removeAttributeList("list"));
  EXPECT_EQ(TextOf(stanza), "other=1 ");
  EXPECT_TRUE(stanza.getAttributeList("list", out));
  EXPECT_EQ(out.getNumberOfAttributes(), 0u);
  EXPECT_TRUE(stanza.addAttributeList("none", out));
  EXPECT_EQ(TextOf(stanza), "other=1 none= ");
}

TEST(Stanza, RefusesAnAttributeListThatCouldNotBeReadBack) {
  Stanza stanza = StanzaOf({{"list", "a"}, {"a", "1"}});
  const std::string longest(4095 - 2, 'x');
  const AttributeList fits = ListOf({{longest.c_str(), ""}, {"y", ""}});
  const AttributeList tooLong = ListOf({{longest.c_str(), ""}, {"yz", ""}});
  EXPECT_FALSE(stanza.addAttributeList("new", tooLong));
  EXPECT_FALSE(stanza.changeAttributeList("list", tooLong));
  EXPECT_EQ(TextOf(stanza), "list=a a=1 ");
  EXPECT_TRUE(stanza.changeAttributeList("list", fits));
}

TEST(Stanza, MergedCopiedAndAssignedWithItselfStaysAsItIs) {
  Stanza stanza = StanzaOf({{"k", "1"}, {"k", "2"}, {"", "3"}});
  Stanza& itself = stanza;
  EXPECT_TRUE(stanza.mergeStanza(itself));
  EXPECT_TRUE(stanza.copyAttributeList(itself));
  stanza = itself;
  EXPECT_EQ(TextOf(stanza), "k=1 k=2 =3 ");
  Stanza other("other");
  EXPECT_TRUE(other.copyAttributeList(stanza));
  EXPECT_FALSE(other == stanza);
  other = stanza;
  EXPECT_TRUE(other == stanza && other.isStanzaName("NAME"));
  EXPECT_EQ(TextOf(other), TextOf(stanza));
}

TEST(Stanza, IsWrittenSortedByKeyWithEscapes) {
  Stanza stanza = StanzaOf({{"b", "1\n"}, {"A\\", "2\r"}, {"c", " 3"}, {"C", ""}, {"c", "0"}});
  stanza.setStanzaName("x\n");
  ConfigFile file("", "");
  file.addStanza(new Stanza(stanza), false);
  EXPECT_EQ(DumpOf(file), "[x\\n]\nA\\\\=2\\r\nb=1\\n\nc= 3\nC=\nc=0\n\n");
}

TEST(Stanza, SaysWhenItCouldNotBeWritten) {
  const OpenFile full(std::fopen("/dev/full", "w"));
  setvbuf(full.get(), nullptr, _IONBF, 0);
  EXPECT_EQ(Stanza::writeBSEscString(full.get(), "x"), -1);
  EXPECT_EQ(Stanza::writeBSEscString(full.get(), "\n"), -1);
  EXPECT_FALSE(Stanza("name").saveStanza(full.get(), false));
  const OpenFile null(std::fopen("/dev/null", "w"));
  EXPECT_EQ(Stanza::writeBSEscString(null.get(), "a\r\n\\b"), 8);
  EXPECT_EQ(Stanza::writeBSEscString(null.get(), nullptr), 0);
}

TEST(Stanza, OperationsOfProgramsBuiltApartStandInTheirSlots) {
  using GetFirst = bool (Stanza::*)(const char*, ZuText&) const;
  using GetNth = bool (Stanza::*)(const char*, unsigned long, ZuText&) const;
  EXPECT_EQ(
      SlotsOf(&Stanza::getNumOccurrences, &Stanza::findValue,
              static_cast<GetFirst>(&Stanza::getValue), static_cast<GetNth>(&Stanza::getValue),
              &Stanza::getAttributeValue, &Stanza::getAttributeKey),
      SlotsFrom(2, 6));
}

}  // namespace
