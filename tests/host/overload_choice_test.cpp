#include "host/overload_choice.h"

#include <gmock/gmock.h>

#include "host/host_error.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"

namespace quenlatrix::host {
namespace {

using testing::HasSubstr;

// The methods that patterns with types describe, such as "f(int[],long)".
std::vector<MethodDescription> Methods(const std::vector<std::string>& patterns) {
  std::vector<MethodDescription> methods;
  for (const std::string& text : patterns) {
    const MethodPattern pattern = ParseMethodPattern(text);
    MethodDescription method;
    method.name = ToWideString(pattern.name);
    for (const JavaType& type : pattern.parameterTypes.value()) {
      ParameterDescription parameter;
      parameter.type.typeName = ToWideString(type.name);
      if (type.dimensions > 0) {
        parameter.type.arrayInfo = std::make_unique<meta_object::TypeDesc::ArrayInfo>();
      }
      for (int i = 0; i < type.dimensions; ++i) parameter.type.arrayInfo->AddDimensionInfo(0, -1);
      method.parameters.push_back(std::move(parameter));
    }
    methods.push_back(std::move(method));
  }
  return methods;
}

// What is chosen, or why nothing is.
std::string Chosen(const std::vector<std::string>& methods, const std::string& pattern,
                   const std::vector<Argument>& arguments) {
  try {
    const std::vector<MethodDescription> described = Methods(methods);
    return ToSourceForm(ChooseMethod(described, "Bean", ParseMethodPattern(pattern), arguments));
  } catch (const HostError& error) {
    EXPECT_EQ(error.exitStatus, ExitStatus::Failed);
    return error.what();
  }
}

std::string Chosen(const std::vector<std::string>& methods, const std::string& arguments) {
  std::vector<Argument> parsed;
  for (const std::string_view argument : SplitArguments(arguments)) {
    parsed.push_back(ParseArgument(argument));
  }
  return Chosen(methods, "f", parsed);
}

const std::string kObject = "f(java.lang.Object)";
const std::string kString = "f(java.lang.String)";
const std::string kNumber = "f(java.lang.Number)";

struct Case {
  std::vector<std::string> methods;
  const char* arguments;
  std::string chosen;
};

TEST(OverloadChoice, TakesTheParametersThatFitBest) {
  const Case cases[] = {
      // Exact kind, then wider, then narrower numbers.
      {{"f(double)", "f(float)", "f(long)", "f(int)", "f(short)", kObject}, "5", "f(int)"},
      {{"f(double)", "f(float)", "f(long)", "f(short)"}, "5", "f(long)"},
      {{"f(double)", "f(short)"}, "5", "f(double)"},
      {{"f(byte)", "f(short)"}, "-32769", ""},
      {{"f(int)", "f(long)", "f(double)"}, "2147483648", "f(long)"},
      {{"f(int)", "f(long)", "f(double)"}, "9223372036854775808", "f(double)"},
      {{"f(float)", "f(double)"}, "2.5", "f(double)"},
      // Nearest supertype, boxing, text at last.
      {{kObject, "f(java.lang.CharSequence)", "f(char)"}, "x", "f(java.lang.CharSequence)"},
      {{kObject, kString}, "\"5\"", kString},
      {{kObject, "f(java.lang.Integer)", "f(java.lang.Long)", kNumber},
       "5",
       "f(java.lang.Integer)"},
      {{kObject, kNumber, kString}, "5", kNumber},
      {{kObject, kString}, "true", kObject},
      {{"f(int)", kString}, "true", kString},
      {{"f(byte)", kString}, "300", kString},
      {{"f(char)", "f(int)", kString}, "'c'", "f(char)"},
      {{"f(long)", "f(int)", kObject}, "'c'", "f(int)"},
      // Arrays go by their worst element and their dimensions.
      {{"f(int[])", "f(long[])", "f(int[][])"}, "[1,2]", "f(int[])"},
      {{"f(int[])", "f(double[])", "f(float[])"}, "[1,2.5]", "f(double[])"},
      {{"f(int[])", "f(int[][])"}, "[[1],[2]]", "f(int[][])"},
      {{"f(java.lang.Object[])", "f(java.lang.String[])"},
       "[\"a\",\"b\"]",
       "f(java.lang.String[])"},
      {{"f(java.lang.Object[])", "f(int[])"}, "[1,2.5]", "f(java.lang.Object[])"},
      {{"f(char[])", "f(int[])"}, "[\"a\",\"€\"]", "f(char[])"},
      // Several parameters.
      {{"f(int)", "f(int,int)", "f(int,java.lang.String)"}, "1 2", "f(int, int)"},
      {{"f(int,double)", "f(long,long)", "f(int,long)"}, "1 2", "f(int, long)"},
      // What fits none.
      {{"f(java.util.List)", kString}, "'c'", ""},
      {{"f(java.util.List)", "f(int)"}, "x", ""},
      {{"f(java.util.List)", "f(int[][][])"}, "[[5]]", ""},
  };
  for (const Case& each : cases) {
    const std::string chosen = Chosen(each.methods, each.arguments);
    if (each.chosen.empty()) {
      EXPECT_THAT(chosen, HasSubstr("no Bean.f fits")) << each.arguments;
    } else {
      EXPECT_EQ(chosen, each.chosen) << each.arguments;
    }
  }
}

TEST(OverloadChoice, KeepsToTheParameterTypesOfThePattern) {
  const std::vector<std::string> methods = {"f(int)", "f(long)", "f(java.lang.String[])"};
  const std::vector<Argument> five = {ParseArgument("5")};
  EXPECT_EQ(Chosen(methods, "f(long)", five), "f(long)");
  EXPECT_THAT(Chosen(methods, "f(java.lang.String[])", five), HasSubstr("expected an array"));
  EXPECT_THAT(Chosen(methods, "f(byte)", five), HasSubstr("has these parameter types"));
  EXPECT_EQ(Chosen(methods, "f([Ljava.lang.String;)", {ParseArgument("[\"a\"]")}),
            "f(java.lang.String[])");
}

Argument HeldObject(const std::string& className, const Supertypes& supertypes) {
  Argument argument;
  argument.kind = Argument::Kind::Object;
  argument.text = className;
  argument.supertypes = std::make_shared<const Supertypes>(supertypes);
  return argument;
}

TEST(OverloadChoice, TakesTheNearestSupertypeOfAHeldObject) {
  const Supertypes list = {{"List1", 0}, {"Base", 1}, {"Collection1", 2}, {"java.lang.Object", 3}};
  const Supertypes base = {{"Base", 0}, {"java.lang.Object", 1}};
  const Argument object = HeldObject("List1", list);
  EXPECT_EQ(Chosen({kObject, "f(Collection1)", "f(Base)"}, "f", {object}), "f(Base)");
  EXPECT_EQ(Chosen({kObject, "f(Other)"}, "f", {object}), kObject);
  EXPECT_THAT(Chosen({"f(Other)", kString, "f(int)"}, "f", {object}), HasSubstr("no Bean.f fits"));

  Argument array;
  array.kind = Argument::Kind::Array;
  array.items = {HeldObject("Base", base), object};
  EXPECT_EQ(Chosen({"f(Base[])"}, "f", {array}), "f(Base[])");
  std::swap(array.items[0], array.items[1]);
  EXPECT_THAT(Chosen({"f(Base[])"}, "f", {array}), HasSubstr("elements of one class"));
}

TEST(OverloadChoice, TakesAHeldValueAsItsOwnType) {
  Argument held = ParseArgument("5");
  held.javaType = "long";
  EXPECT_EQ(Chosen({"f(int)", "f(long)", "f(double)"}, "f", {held}), "f(long)");
  EXPECT_EQ(Chosen({"f(int)", "f(double)"}, "f", {held}), "f(double)");
  EXPECT_EQ(Chosen({"f(int)", kObject}, "f", {held}), "f(int)");

  const Supertypes types = {
      {"java.lang.Long", 0}, {"java.lang.Number", 1}, {"java.lang.Object", 2}};
  Argument wrapped = HeldObject("java.lang.Long", types);
  wrapped.items = {held};
  EXPECT_EQ(Chosen({"f(int)", kNumber}, "f", {wrapped}), kNumber);
  EXPECT_EQ(Chosen({"f(int)", "f(long)"}, "f", {wrapped}), "f(long)");
}

}  // namespace
}  // namespace quenlatrix::host
