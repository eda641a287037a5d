// What a person reads whose statement is refused: each reason has its own text.
#include <gmock/gmock.h>

#include "host/bean_script.h"
#include "tests/host/test_host.h"

namespace quenlatrix::host {
namespace {

TEST(Refusals, SayWhatWhereWhyAndWhatWouldFit) {
  const std::unique_ptr<Host> host = StartHost(PLUGIN_FILE);
  ASSERT_NE(host, nullptr);
  HeldValues names;
  Session session(*host, names);
  for (const char* statement :
       {"new echo beans.ScalarEcho", "new over beans.Overloads", "new taker beans.ObjectTaker",
        "new text beans.ArrayText", "let five = call echo echoInt 5"}) {
    EXPECT_EQ(RunStatement(statement, session).error, "") << statement;
  }
  const std::pair<const char*, const char*> cases[] = {
      {"call echo echoString null",
       R"(argument 1 (null): null can't be passed: the plug-in has no way to carry it; for text pass ""
  call echo echoString null
                       ^~~~
there are:
    echoString(java.lang.String))"},
      {"call echo echoByte 128",
       R"(beans.ScalarEcho.echoByte can't be called like this; echoByte(byte): argument 1 (128): expected a whole number from -128 to 127 (byte), found number 128
  call echo echoByte 128
                     ^~~)"},
      {"call echo echoFloat 1e39",
       R"(beans.ScalarEcho.echoFloat can't be called like this; echoFloat(float): argument 1 (1e39): expected a number in the range of float, found number 1e39
  call echo echoFloat 1e39
                      ^~~~)"},
      {"call echo echoChar abc",
       R"(beans.ScalarEcho.echoChar can't be called like this; echoChar(char): argument 1 (abc): expected one character, such as 'c', found text "abc" of 3 characters
  call echo echoChar abc
                     ^~~)"},
      {"call echo echoChar 'é'",
       R"(beans.ScalarEcho.echoChar can't be called like this; echoChar(char): argument 1 ('é'): expected a character from U+0001 to U+007F, which is what a single char carries, found character 'é'
  call echo echoChar 'é'
                     ^~~)"},
      {"call text text(int[][]) [[1,2],[3]]",
       R"(argument 1 ([[1,2],[3]]): the rows of an array must have one length; row 1 has 2 elements, row 2 has 1
  call text text(int[][]) [[1,2],[3]]
                          ^~~~~~~~~~~
there are:
    text(int[][]))"},
      {"call text text(int[]) []",
       R"(argument 1 ([]): an empty array can't be passed: the plug-in has no way to carry one
  call text text(int[]) []
                        ^~
there are:
    text(int[]))"},
      {R"(call text text(int[]) [1,"a"])",
       R"(beans.ArrayText.text can't be called like this; text(int[]): argument 1 ([1,"a"]): in the array for int[], element 2: expected a whole number from -2147483648 to 2147483647 (int), found text "a"
  call text text(int[]) [1,"a"]
                        ^~~~~~~)"},
      {"call text text(int[]) [[1],[2]]",
       R"(beans.ArrayText.text can't be called like this; text(int[]): argument 1 ([[1],[2]]): expected an array of one dimension (int[]), found array of 2 x 1 numbers
  call text text(int[]) [[1],[2]]
                        ^~~~~~~~~)"},
      {"call text text(long[]) [1,5000000000]",
       R"(beans.ArrayText.text can't be called like this; text(long[]): argument 1 ([1,5000000000]): in the array for long[], element 2: expected a number of 32 bits, which is what an element of a long array carries, found number 5000000000
  call text text(long[]) [1,5000000000]
                         ^~~~~~~~~~~~~~)"},
      {"call echo echoInt [1]",
       R"(beans.ScalarEcho.echoInt can't be called like this; echoInt(int): argument 1 ([1]): expected one value (int), found array of 1 numbers
  call echo echoInt [1]
                    ^~~)"},
      {"call echo echoInt @text",
       R"(beans.ScalarEcho.echoInt can't be called like this; echoInt(int): argument 1 (@text): expected a whole number from -2147483648 to 2147483647 (int), found object of class beans.ArrayText
  call echo echoInt @text
                    ^~~~~)"},
      {"call over which 1 2",
       R"(several beans.Overloads.which fit these arguments equally well
  call over which 1 2
            ^~~~~
give METHOD with the parameter types of one:
    which(int, java.lang.String)
    which(java.lang.String, int))"},
      {"call taker takesPoint @echo",
       R"(beans.ObjectTaker.takesPoint can't be called like this; takesPoint(beans.Point): argument 1 (@echo): expected an object of class beans.Point, found object of class beans.ScalarEcho
  call taker takesPoint @echo
                        ^~~~~)"},
      {"call echo echoString 'ab'",
       R"(a character is written 'c', with one character (or \n, \', \u0041) between the marks
  call echo echoString 'ab'
                        ^
to pass text that begins like this, write it as "text")"},
      {"call echo echoString @none",
       R"(nothing is held under the name "none"; the names in use are echo, five, over, taker, text
  call echo echoString @none
                       ^~~~~)"},
      {"call five toString",
       R"("five" holds a plain value (int); only a bean has methods
  call five toString
       ^~~~)"},
      {"describe",
       R"(NAME or CLASS is missing
  describe
          ^
the statement is "describe NAME|CLASS")"},
      {"cal echo echoInt 5",
       R"("cal" is no statement; did you mean call?
  cal echo echoInt 5
  ^~~
there are new, call, let, describe, walk, size, release and # comment)"},
  };
  for (const auto& [statement, error] : cases) {
    EXPECT_EQ(RunStatement(statement, session).error, error) << statement;
  }
  const std::pair<const char*, const char*> lacking[] = {
      {"new", "a name is missing"},           {"new x", "CLASS is missing"},
      {"new x a.B c", "\"c\" is too much"},   {"new 2x a.B", "\"2x\" can't be a name"},
      {"call x", "METHOD is missing"},        {"let x call y z", "\"=\" is missing"},
      {"let x = y z", "\"call\" is missing"}, {"release", "NAME is missing"},
  };
  for (const auto& [statement, error] : lacking) {
    EXPECT_THAT(RunStatement(statement, session).error, testing::HasSubstr(error)) << statement;
  }
}

}  // namespace
}  // namespace quenlatrix::host
