// The real program on real classes: what it writes, and what it ends with.
#include "tests/host/beanhost_cli.h"

namespace quenlatrix::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// What a script says without its echoed statements.
std::string Answers(const std::string& out) {
  std::string answers;
  for (const std::string& line : LinesOf(out)) {
    if (!line.starts_with("> ")) answers += line + "\n";
  }
  return answers;
}

TEST_F(BeanhostCli, CallsOneMethodOfANewBean) {
  const std::tuple<Words, const char*> cases[] = {
      {{"java.util.ArrayList", "clear"}, ""},
      {{"java.lang.StringBuilder", "append", "2.50"}, "java.lang.StringBuilder: 2.5\n"},
      {{"java.lang.StringBuilder", "append", "[\"a\",\"€\"]"}, "java.lang.StringBuilder: a€\n"},
      {{"examples.Greeter", "greetAll", "[\"Ada\",\"\",\"--json\"]"}, "Hello, Ada, , --json!\n"},
      {{"beans.ScalarEcho", "echoString", "--json"}, "--json\n"},
      {{"beans.ScalarEcho", "echoString", ""}, "\n"},
      {{"beans.ScalarEcho", "echoString", "Zürich 😀 €"}, "Zürich 😀 €\n"},
      {{"beans.ScalarEcho", "combine", "true", "-1", "'c'", "-2", "-3", "-4", "1e-7", "1e-300",
        "t"},
       "true|-1|99|-2|-3|-4|1.0E-7|1.0E-300|t\n"},
      {{"beans.ArrayText", "text", "[1e-300,1]"}, "[1.0E-300, 1.0]\n"},
      {{"beans.ArrayText", "text(java.lang.Object[])", "[1,2.5]"}, "[1.0, 2.5]\n"},
      {{"beans.ArrayText", "text", "[[\"\",\"ü\"],[\"b\",\"\"]]"}, "[[, ü], [b, ]]\n"},
      {{"beans.ObjectTaker", "takesObject", "2147483648"}, "java.lang.Long 2147483648\n"},
      {{"beans.ObjectTaker", "takesObject", "\"\""}, "java.lang.String \n"},
      {{"beans.ObjectTaker", "takesObject", "'ü'"}, "java.lang.Character ü\n"},
      {{"beans.ObjectTaker", "takesComparable", "true"}, "comparable true\n"},
  };
  for (const auto& [words, out] : cases) {
    Words all = {"call"};
    all.insert(all.end(), words.begin(), words.end());
    const ProgramRun run = Host(all);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, out) << words[0] << " " << words[1];
  }
}

TEST_F(BeanhostCli, EndsWithTheStatusOfWhatWentWrong) {
  const std::tuple<Words, int, const char*> cases[] = {
      {{"call", "no.Such", "size"}, 1, "no.Such could be made (status 3): the class isn't on"},
      {{"call", "beans.Point?x=1", "getX"}, 1, "is no class name"},
      {{"call", "", "x"}, 1, "is no class name"},
      {{"call", "java.util.ArrayList", "add", "@x"}, 1, "nothing is held under the name \"x\""},
      {{"call", "beans.ThrowingMethods", "checked", "boom"}, 1, "CheckedException: boom"},
      {{"--deny", "java.util.*", "call", "java/util/ArrayList", "size"},
       1,
       "--deny java.util.* matches"},
      {{"--allow", "examples.*", "call", "java.util.ArrayList", "size"}, 1, "refused"},
      {{"call", "java.util.ArrayList", "add", "[1,"},
       2,
       "\n  call java.util.ArrayList add [1,\n                                  ^\n"},
      {{"call", "java.util.ArrayList", "add(int"}, 2, "closing \")\" is missing"},
      {{"call", "java.util.ArrayList"}, 2, "takes CLASS METHOD [ARG]..."},
      {{"call", "--json", "a.B", "size"}, 2, "\"--json\" has to stand before \"call\""},
      {{"walk", "a.B", "--skip", "-1"},
       2,
       "beanhost: --skip: expected a count from 0 on, found -1"},
      {{"dance"}, 2, "\"dance\" is no command"},
      {{"--dance", "describe", "a.B"}, 2, "\"--dance\" is no option"},
      {{"beans", BEANHOST_PROGRAM}, 1, "can't be read: expected a jar"},
      {{"run", "/no/such/script"}, 2, "/no/such/script"},
      {{"--plugin", "/no/such.so", "describe", "a.B"}, 3, "/no/such.so"},
      {{"--java-option", "-Xmx1k", "describe", "a.B"}, 3, "gave up while it started"},
  };
  for (const auto& [words, status, err] : cases) {
    const ProgramRun run = Host(words);
    EXPECT_EQ(run.status, status) << err;
    EXPECT_THAT(run.err, HasSubstr(err));
    EXPECT_EQ(run.out, "") << err;
  }
}

