#include "host/method_pattern.h"

#include <gmock/gmock.h>

#include "host/host_error.h"

namespace quenlatrix::host {
namespace {

using testing::HasSubstr;

std::string Shown(const MethodPattern& pattern) {
  if (!pattern.parameterTypes) return pattern.name;
  std::string shown = pattern.name + "(";
  for (const JavaType& type : *pattern.parameterTypes) shown += ToSourceForm(type) + ";";
  return shown + ")";
}

TEST(MethodPattern, ReadsSourceAndBinaryForms) {
  const std::pair<const char*, const char*> cases[] = {
      {" add ", "add"},
      {"size( )", "size()"},
      {"sum(int[], long)", "sum(int[];long;)"},
      {"sum ( int [ ] [] ,long )", "sum(int[][];long;)"},
      {"f([I,[[J,[Z,[B,[C,[S,[F,[D)",
       "f(int[];long[][];boolean[];byte[];char[];short[];float[];double[];)"},
      {"f([Ljava.lang.String;)", "f(java.lang.String[];)"},
      {"f(Ljava.lang.String;, [Ljava/util/List;)", "f(java.lang.String;java.util.List[];)"},
      {"f(java.util.Map$Entry)", "f(java.util.Map$Entry;)"},
      {"f(I)", "f(I;)"},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(Shown(ParseMethodPattern(text)), expected) << text;
  }
}

TEST(MethodPattern, ThatIsNoneIsWrongUsage) {
  for (const char* text :
       {"", "(int)", "f(", "f(int", "f(int)x", "f(int,)", "f(,)", "f(int long)", "f([)", "f([int)",
        "f([X)", "f(int[)", "f(a(b))", "a b", "f]", "Get:f:0"}) {
    try {
      ADD_FAILURE() << text << " is read as " << Shown(ParseMethodPattern(text));
    } catch (const HostError& error) {
      EXPECT_EQ(error.exitStatus, ExitStatus::Usage) << text;
      EXPECT_THAT(error.what(), HasSubstr("METHOD is a name")) << text;
    }
  }
}

TEST(MethodPattern, EndsInALineAtABlankOutsideOfItsTypes) {
  EXPECT_EQ(MethodPatternLength("add 5"), 3u);
  EXPECT_EQ(MethodPatternLength("add"), 3u);
  EXPECT_EQ(MethodPatternLength("sum(int[], long) [1, 2] 3"), 16u);
  EXPECT_EQ(MethodPatternLength("say \"a (b) c\""), 3u);
  EXPECT_EQ(MethodPatternLength("sum(int, 5"), 10u);
}

}  // namespace
}  // namespace quenlatrix::host
