#include "fuzz/random_script.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <iterator>

namespace {

constexpr const char* kNames[] = {"a", "b", "list", "tree", "x-1", "_", "9", "@a", "a=", ""};
constexpr std::size_t kUsualNames = 4;

// What can be made, and calls that it understands.
struct Bean {
  const char* className;
  std::initializer_list<const char*> calls;
};

constexpr Bean kBeans[] = {
    {"java.util.ArrayList",
     {"add \"pear\"",
      "add 5",
      "add 2.5",
      "add true",
      "add 'c'",
      "add @a",
      "add @b",
      "add 0 word",
      "addAll @list",
      "addAll @tree",
      "get 0",
      "get 1",
      "remove 0",
      "contains @a",
      "iterator",
      "toString",
      "hashCode",
      "equals @list",
      "toArray",
      "subList 0 1",
      "indexOf @b",
      "clear",
      "add(java.lang.Object) @tree",
      "add(int, java.lang.Object) 0 7"}},
    {"java.util.TreeSet",
     {"add \"x\"", "add 1", "add @a", "addAll @list", "first", "last", "pollFirst", "size"}},
    {"java.util.HashMap",
     {"put fruit @list", "put 1 2", "put @a @b", "get fruit", "get 1", "keySet", "values",
      "entrySet", "toString", "remove 1", "hashCode"}},
    {"java.lang.StringBuilder",
     {"append hello", "append 5", "append 'c'", "append(char[]) ['a', 'b']", "append 2.5",
      "append @a", "insert 0 \"x\"", "reverse", "length", "charAt 0", "toString", "setLength 2",
      "deleteCharAt 0", "append(char) \"\\u20ac\""}},
    {"examples.Matrix",
     {"turn(boolean[]) [true, false]", "turn(byte[]) [-128, 127]", "turn(char[]) [\"a\", 'z']",
      "turn(long[]) [1, 2147483647]", "turn(float[]) [0.5, 1.5]", "turn(int[]) @a",
      "turn(java.lang.String[]) [\"one\", \"\"]", "turn(double[][]) [[0.5, 1], [1.5, 2]]",
      "turn(java.lang.String[][]) [[\"a\", \"b\"], [\"c\", \"\"]]", "turn @a", "turn [1, 2]",
      "multiply [[1, 2], [3, 4]] [[0, 1], [1, 0]]", "multiply @a @a", "sum @a", "sum [1, 2.5]",
      "join [\"a\", \"b\"] \", \"", "turn(int[][]) [[1, 2], [3]]"}},
    {"examples.Greeter",
     {"setName \"Z\u00fcrich\"", "setName @a", "setFormal true", "greet", "getName",
      "greetAll [\"Ada\", \"\"]", "greetAll @a", "isFormal"}},
    {"examples.Thermostat",
     {"setTarget 21", "setTarget 99", "getTarget", "getJournal", "regulate [1.5, 30]",
      "regulate @a"}},
    {"beans.Overloads",
     {"which", "which 1", "which 2.5", "which word", "which \"1\"", "which true", "which [1]",
      "which [[1]]", "which @a", "which 1 x", "which x 1", "which 1 2", "which(int) 1",
      "which(java.lang.Integer) 1", "which(long) 99999999999", "which(int[][]) @a"}},
    {"beans.ScalarEcho",
     {"echoByte -1", "echoByte 128", "echoChar '\u20ac'", "echoLong 9223372036854775807",
      "echoFloat 1e30", "echoDouble -0.0", "echoString \"\\ud83d\\ude00\"", "echo 1", "echo 'c'",
      "echo(java.lang.Byte) 1", "echo(java.lang.Character) @a", "echoBoolean true",
      "combine true 1 'c' 2 3 4 5.5 6.5 t"}},
    {"beans.ArrayEcho",
     {"echo([I) [1, 2]", "echo([[D) [[1, 2], [3, 4.5]]", "echo(boolean[]) [true]",
      "echo([Ljava.lang.String;) [\"a\", \"\"]", "echo(java.lang.Integer[]) [1, 2]",
      "echo(char[][]) [['a'], ['b']]", "echo(beans.Point[]) [@a, @b]", "echo(int[][][]) [[[1]]]",
      "echo(java.lang.Object[]) [1, \"a\"]", "echo(long[]) @a", "echo @a", "echo(short[]) @b"}},
    {"beans.ArrayMaker",
     {"emptyInts", "nullInts", "grid", "unevenRows", "nullRow", "cube", "stringsWithNull",
      "integersWithNull", "pointsWithNull", "mixed", "stringGridWithNull"}},
    {"beans.ObjectReturner",
     {"next", "self", "point 1 2", "pointAsObject", "textAsObject", "arrayAsObject", "list",
      "vector", "nullPoint", "nullText", "echo @a", "echo(java.lang.Object) 5"}},
    {"beans.ObjectTaker",
     {"takesPoint @a", "takesList @list", "takesObject @a", "takesObject 5", "takesComparable x",
      "takesPoints [@a, @b]", "same @a @a", "move @a 1 2"}},
    {"beans.ThrowingMethods",
     {"checked why", "unchecked", "error", "nullMessage", "unprintable", "nullText",
      "stackOverflow", "outOfMemory", "fine"}},
    {"beans.BrokenCollection",
     {"breakAt next 1", "breakAt hasNext 2", "breakAt null 0", "breakAt size 0", "iterator",
      "breakAt \"lying size\" 0", "breakAt \"no iterator\" 0", "size"}},
    {"beans.Point", {"getX", "setX 5", "setX 5.0", "toString"}},
    {"beans.UnusualNames", {"getURL", "get", "gr\u00f6\u00dfe \u00e4", "get\u00dcber", "issue"}},
    {"beans.IndexedProperty", {"getItems 0", "setItems 0 a", "getItems", "getSize 1", "isFlag 1"}},
    {"beans.OverloadedSetters", {"setValue 1", "setValue x"}},
    {"beans.ThrowingConstructor", {"x"}},
    {"beans.AbstractBean", {"x"}},
    {"java/util/ArrayList", {"size"}},
    {"JAVABEAN://beans.Point?a=b", {"getY"}},
    {"java.lang.System", {"exit 1"}},
    {"no.Such", {"x"}},
    {"[I", {"x"}}};

constexpr const char* kArguments[] = {"5",
                                      "0",
                                      "2.5",
                                      "1e400",
                                      "007",
                                      "99999999999",
                                      "9223372036854775808",
                                      "true",
                                      "null",
                                      "\"\"",
                                      "\"text\"",
                                      "\"\\ud800\"",
                                      "\"a\\u0000b\"",
                                      "'c'",
                                      "''",
                                      "'ab'",
                                      "word",
                                      "2024-01-31",
                                      "\xff",
                                      "[1, 2]",
                                      "[]",
                                      "[[1], [2, 3]]",
                                      "[[[1]]]",
                                      "[1, null]",
                                      "[true, 2.5]",
                                      "[@a]",
                                      "@a",
                                      "@list",
                                      "@",
                                      "{\"a\": 1}",
                                      "\"open",
                                      "[1,",
                                      "'"};

template <class Words>
auto Pick(FuzzedDataProvider& data, const Words& words) {
  return std::begin(words)[data.ConsumeIntegralInRange<std::size_t>(0, std::size(words) - 1)];
}

bool IsOneIn(FuzzedDataProvider& data, int count) {
  return data.ConsumeIntegralInRange(1, count) == count;
}

class ScriptMaker {
 public:
  explicit ScriptMaker(FuzzedDataProvider& data) : data(data) {}