TEST_F(BeanhostCli, LetsNoJarTakeThePlaceOfTheClassesThatEveryPolicyAllows) {
  const std::string impostors = test::TestVm::Jar("hostile_beans.jar");
  const Words command = {"--deny", "*", "describe", "BeanHostBoxes"};
  const auto expectOwnClass = [](const ProgramRun& run) {
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("boxInteger"));
    EXPECT_THAT(run.err, Not(HasSubstr("impostor")));
  };
  Words withOption = {"--class-path", impostors};
  withOption.insert(withOption.end(), command.begin(), command.end());
  expectOwnClass(Start(withOption));
  setenv("CLASSPATH", impostors.c_str(), 1);
  expectOwnClass(Start(command));
  unsetenv("CLASSPATH");

  const std::string option = "-Djava.class.path=" + impostors;
  Words withJavaOption = {"--java-option", option};
  withJavaOption.insert(withJavaOption.end(), command.begin(), command.end());
  const ProgramRun refused = Start(withJavaOption);
  EXPECT_EQ(refused.status, 3);
  EXPECT_THAT(refused.err, HasSubstr("--class-path"));
  setenv("_JAVA_OPTIONS", option.c_str(), 1);
  EXPECT_EQ(Start(command).status, 3);
  unsetenv("_JAVA_OPTIONS");
}

TEST_F(BeanhostCli, ShowsHelpAndVersionWithoutAMachine) {
  setenv("JAVA_HOME", "/no/such/home", 1);
  EXPECT_EQ(Start({"--version"}).status, 0);
  EXPECT_THAT(Start({"--help"}).out, HasSubstr("without any, every class is"));
  EXPECT_THAT(Start({"run", "--help"}).out, HasSubstr("let NAME = call NAME METHOD [ARG]..."));
}

TEST_F(BeanhostCli, DescribesAClassAsADocument) {
  const json document = json::parse(Host({"--json", "describe", "examples.Greeter"}).out);
  EXPECT_EQ(document["class"], "examples.Greeter");
  EXPECT_EQ(document["description"], "examples.Greeter in CLASSPATH environment");
  EXPECT_EQ(document["attributeMethods"], 4);
  EXPECT_EQ(document["regularMethods"], 2);
  ASSERT_EQ(document["methods"].size(), 6u);
  EXPECT_EQ(document["methods"][5], json::parse(R"({
      "id":"Invoke:greetAll:5","name":"greetAll","kind":"Invoke",
      "returns":{"key":"String","type":"java.lang.String","display":"java.lang.String",
                 "dimensions":[],"ref":"ByValue"},
      "parameters":[{"name":"names","direction":"InOut",
          "type":{"key":"String","type":"java.lang.String","display":"array of java.lang.String",
                  "dimensions":[[0,-1]],"ref":"ByValue"}}]})"));
  EXPECT_EQ(document["methods"][0]["kind"], "Set");
  EXPECT_EQ(document["methods"][0]["returns"]["type"], "void");

  const json indexed = json::parse(Host({"--json", "describe", "beans.IndexedProperty"}).out);
  EXPECT_THAT(indexed.dump(), AllOf(HasSubstr("{\"direction\":\"In\",\"name\":\"index\""),
                                    Not(HasSubstr("\"type\":\"\""))));
}

