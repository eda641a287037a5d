#include "text/zu_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "tests/support/locales.h"
#include "tests/support/refused_allocations.h"
#include "text/case_tables.h"
#include "text/zu_text_local.h"

namespace {

const char* noText = nullptr;

TEST(ZuText, EveryWayToNothingIsEmpty) {
  const ZuText texts[] = {ZuText(),     ZuText(""),        ZuText(noText),
                          ZuText('\0'), ZuText(noText, 5), ZuText("abc", 0),
                          ZuText(9UL),  ZuText("x") = "",  ZuText("x") = '\0'};
  for (const ZuText& t : texts) {
    EXPECT_STREQ(t.GetTextEx(), "");
    EXPECT_EQ(t.GetSize(), 0U);
    EXPECT_TRUE(t == "" && t == noText && t == ZuText());
    EXPECT_EQ(t.GetTextAsBitMask(), 0U);
    EXPECT_EQ(t.GetTextAsULong(), 0U);
  }
  EXPECT_EQ(ZuText().GetText(), nullptr);
  ZuText t("abc");
  EXPECT_EQ(t.GetDataSize(), 4U);
  EXPECT_EQ(t.GetBufferSize(), 4U);
  EXPECT_EQ(t.SetUsableDataSize(0), 1U);
  EXPECT_TRUE(t == "");
  EXPECT_STREQ((t += "x").GetTextEx(), "x");
}

TEST(ZuText, AssignsAndAppendsEveryKind) {
  ZuText t;
  t = -5L;
  t += 7U;
  EXPECT_STREQ(t.GetTextEx(), "-57");
  t = INT_MIN;
  (t += ' ') += ULLONG_MAX;
  EXPECT_STREQ(t.GetTextEx(), "-2147483648 18446744073709551615");
  t = 'a';
  ((t += ZuText("bc")) += ZuText()) += noText;
  (t += '\0') += LLONG_MIN;
  EXPECT_STREQ(t.GetTextEx(), "abc-9223372036854775808");
  EXPECT_EQ(t.GetDataSize(), 24U);
  t = ZuText(static_cast<unsigned char>(0xE9));
  EXPECT_STREQ(t.GetTextEx(), "\xE9");
}

TEST(ZuText, TakesItselfAsArgument) {
  ZuText t("abc");
  t += t;
  EXPECT_STREQ(t.GetTextEx(), "abcabc");
  t += t.GetTextEx() + 4;
  EXPECT_STREQ(t.GetTextEx(), "abcabcbc");
  t = t.GetTextEx() + 5;
  EXPECT_STREQ(t.GetTextEx(), "cbc");
  ZuText& self = t;
  t = self;
  t.Mid(t, 1, 2);
  EXPECT_STREQ(t.GetTextEx(), "bc");
  t.Right(t, 1);
  t.Left(t, 9);
  EXPECT_STREQ(t.GetTextEx(), "c");
}

TEST(ZuText, SettingTheLengthKeepsTheTextTerminated) {
  ZuText t("abcdef");
  EXPECT_EQ(t.SetUsableDataSize(3), 4U);
  EXPECT_STREQ(t.GetTextEx(), "abc");
  EXPECT_EQ(t.SetUsableDataSize(50), 51U);
  EXPECT_EQ(t.GetText()[50], '\0');
  EXPECT_EQ(t.SetUsableDataSize(ULONG_MAX), 51U);
  t = std::string(100, 'x').c_str();
  EXPECT_TRUE(t.SetBufferSize(10));
  EXPECT_EQ(t.GetTextEx(), std::string(9, 'x'));
  unsigned char storage[4];
  t.SetBuffer(storage, 4, 0);
  t = "abcdef";
  EXPECT_STREQ(t.GetTextEx(), "abc");
  EXPECT_EQ(t.SetUsableDataSize(4), 4U);
  EXPECT_EQ(t.SetEqualTo(storage, 4, 0), 4U);
  EXPECT_STREQ(t.GetTextEx(), "abc");
}

TEST(ZuText, ComparesWithoutCaseUnlessAskedTo) {
  const ZuText t("abc");
  EXPECT_TRUE(t == "ABC" && t == ZuText("aBc") && !(t != "Abc") && t <= ZuText("ABC"));
  EXPECT_TRUE(t < ZuText("ABD") && t > ZuText("AB") && t > ZuText() && ZuText() >= ZuText(""));
  EXPECT_TRUE(t.Equals(ZuText("abc"), true) && !t.Equals(ZuText("ABC"), true));
  EXPECT_TRUE(t.Equals("abc", 3, true));
  EXPECT_FALSE(t.Equals("abc", 2, true) || t.Equals("abC", 3, true) || t.Equals("", 0, true));
  EXPECT_TRUE(t.Equals("ABx", 2) && t.Equals("ABx", 2, false));
  EXPECT_FALSE(t.Equals("", 0) || t.Equals(noText, 0) || !ZuText().Equals(noText, 7));
  EXPECT_TRUE(ZuText().Equals("", 0) && ZuText().Equals("", 0, true));
  EXPECT_TRUE(t.Compare("ABx", 2) == 0 && t.Compare("abd", 3) < 0 && t.Compare("x", 0) == 1);
  EXPECT_TRUE(ZuText().Compare("x", 0) == 0 && ZuText().Compare("x", 1) == -1);
  EXPECT_TRUE(t.Compare(noText, 0) == -1 && ZuText().Compare(noText, 5) == 0);
  EXPECT_TRUE(t.CiEquals("AB") && !t.CiEquals("abcd"));
  EXPECT_TRUE(t.CompareLeft("AB") && t.CompareLeft("") && !t.CompareLeft("abcd"));
  EXPECT_TRUE(t.FirstNEquals("ABx", 2, false) && t.FirstNEquals("abcdef", 6, true));
  EXPECT_FALSE(t.FirstNEquals("ABx", 2, true) || t.FirstNEquals("", 0, true));
  EXPECT_TRUE(ZuText("\xC9").FirstNEquals("\xE9", 1, false));
}

TEST(ZuText, DataWithoutTerminatorIsHeldAndComparedWithinItsSize) {
  char bytes[] = {'a', 'b', 'c'};
  const ZuData raw(bytes, 3, 3);
  ZuText t;
  EXPECT_EQ(t.SetEqualTo(raw), 4U);
  EXPECT_STREQ(t.GetTextEx(), "abc");
  EXPECT_FALSE(t.Equals(raw));
}

TEST(ZuText, TakesPartsOut) {
  const ZuText t("abc");
  ZuText out("before");
  t.Left(out, 2);
  EXPECT_STREQ(out.GetTextEx(), "ab");
  t.Mid(out, 3, 1);
  EXPECT_EQ(out.GetSize(), 0U);
  unsigned char dst[5];
  EXPECT_TRUE(t.Copy(dst, 5) == 3 && std::memcmp(dst, "abc", 4) == 0);
  EXPECT_TRUE(t.Copy(dst, 3) == 2 && std::memcmp(dst, "ab", 3) == 0);
  EXPECT_TRUE(t.Copy(dst, 5, 1, 1) == 1 && std::memcmp(dst, "bb", 2) == 0);
  EXPECT_TRUE(t.Copy(dst, 2, 1, 9) == 1 && std::memcmp(dst, "b", 2) == 0);
  EXPECT_TRUE(ZuText().Copy(dst, 5) == 0 && dst[0] == '\0');
}

TEST(ZuText, ChangesCaseByItsOwnTables) {
  for (unsigned int byte = 1; byte < 256; ++byte) {
    const bool upper = (byte >= 'A' && byte <= 'Z') || (byte >= 192 && byte <= 223);
    const bool lower = (byte >= 'a' && byte <= 'z') || byte >= 224;
    ZuText t(static_cast<unsigned char>(byte));
    t.UpperCase();
    EXPECT_EQ(t[0], byte == 233 ? 101U : lower ? byte - 32 : byte);
    t = static_cast<char>(byte);
    t.LowerCase();
    EXPECT_EQ(t[0], upper ? byte + 32 : byte);
  }
  EXPECT_EQ(quenlatrix::i18n::k2upper[201], 101U);
  EXPECT_EQ(quenlatrix::i18n::k2lower[233], 233U);
}

TEST(ZuText, ReadsNumbersAndMasks) {
  EXPECT_EQ(ZuText(" +42x").GetTextAsULong(), 42U);
  EXPECT_EQ(ZuText("-1").GetTextAsULong(), 4294967295U);
  EXPECT_EQ(ZuText("4294967297").GetTextAsULong(), 1U);
  EXPECT_TRUE(ZuText("101").GetTextAsBitMask() == 5 && ZuText("1021").GetTextAsBitMask() == 0);
  EXPECT_EQ(ZuText(("101" + std::string(31, '0')).c_str()).GetTextAsBitMask(), 1U << 31U);
  EXPECT_EQ(ZuText("abc").GetStars(), "***");
  ZuText t("abc");
  t.Reverse();
  EXPECT_STREQ(t.GetTextEx(), "cba");
}

TEST(ZuText, FormatsUpToItsLimit) {
  ZuText t("old");
  t.Format("%s-%d", "a", 5);
  t.AppendFormat("/%c", 'x');
  t.AppendFormat(noText, 1);
  EXPECT_STREQ(t.GetTextEx(), "a-5/x");
  std::string const longText(20000, 'y');
  t.Format("%s", longText.c_str());
  EXPECT_EQ(t.GetTextEx(), longText.substr(0, 10239));
  t.Format(noText, 1);
  EXPECT_EQ(t.GetSize(), 0U);
}

TEST(ZuText, FormatsNumbersWithAPointAndWideTextInTheProcessEncoding) {
  for (const char* const name : {utf8CommaLocale, singleByteCommaLocale}) {
    const LocaleScope comma(name);
    std::string const umlaut = name == utf8CommaLocale ? "\xC3\xA4" : "\xE4";
    ZuText t;
    t.Format("%.2f %'d %ls", 1234.5, 1234567, L"\u00E4");
    EXPECT_EQ(t.GetTextEx(), "1234.50 1234567 " + umlaut);
    t.Format("%g", 0.5);
    EXPECT_STREQ(t.GetTextEx(), "0.5");
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
  }
  // A decimal point, digits grouped; and, as some languages have them, other digits.
  for (const char* const name : {"en_US.UTF-8", "hi_IN.UTF-8"}) {
    const LocaleScope point(name);
    ZuText t;
    t.Format("%'d %Id %%'d %I'5d|%s", 1234567, 12, 3, "100%'d");
    EXPECT_STREQ(t.GetTextEx(), "1234567 12 %'d     3|100%'d") << name;
    const std::string longFormat = std::string(300, 'x') + "%2$'d %1$I.3d";
    t.Format(longFormat.c_str(), 4, 1000);
    EXPECT_STREQ(t.GetTextEx() + 300, "1000 004") << name;
  }
}

TEST(ZuTextLocal, CutsWhatIsSetAndRefusesWhatIsAppendedOrCopied) {
  std::string const forty(40, 'x');
  ZuTextLocal<31> t(forty.c_str());
  EXPECT_EQ(t.GetTextEx(), forty.substr(0, 30));
  (t += "12345") += 'c';
  EXPECT_EQ(t.GetTextEx(), forty.substr(0, 30));
  t.Format("%s", forty.c_str());
  EXPECT_EQ(t.GetSize(), 30U);
  EXPECT_FALSE(ZuTextLocal<31>().Replace(0, 0, forty.c_str(), 31));
  EXPECT_EQ(ZuTextLocal<31>(ZuText(forty.c_str(), 31)).GetSize(), 0U);
  EXPECT_EQ(ZuTextLocal<31>(ZuText(forty.c_str(), 30)).GetSize(), 30U);
  t = "short";
  t = ZuText(forty.c_str());
  EXPECT_STREQ(t.GetTextEx(), "short");
  t = reinterpret_cast<const unsigned char*>("abc");
  t = ZuTextLocal<31>('c');
  t += 12;
  EXPECT_STREQ(t.GetTextEx(), "c12");
}

TEST(ZuTextLocal, NeedsNoHeap) {
  ZuTextLocal<31> t("ab");
  const auto needsHeap = [](auto&& work) { return quenlatrix::test::RunsOutOfMemory(0, work); };
  EXPECT_FALSE(needsHeap([&] { t += t; }));
  EXPECT_STREQ(t.GetTextEx(), "abab");
  const ZuTextLocal<31> sought("B");
  const ZuTextLocal<31> put("xy");
  EXPECT_FALSE(needsHeap([&] { t.ReplaceAll(sought, put, false); }));
  EXPECT_STREQ(t.GetTextEx(), "axyaxy");
  EXPECT_FALSE(needsHeap([&] { t.ReplaceAll(put, t); }));
  EXPECT_STREQ(t.GetTextEx(), "aaxyaxyaaxyaxy");
  const char* const grouped = "a longer format, with groups: %'d";
  EXPECT_FALSE(needsHeap([&] { t.Format(grouped, 1); }));
  EXPECT_STREQ(t.GetTextEx(), "a longer format, with groups: ");
  t.SetEqualTo(ZuData());
  EXPECT_STREQ(t.GetText(), "");
}

TEST(ZuTextLocal, NeverLeavesItsStorage) {
  ZuTextLocal<63> t("abc");
  const unsigned char* const storage = t.GetBuffer();
  EXPECT_TRUE(storage >= reinterpret_cast<unsigned char*>(&t) &&
              storage + 63 <= reinterpret_cast<unsigned char*>(&t + 1));
  unsigned long size = 99;
  EXPECT_EQ(t.ReleaseBuffer(&size, nullptr), nullptr);
  EXPECT_EQ(size, 99U);
  EXPECT_STREQ(t.GetTextEx(), "abc");
  t.ReleaseData();
  EXPECT_TRUE(t.GetBuffer() == storage && t.GetBufferSize() == 63 && t.GetDataSize() == 0);
  EXPECT_EQ((t = 5L).GetSize(), 1U);
  t.InitTextLocal();
  EXPECT_STREQ(t.GetTextEx(), "");
  const ZuTextLocal<63> copy(t = "xyz");
  EXPECT_STREQ(copy.GetTextEx(), "xyz");
  EXPECT_NE(copy.GetBuffer(), t.GetBuffer());
}

}  // namespace
