#include "meta_object/identity.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

using quenlatrix::meta_object::Identity;

TEST(Identity, IsParsedAndWrittenBackInCanonicalForm) {
  const struct {
    const char* text;
    bool valid;
    const char *handler, *handlerData, *core, *canonical;
  } cases[] = {
      {"JAVABEAN://B?Scope=user?Mode=cached", true, "JAVABEAN", "B", "JAVABEAN://B",
       "JAVABEAN://B?Scope=user?Mode=cached"},
      {"J://Bean?", true, "J", "Bean", "J://Bean", "J://Bean"},
      {"J://Bean?flag?a=1", true, "J", "Bean", "J://Bean", "J://Bean?a=1"},
      {"J://Bean?=x??b=", true, "J", "Bean", "J://Bean", "J://Bean?b="},
      {"J://Bean? a\t=\n1 ", true, "J", "Bean", "J://Bean", "J://Bean?a=1"},
      {"J://Bean? = ", true, "J", "Bean", "J://Bean", "J://Bean? = "},
      {"J://Bean?a=b=c?A=d", true, "J", "Bean", "J://Bean", "J://Bean?a=b=c?A=d"},
      {"J://x://y", true, "J", "x://y", "J://x://y", "J://x://y"},
      {"A?b://c", true, "A?b", "c", "A", "A?b://c"},
      {"://c", false, "", "c", "://c", "://c"},
      {"J://?a=1", false, "J", "", "J://", "J://?a=1"},
      {"Bean", false, "", "", "", "://"},
      {"", false, "", "", "", "://"},
      {nullptr, false, "", "", "", "://"},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.text ? row.text : "(null)");
    Identity identity("Old://data?a=b");
    identity.SetIdentity(row.text);
    EXPECT_EQ(identity.identity, row.text ? row.text : "");
    EXPECT_EQ(identity.handler, row.handler);
    EXPECT_EQ(identity.handlerData, row.handlerData);
    EXPECT_EQ(identity.core, row.core);
    EXPECT_EQ(identity.IsValid(), row.valid);
    identity.GenerateIdentity();
    EXPECT_EQ(identity.identity, row.canonical);
  }
}

TEST(Identity, AttributesAreFoundInAnyCase) {
  Identity identity("JAVABEAN", "Bean");
  EXPECT_TRUE(identity.SetAttribute("Scope", "user"));
  EXPECT_TRUE(identity.SetAttribute("Mode", "cached"));
  EXPECT_TRUE(identity.SetAttribute("SCOPE", "app"));
  EXPECT_EQ(identity.identity, "JAVABEAN://Bean?Scope=app?Mode=cached");
  EXPECT_EQ(identity.GetAttributeAsString("sCoPe"), "app");
  EXPECT_EQ(identity.GetAttributeAsString("none"), "");
  EXPECT_TRUE(identity.RemoveAttribute("scope"));
  EXPECT_EQ(identity.identity, "JAVABEAN://Bean?Mode=cached");
}

TEST(Identity, ReservedTokensMakeNoPart) {
  Identity identity("J://Bean?a=1");
  for (const char* const bad : {"A?B", "A=B", "A://B", "?", "=", "://"}) {
    EXPECT_TRUE(identity.FindReservedTokens(bad)) << bad;
    EXPECT_FALSE(Identity(bad, "Bean").IsValid()) << bad;
    EXPECT_FALSE(Identity("J", bad).IsValid()) << bad;
  }
  EXPECT_FALSE(identity.FindReservedTokens("A:/B//"));
  EXPECT_FALSE(identity.SetAttribute("", "1"));
}

TEST(Identity, TakesATextOfItsOwn) {
  Identity identity("J://Bean?a=1");
  identity.SetIdentity(identity.core);
  EXPECT_EQ(identity.identity, "J://Bean");
  identity.SetIdentity(identity.identity.c_str());
  EXPECT_EQ(identity.handlerData, "Bean");
}

TEST(Identity, WhiteSpaceIsTheCLocales) {
  const std::tuple<const char*, const char*, std::size_t, std::size_t> cases[] = {
      {" \t\n\v\f\ra b\r\f\v\n\t ", "a b", 0, 14},
      {"ab", "ab", std::string::npos, std::string::npos},
      {"\xA0x", "\xA0x", std::string::npos, std::string::npos},
  };
  const Identity identity;
  for (const auto& [text, trimmed, first, last] : cases) {
    EXPECT_EQ(identity.TrimString(text), trimmed);
    EXPECT_EQ(identity.FindWhiteSpace(text), first) << text;
    EXPECT_EQ(identity.ReverseFindWhiteSpace(text), last) << text;
  }
}

}  // namespace