// Neither of the first two has methods, and the second's name would be cut to that of the first.
TEST_F(BeanhostCli, DescribesEachOfSeveralClassesOfOneNameAsItIs) {
  const std::vector<json> documents = Documents(
      "new trick beans.LoaderTrick\n"
      "let one = call trick namesake beans.Point\n"
      "let two = call trick namesake \"beans.Point?x=1\"\n"
      "describe one\n"
      "describe two\n"
      "let three = call trick alone beans.Point beans.*\n"
      "describe three\n"
      "release three\n"
      "call trick isLastGone\n"
      "describe beans.Point\n"
      "describe JAVABEAN://beans.ThreeStrings?HostClass=1\n",
      true);
  ASSERT_EQ(documents.size(), 11U);
  const std::size_t counts[] = {documents[3]["methods"].size(), documents[4]["methods"].size(),
                                documents[6]["methods"].size(), documents[9]["methods"].size()};
  EXPECT_THAT(counts, testing::ElementsAre(0U, 0U, 5U, 5U));
  EXPECT_EQ(documents[6]["class"], "beans.Point");
  EXPECT_EQ(documents[8]["result"]["value"], "true") << "its class is unloaded";
  EXPECT_NE(documents[10]["methods"].size(), 0U) << "the attribute is the host's alone";
}

TEST_F(BeanhostCli, WritesOneDocumentAStatement) {
  const std::vector<json> documents = Documents(
      "# a comment\n\n"
      "new list java.util.ArrayList\n"
      "call list add \"a b\"\n"
      "let copy = call list clone\n"
      "call list addAll @copy\n"
      "new m examples.Matrix\n"
      "call m turn(long[][]) [[1,2],[3,4]]\n"
      "let values = call list toArray\n"
      "describe copy\n"
      "release copy\n"
      "release values\n");
  ASSERT_EQ(documents.size(), 10u);
  EXPECT_EQ(documents[0],
            (json{{"name", "list"}, {"class", "java.util.ArrayList"}, {"status", 0}}));
  EXPECT_EQ(documents[1]["result"],
            (json{{"key", "Bool"}, {"type", "boolean"}, {"value", "true"}}));
  EXPECT_EQ(documents[1]["parameters"],
            json::parse("[{\"key\":\"Object\",\"type\":\"java.lang.String\",\"text\":\"a b\","
                        "\"object\":null}]"));
  EXPECT_EQ(documents[2]["result"],
            json::parse("{\"key\":\"Object\",\"type\":\"java.util.ArrayList\","
                        "\"text\":\"[a b]\",\"object\":\"copy\"}"));
  EXPECT_EQ(documents[3]["parameters"][0]["object"], "copy");
  EXPECT_EQ(documents[5]["result"], nullptr);
  const json turned = documents[5]["parameters"][0];
  EXPECT_EQ(turned["key"], "Int");
  EXPECT_EQ(turned["type"], "long");
  EXPECT_EQ(turned["dimensions"], (json{{0, 2}, {0, 2}}));
  EXPECT_EQ(turned["items"][0], (json{{"key", "Int"}, {"type", "long"}, {"value", "4"}}));
  EXPECT_EQ(documents[6]["result"]["items"][1]["text"], "a b");
  EXPECT_EQ(documents[7]["class"], "java.util.ArrayList");
  EXPECT_EQ(documents[8], (json{{"name", "copy"}, {"status", 65504}}));
  EXPECT_EQ(documents[9], (json{{"name", "values"}, {"status", 65504}}));
}

