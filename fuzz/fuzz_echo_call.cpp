#include <climits>
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "fuzz/echo_model.h"
#include "fuzz/jvm_host.h"
#include "fuzz/random_descriptor.h"
#include "fuzz/random_values.h"
#include "fuzz/require.h"
#include "meta_object/handler_status.h"
#include "meta_object/type/array.h"
#include "meta_object/type/string_values.h"
#include "meta_object/type/struct_value.h"

// Values go through a call of a Java method that gives them back. What comes back, and what is left
// in an array parameter, is what the conversions promise. Trees of values under descriptors that
// may not fit them are refused or fail, and do no harm.
namespace {

using quenlatrix::host::BeanObject;
using quenlatrix::host::CallOutcome;
using quenlatrix::host::ValuePtr;
using quenlatrix::meta_object::TypeDesc;
namespace handler_status = quenlatrix::meta_object::handler_status;
namespace type = quenlatrix::meta_object::type;
using Key = TypeDesc::Key;
using RefType = TypeDesc::RefType;

constexpr Key kScalarKeys[] = {Key::Void, Key::Int,  Key::Real,     Key::String, Key::Char,
                               Key::Bool, Key::Date, Key::Currency, Key::Enum,   Key::Object};

BeanObject& GetBean(const std::string& className) {
  static auto* const beans = new std::map<std::string, BeanObject>;
  auto found = beans->find(className);
  if (found == beans->end()) found = beans->emplace(className, MakeBean(className)).first;
  return found->second;
}

CallOutcome Call(const std::string& className, const std::string& method,
                 const TypeDesc& returnType, std::vector<ValuePtr>& parameters) {
  const WideString methodId(("Invoke:" + method + ":0").c_str());
  return GetBean(className).Call(methodId, returnType, parameters);
}

bool IsOneIn(FuzzedDataProvider& data, int count) {
  return data.ConsumeIntegralInRange(1, count) == count;
}

ValuePtr MakeAnyScalar(FuzzedDataProvider& data, Key key) {
  const std::vector<BeanObject>& points = GetPoints();
  const auto point = data.ConsumeIntegralInRange<std::size_t>(0, points.size());
  return MakeScalar(data, key, point < points.size() ? points[point].GetHandler() : nullptr);
}

// Now and then of another class than the kind's own.
ValuePtr MakeScalarOf(FuzzedDataProvider& data, const EchoKind& kind) {
  if (IsOneIn(data, 16)) return MakeAnyScalar(data, data.PickValueInArray(kScalarKeys));
  if (kind.key == Key::Object || !IsOneIn(data, 8)) return MakeAnyScalar(data, kind.key);
  auto text = std::make_unique<type::String>();
  text->SetValue(WideString(MakeNumberText(data).c_str()));
  return ValuePtr(text.release());
}

// Now and then with an empty place, or of a shape that doesn't cross.
ValuePtr MakeArrayOf(FuzzedDataProvider& data, const EchoKind& kind, const TypeDesc& desc) {
  auto array = std::make_unique<type::Array>();
  array->Create(desc);
  array->SetDesc(WideString(kind.javaType));
  for (int i = 0; i < array->GetItemCount(); ++i) {
    if (IsOneIn(data, 32)) continue;
    array->SetItemAt(MakeScalarOf(data, kind).release(), static_cast<unsigned int>(i));
  }
  return ValuePtr(array.release());
}

TypeDesc DescribeKind(const EchoKind& kind, std::size_t dimensions) {
  TypeDesc desc(kind.key, RefType::ByValue, dimensions > 0);
  desc.typeName = WideString(kind.javaType);
  for (std::size_t i = 0; i < dimensions; ++i) desc.arrayInfo->AddDimensionInfo(0, -1);
  return desc;
}

// What the call gave, as the model says it.
std::string ShowOutcome(const CallOutcome& outcome, const EchoKind& kind) {
  if (outcome.status == handler_status::kSuccess) return Show(outcome.result.get(), kind);
  const char* const text = outcome.failureText.getCharPtr();
  return outcome.statusCode == 0 ? "refused" : std::string("failed: ") + (text ? text : "");
}

void RequireSame(const char* what, const std::string& expected, const std::string& found) {
  if (expected == found || expected.find(kAnything) != std::string::npos) return;
  std::fprintf(stderr, "%s\n  expected %s\n  found    %s\n", what, expected.c_str(), found.c_str());
  Require(false);
}

void CheckEcho(FuzzedDataProvider& data) {
  const auto kinds = GetEchoKinds();
  const EchoKind& kind = kinds[data.ConsumeIntegralInRange<std::size_t>(0, kinds.size() - 1)];
  // One dimension too many is refused.
  const std::size_t most = kind.maxDimensions + (IsOneIn(data, 32) && kind.maxDimensions == 2);
  const auto dimensions = data.ConsumeIntegralInRange<std::size_t>(0, most);
  TypeDesc desc = DescribeKind(kind, dimensions);
  for (std::size_t i = 0; i < dimensions; ++i) {
    desc.arrayInfo->dimensions[i] = {IsOneIn(data, 32) ? 1 : 0,
                                     IsOneIn(data, 32) ? -1 : data.ConsumeIntegralInRange(1, 4)};
  }
  std::vector<ValuePtr> parameters;
  parameters.push_back(dimensions == 0 ? MakeScalarOf(data, kind) : MakeArrayOf(data, kind, desc));
  parameters[0]->GetMetaItemType() = desc;
  // Once more with what the first call left in an array.
  for (int i = 0; i < 2; ++i) {
    const std::string before = Show(parameters[0].get(), kind);
    const std::string expected = Expect(*parameters[0], kind);
    const CallOutcome outcome = Call(dimensions == 0 ? kind.scalarBean : "beans.ArrayEcho",
                                     dimensions == 0 ? kind.scalarMethod : "echo",
                                     DescribeKind(kind, dimensions), parameters);
    RequireSame(kind.javaType, expected, ShowOutcome(outcome, kind));
    const bool isRefilled = dimensions > 0 && expected != "null" && expected != "refused";
    RequireSame("parameter", isRefilled ? expected : before, Show(parameters[0].get(), kind));
    if (expected.find(kAnything) != std::string::npos) return;
  }
}

constexpr const char* kNames[] = {"boolean",
                                  "byte",
                                  "char",
                                  "short",
                                  "int",
                                  "long",
                                  "float",
                                  "double",
                                  "void",
                                  "array of int",
                                  "java.lang.String",
                                  "java.lang.Integer",
                                  "java.lang.Character",
                                  "java.lang.Object",
                                  "java.lang.Date",
                                  "beans.Point",
                                  "[I",
                                  "I",
                                  "java/lang/String",
                                  "a;b",
                                  "java.lang",
                                  "java."};

// Any descriptor, more often than not with a Java name.
TypeDesc MakeAnyDescriptor(FuzzedDataProvider& data) {
  TypeDesc desc = MakeDescriptor(data);
  if (data.ConsumeBool()) desc.typeName = WideString(data.PickValueInArray(kNames));
  // Whatever shape the value itself has.
  if (data.ConsumeBool()) {
    constexpr int kCounts[] = {-1, 0, 1, 2, 3, 4, 100'000'000, INT_MAX};
    desc.arrayInfo = std::make_unique<TypeDesc::ArrayInfo>();
    for (int i = data.ConsumeIntegralInRange(1, 3); i > 0; --i) {
      desc.arrayInfo->AddDimensionInfo(0, data.PickValueInArray(kCounts));
    }
  }
  return desc;
}

ValuePtr MakeTree(FuzzedDataProvider& data, int depth) {
  const int form =
      depth == 0 || data.remaining_bytes() == 0 ? 0 : data.ConsumeIntegralInRange(0, 3);
  ValuePtr value;
  if (form < 2) {
    value = MakeAnyScalar(data, data.PickValueInArray(kScalarKeys));
  } else if (form == 2) {
    auto structure = std::make_unique<type::Struct>();
    for (int i = data.ConsumeIntegralInRange(0, 3); i > 0; --i) {
      structure->members.emplace_back(MakeTree(data, depth - 1).release());
    }
    value.reset(structure.release());
  } else {
    TypeDesc shape(Key::Int, RefType::ByValue, true);
    for (int i = data.ConsumeIntegralInRange(1, 3); i > 0; --i) {
      shape.arrayInfo->AddDimensionInfo(data.ConsumeIntegralInRange(-1, 1),
                                        data.ConsumeIntegralInRange(-1, 3));
    }
    auto array = std::make_unique<type::Array>();
    array->Create(shape);
    array->SetDesc(WideString(data.PickValueInArray(kNames)));
    for (int i = 0; i < array->GetItemCount(); ++i) {
      array->SetItemAt(MakeTree(data, depth - 1).release(), static_cast<unsigned int>(i));
    }
    value.reset(array.release());
  }
  if (data.ConsumeBool()) {
    value->GetMetaItemType().typeName = WideString(data.PickValueInArray(kNames));
  } else if (data.ConsumeBool()) {
    value->GetMetaItemType() = MakeAnyDescriptor(data);
  }
  return value;
}

void CheckTrees(FuzzedDataProvider& data) {
  constexpr const char* kMethods[][2] = {
      {"beans.ScalarEcho", "echo"},         {"beans.ScalarEcho", "echoString"},
      {"beans.ArrayEcho", "echo"},          {"beans.ObjectReturner", "echo"},
      {"beans.ObjectTaker", "takesObject"}, {"beans.ObjectTaker", "takesPoint"},
      {"beans.ObjectTaker", "same"},        {"beans.ObjectTaker", "takesPoints"},
      {"beans.ArrayChanger", "reverse"},    {"beans.Overloads", "which"},
      {"beans.ScalarEcho", "nothing"}};
  const auto& method =
      kMethods[data.ConsumeIntegralInRange<std::size_t>(0, std::size(kMethods) - 1)];
  std::vector<ValuePtr> parameters;
  for (int i = data.ConsumeIntegralInRange(0, 3); i > 0; --i) {
    parameters.push_back(MakeTree(data, 3));
  }
  const TypeDesc returnType = MakeAnyDescriptor(data);
  const CallOutcome outcome = Call(method[0], method[1], returnType, parameters);
  Require(outcome.status == handler_status::kSuccess ||
          outcome.status == handler_status::kCallFailed);
  Require(outcome.statusCode == (outcome.status == 0 ? 1U : outcome.statusCode & 0xffffU));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  RequireNothingLeft([&] {
    FuzzedDataProvider data(bytes, size);
    while (data.remaining_bytes() > 0) data.ConsumeBool() ? CheckTrees(data) : CheckEcho(data);
  });
  return 0;
}
