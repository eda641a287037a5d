#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "text/zu_text.h"
#include "text/zu_text_local.h"

namespace {

using Edit = void (*)(ZuText& t);

struct EditCase {
  std::string before;
  Edit edit;
  std::string after;
};

// The bytes, so that NULs within the text and behind it are looked at.
std::string Bytes(const ZuText& t) { return {t.GetText(), t.GetDataSize()}; }

template <typename Text, std::size_t count>
void ExpectEdits(const EditCase (&cases)[count]) {
  for (const auto& [before, edit, after] : cases) {
    Text t;
    t.SetEqualTo(before.data(), before.size(), 0);
    edit(t);
    EXPECT_EQ(t.GetSize(), after.size());
    const std::size_t size = after.empty() ? 0 : after.size() + 1;
    EXPECT_EQ(Bytes(t), std::string(after.c_str(), size)) << before;
  }
}

const std::string nulInside("a\0 b\0", 5);

const EditCase trimming[] = {
    {"\tabc \t\n", [](ZuText& t) { t.Trim(); }, "\tabc"},
    {nulInside, [](ZuText& t) { t.Trim(); }, nulInside},
    {nulInside, [](ZuText& t) { t.Trim('\0', false); }, nulInside.substr(0, 4)},
    {"xabx", [](ZuText& t) { t.Trim('x', true); }, " abx"},
    {"abc\t\n\r", [](ZuText& t) { t.TrimWhiteSpaces(true); }, "abc"},
    {"\r \tabc ", [](ZuText& t) { t.TrimWhiteSpaces(false); }, "abc "},
    {" \t abc\t ", [](ZuText& t) { t.TrimSpaces(false); }, "\t abc\t "},
    {"abcde", [](ZuText& t) { t.Truncate(1, 2); }, "bc"},
    {"abcde", [](ZuText& t) { t.Truncate(5, 1); }, ""},
    {"abcde", [](ZuText& t) { t.Truncate(2, ULONG_MAX); }, "abcde"}};

const EditCase filling[] = {
    {"42", [](ZuText& t) { t.Pad('0', 5, false); }, "00042"},
    {"12345", [](ZuText& t) { t.Pad('0', 5, false); }, "12345"},
    {"", [](ZuText& t) { t.Pad('0', 5, false); }, ""},
    {"42", [](ZuText& t) { t.Pad('0', ULONG_MAX, false); }, "42"},
    {"42", [](ZuText& t) { t.Pad('0', 30, true); }, "42" + std::string(28, '0')},
    {"a1b2", [](ZuText& t) { t.Filter("0123456789", true); }, "ab"},
    {"a1\xFF", [](ZuText& t) { t.Filter("\xFF", false); }, "\xFF"},
    {"abc", [](ZuText& t) { t.Filter(t, true); }, ""},
    {"aaa bbb ccc", [](ZuText& t) { t.Fold(6); }, "aaa\rbbb\rccc"},
    {"abcdefgh ij", [](ZuText& t) { t.Fold(4); }, "abcdefgh\rij"},
    {"a\tb c", [](ZuText& t) { t.Fold(5); }, "a\rb c"},
    {"a b\nc defg", [](ZuText& t) { t.Fold(5); }, "a b\nc\rdefg"}};

const EditCase escapes[] = {
    {R"(a\,b)", [](ZuText& t) { t.RemoveEscapes(0, -1); }, "a,b"},
    {R"(\"a\b\")", [](ZuText& t) { t.RemoveEscapes(0, -1); }, R"("ab")"},
    {R"("x\y"\, 'a\b'\.)", [](ZuText& t) { t.RemoveEscapes(0, -1); }, R"("x\y", 'a\b'.)"},
    {R"("a'b\c'd\e"\f)", [](ZuText& t) { t.RemoveEscapes(0, -1); }, R"("a'b\c'd\e"f)"},
    {R"(a\\b\)", [](ZuText& t) { t.RemoveEscapes(0, -1); }, R"(a\b)"},
    {R"(\a\b\c)", [](ZuText& t) { t.RemoveEscapes(2, 2); }, R"(\ab\c)"},
    {R"(\a)", [](ZuText& t) { t.RemoveEscapes(ULONG_MAX, -1); }, R"(\a)"}};

TEST(ZuTextEditing, EditsInPlaceWhereverTheStorageIs) {
  ExpectEdits<ZuText>(trimming);
  ExpectEdits<ZuText>(filling);
  ExpectEdits<ZuText>(escapes);
  ExpectEdits<ZuTextLocal<31>>(trimming);
  ExpectEdits<ZuTextLocal<31>>(filling);
  ExpectEdits<ZuTextLocal<31>>(escapes);
}

// Looking for a place to break must not begin anew for each character of a long word.
TEST(ZuTextEditing, FoldsALongWordInLinearTime) {
  ZuText t(("a " + std::string(1 << 20, 'x') + " b").c_str());
  t.Fold(40);
  EXPECT_EQ(t.Pos("\r", 2, true), (1 << 20) + 2);
}

}  // namespace