TEST_F(BeanhostCli, PassesHeldValuesAndObjectsOn) {
  const ProgramRun run = Script(
      "new list java.util.ArrayList\n"
      "call list add \"pear\"\n"
      "call list add \"apple\"\n"
      "new tree java.util.TreeSet\n"
      "call tree addAll @list\n"
      "let first = call tree first\n"
      "new map java.util.HashMap\n"
      "call map put @first @list\n"
      "let inner = call map get apple\n"
      "let text = call inner get 0\n"
      "new echo beans.ScalarEcho\n"
      "call echo echoString @text\n"
      "let number = call echo echoLong 5000000000\n"
      "call list add @number\n"
      "let boxed = call list get 2\n"
      "call echo echoLong @boxed\n"
      "new m examples.Matrix\n"
      "let table = call m multiply [[1,2],[3,4]] [[0,1],[1,0]]\n"
      "call m turn @table\n"
      "call m sum @table\n"
      "call m turn @table\n"
      "new taker beans.ObjectTaker\n"
      "call taker same @list @inner\n"
      "new p beans.Point\n"
      "call taker move @p 7 8\n"
      "new points java.util.ArrayList\n"
      "call points add @p\n"
      "let array = call points toArray\n"
      "call taker takesPoints @array\n");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Answers(run.out),
            "true\ntrue\ntrue\nfirst = java.lang.String: apple\nnull\n"
            "inner = java.util.ArrayList: [pear, apple]\ntext = java.lang.String: pear\npear\n"
            "number = 5000000000\ntrue\nboxed = java.lang.Long: 5000000000\n5000000000\n"
            "table = [[2.000000, 1.000000], [4.000000, 3.000000]]\n"
            "table = [[3.000000, 4.000000], [1.000000, 2.000000]]\n"
            "10.000000\n"
            "table = [[2.000000, 1.000000], [4.000000, 3.000000]]\n"
            "true\ntrue\n"
            "array = [beans.Point: (7, 8)]\n708\n");
}

TEST_F(BeanhostCli, LeavesANameAsItWasWhenItsStatementFails) {
  const std::vector<json> documents = Documents(
      "new x beans.Point\n"
      "call x setX 7\n"
      "new x no.Such\n"
      "let x = call x setX 8\n"
      "let x = call x nothing\n"
      "new map java.util.HashMap\n"
      "let x = call map get key\n"
      "call x getX\n"
      "new x java.util.ArrayList\n"
      "call x size\n",
      true);
  ASSERT_EQ(documents.size(), 10u);
  EXPECT_EQ(documents[2]["status"], 3);
  EXPECT_THAT(documents[2]["error"], HasSubstr("no.Such"));
  EXPECT_THAT(documents[3]["error"], HasSubstr("gives none"));
  EXPECT_THAT(documents[6]["error"], HasSubstr("null or an empty array"));
  EXPECT_EQ(documents[7]["result"]["value"], "8");
  EXPECT_EQ(documents[9]["result"]["value"], "0");
}

TEST_F(BeanhostCli, EndsAScriptAtItsFirstFailureUnlessItIsToKeepGoing) {
  const std::string script =
      "\xEF\xBB\xBFnew t beans.ThrowingMethods\ncall t checked boom\ndance\ncall t fine\n";
  const ProgramRun stopped = Script(script);
  EXPECT_EQ(stopped.status, 1);
  EXPECT_EQ(stopped.out, "> new t beans.ThrowingMethods\n> call t checked boom\n");
  EXPECT_THAT(stopped.err, HasSubstr("CheckedException: boom"));

  EXPECT_EQ(Script(script, {"--keep-going"}).status, 1) << "that of the first failure";
  EXPECT_EQ(Script("new x\n").status, 2);
  const std::vector<json> documents = Documents(script, true);
  ASSERT_EQ(documents.size(), 4u);
  EXPECT_EQ(documents[1]["status"], 7);
  EXPECT_EQ(documents[1]["statusCode"], 65535);
  EXPECT_EQ(documents[1]["description"], "Method: checked");
  EXPECT_EQ(documents[1]["failureText"],
            "Java Exception: beans.ThrowingMethods$CheckedException: boom");
  EXPECT_EQ(documents[1]["result"], nullptr);
  EXPECT_THAT(documents[1]["error"], HasSubstr("boom"));
  EXPECT_THAT(documents[2]["error"], HasSubstr("\"dance\" is no statement"));
  EXPECT_EQ(documents[3]["result"]["value"], "1");
}