  std::string MakeStatement() {
    switch (data.ConsumeIntegralInRange(0, 11)) {
      case 0:
      case 1:
      case 2:
        return MakeNew();
      case 3:
      case 4:
        return std::string("let ") + kNames[PickName()] + " = " + MakeCall();
      case 5:
        return "describe " +
               std::string(data.ConsumeBool() ? kNames[PickName()] : Pick(data, kBeans).className);
      case 6:
        return "walk " + std::string(kNames[PickName()]) +
               (data.ConsumeBool() ? "" : std::string(" skip ") + Pick(data, kArguments));
      case 7:
        return std::string(data.ConsumeBool() ? "size " : "release ") + kNames[PickName()];
      default:
        return MakeCall();
    }
  }

 private:
  // Mostly of those that may hold something.
  std::size_t PickName() {
    return data.ConsumeIntegralInRange<std::size_t>(
        0, (IsOneIn(data, 16) ? std::size(kNames) : kUsualNames) - 1);
  }

  std::string MakeNew() {
    const std::size_t name = PickName();
    held[name] = data.ConsumeIntegralInRange<std::size_t>(0, std::size(kBeans) - 1);
    return std::string("new ") + kNames[name] + " " + kBeans[held[name]].className;
  }

  std::string MakeCall() {
    const std::size_t name = PickName();
    // Another bean's call now and then: something else may be held by now.
    const Bean& bean = IsOneIn(data, 8) ? Pick(data, kBeans) : kBeans[held[name]];
    std::string call = std::string("call ") + kNames[name] + " " + Pick(data, bean.calls);
    if (IsOneIn(data, 8)) {
      call = call.substr(0, call.rfind(' ') + 1) + Pick(data, kArguments);
    }
    return call;
  }

  FuzzedDataProvider& data;
  std::array<std::size_t, std::size(kNames)> held{};
};

// A stretch left out, or characters put in between.
void Break(FuzzedDataProvider& data, std::string& statement) {
  const auto at = data.ConsumeIntegralInRange<std::size_t>(0, statement.size());
  if (data.ConsumeBool()) {
    statement.erase(at, data.ConsumeIntegralInRange<std::size_t>(1, 8));
  } else {
    statement.insert(at, data.ConsumeRandomLengthString(8));
  }
}

}  // namespace

std::string MakeScript(FuzzedDataProvider& data) {
  ScriptMaker maker(data);
  std::string script;
  // Few, as each may double what a name holds.
  for (int i = 0; i < 16 && data.remaining_bytes() > 0; ++i) {
    std::string statement = maker.MakeStatement();
    if (IsOneIn(data, 24)) Break(data, statement);
    script += statement + "\n";
  }
  return script;
}