TEST_F(BeanhostCli, GoesOnAfterAFailureInThePipedShell) {
  std::ofstream(directory / "in") << "new l java.util.ArrayList\ncall l get 0\ndance\n"
                                     "call l size\n exit\ncall l size\n";
  const ProgramRun run = Host({"--json", "shell"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("IndexOutOfBoundsException"));
  const std::vector<json> documents = Parsed(run.out);
  ASSERT_EQ(documents.size(), 4U);
  EXPECT_EQ(documents[3]["result"]["value"], "0");
}

TEST_F(BeanhostCli, KeepsWhatABeanPrintsOutOfTheDocuments) {
  const ProgramRun verbose =
      Host({"--java-option", "-verbose:class", "--json", "call", "java.util.ArrayList", "size"});
  EXPECT_EQ(verbose.status, 0);
  EXPECT_EQ(json::parse(verbose.out)["result"]["value"], "0");
  EXPECT_THAT(verbose.err, HasSubstr("java.util.ArrayList"));
}

// A VM that still runs at the process's end meets what libjvm's destructors leave behind.
TEST_F(BeanhostCli, EndsTheVmBeforeItselfAndWaitsForNoThreadOfABean) {
  const ProgramRun run =
      Host({"--java-option", "-Xlog:vmoperation=debug", "call", "java.util.Timer", "purge"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.err, HasSubstr("): Exit,"));
}

TEST_F(BeanhostCli, WalksWhatAScriptFilled) {
  const std::string script =
      "new map java.util.HashMap\ncall map put a true\nlet entries = call map entrySet\n"
      "size entries\nwalk entries\nlet values = call map values\nwalk values\n"
      "walk values skip 1\n";
  EXPECT_EQ(Answers(Script(script).out),
            "null\nentries = java.util.HashMap$EntrySet: [a=true]\n1\n"
            "java.util.HashMap$Node: a=true\nvalues = java.util.HashMap$Values: [true]\ntrue\n");
  const std::vector<json> documents = Documents(script);
  ASSERT_EQ(documents.size(), 8U);
  EXPECT_EQ(documents[3], json::parse(R"({"size":1})"));
  EXPECT_EQ(documents[4]["items"][0]["type"], "java.util.HashMap$Node");
  EXPECT_EQ(documents[6], json::parse(R"({"size":1,"items":[
      {"key":"Bool","type":"java.lang.Boolean","value":"true"}]})"));

  const ProgramRun none = Host({"walk", "java.util.HashMap", "--json"});
  EXPECT_EQ(none.status, 1);
  EXPECT_THAT(none.err, HasSubstr("java.util.HashMap can't be walked: expected iterator()"));
  EXPECT_EQ(Host({"walk", "beans.ThreeStrings", "--skip", "2"}).out, "three\n");
}

TEST_F(BeanhostCli, ListsTheBeansOfAJarAndSaysWhereThereAreNone) {
  const json listed = json::parse(Host({"beans", EXAMPLES_JAR, "--json"}).out)["beans"];
  EXPECT_THAT(listed, testing::Contains("examples.Greeter"));
  const ProgramRun none = Host({"beans", directory.string()});
  EXPECT_EQ(none.status, 0);
  EXPECT_THAT(none.err, HasSubstr("no bean found in"));
}

TEST_F(BeanhostCli, EventsThatFindNoRoomAreNoSuccess) {
  const ProgramRun run = Host({"--event-log", "/dev/full", "call", "beans.Point", "getX"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "0\n");
  EXPECT_THAT(run.err, HasSubstr("the event log /dev/full lacks events"));
}

TEST_F(BeanhostCli, AScriptThatCannotBeReadToItsEndIsAnError) {
  std::filesystem::remove(directory / "in");
  std::filesystem::create_directory(directory / "in");
  const ProgramRun run = Host({"run", "-"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("standard input can't be read beyond line 0"));
}

}  // namespace
}  // namespace quenlatrix::host
