#include "tests/soak/soak_mix.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <list>
#include <random>
#include <thread>

#include "host/boxes.h"
#include "host/method_pattern.h"
#include "host/parameter_fit.h"
#include "host/utf8.h"
#include "host/value_builder.h"

namespace quenlatrix::soak {

namespace context = meta_object::context;
namespace status = meta_object::handler_status;
namespace type = meta_object::type;
using host::Argument;
using host::BeanObject;
using host::MethodDescription;
using host::ToUtf8;
using host::ValuePtr;
using meta_object::Handler;
using meta_object::TypeDesc;
using testing::HasSubstr;

namespace {

// Whether memory was lacking at any time since its construction.
class HeapWatch {
 public:
  explicit HeapWatch(const Ground& ground) : ground(ground), before(ground.heapFills) {}
  bool Lacked() const { return before % 2 != 0 || ground.heapFills != before; }

 private:
  const Ground& ground;
  const int before;
};

bool IsAttached(const host::Host& host) {
  void* env = nullptr;
  return host.GetVm()->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK;
}

// Can do no harm, nor wait, whatever the class.
bool IsSafe(const MethodDescription& method) {
  const std::string name = ToUtf8(method.name);
  const auto isAccessor = [&name](const std::string& prefix) {
    return name.starts_with(prefix) && std::isupper(name.c_str()[prefix.size()]) != 0;
  };
  return isAccessor("get") || isAccessor("is") || name == "toString" || name == "size" ||
         name == "hashCode";
}

Argument Plain(Argument::Kind kind, const std::string& text) {
  Argument argument;
  argument.kind = kind;
  argument.text = text;
  return argument;
}

Argument Number(int number) { return Plain(Argument::Kind::Integer, std::to_string(number)); }

Argument ObjectOf(const BeanObject& object) {
  Argument argument;
  argument.kind = Argument::Kind::Object;
  argument.handler = object.GetHandler();
  return argument;
}

host::CallOutcome Call(host::Host& host, BeanObject& object, const MethodDescription& method,
                       const std::vector<Argument>& arguments) {
  host::Boxes boxes(host);
  std::vector<ValuePtr> parameters;
  for (std::size_t i = 0; i < arguments.size(); ++i)
    parameters.push_back(host::BuildValue(arguments[i], method.parameters[i], boxes));
  // The call that keeps no record of failures: there are too many here.
  return object.Call(WideString(method.id.getWCharPtr()), method.returnType, parameters);
}

// One thread's objects and what it does with them.
class Mix {
 public:
  Mix(Ground& ground, std::size_t place, std::uint64_t seed)
      : ground(ground), place(place), random(seed) {}
  ~Mix() { Leave(std::nullopt); }
  Mix(const Mix&) = delete;
  Mix& operator=(const Mix&) = delete;

  void Run(Clock::time_point end, int most);
  void Create() { Keep(Make(OneOf(ground.classes)), false); }

  void CreateInVain() {
    static constexpr const char* kNames[] = {"no.such.Bean", "beans.ThrowingConstructor",
                                             "beans.AbstractBean", "denied.Bean", ""};
    const char* const name = OneOf(kNames);
    EXPECT_FALSE(ground.host.Create(name).object) << name;
  }

  void Describe() {
    const HeapWatch watch(ground);
    BeanObject& object = Any().object;
    EXPECT_TRUE(
        (object.Describe().status == status::kSuccess && object.IsInstanceOf("java.lang.Object")) ||
        watch.Lacked())
        << object.ClassName();
  }

  void CallAny() {
    const Held& chosen = Any();
    const bool isShared = chosen.isShared;
    // Its own count: an object that comes back may take this one's place.
    std::optional<BeanObject> object = chosen.object.Share();
    const std::vector<MethodDescription>* methods = object->Methods();
    if (methods == nullptr || methods->empty()) return;
    const bool onlySafe = isShared || !object->ClassName().starts_with("beans.");
    const auto first = methods->begin() + static_cast<std::ptrdiff_t>(Below(methods->size()));
    const auto chosenMethod = onlySafe ? std::find_if(first, methods->end(), IsSafe) : first;
    if (chosenMethod == methods->end()) return;
    const MethodDescription& method = *chosenMethod;
    std::vector<Argument> arguments;
    for (const host::ParameterDescription& parameter : method.parameters)
      arguments.push_back(MakeArgument(host::JavaTypeOf(parameter.type)));
    const host::CallOutcome outcome = Call(ground.host, *object, method, arguments);
    EXPECT_THAT(outcome.status, testing::AnyOf(status::kSuccess, status::kCallFailed));
    ++ground.calls;
    if (outcome.status != status::kSuccess) ++ground.failedCalls;
    if (outcome.result) Keep(BeanObject::FromValue(ground.host, *outcome.result), isShared);
  }

  void CheckAnswers() {
    const std::string text = "gr\u00fc\u00dfe \U0001F600 " + std::to_string(Below(1000));
    ExpectAnswer(Make("beans.Texts"), "echo", {Plain(Argument::Kind::Text, text)}, text);
    std::optional<BeanObject> point = Make("beans.Point");
    if (!point) return;
    const int x = Small(100);
    ExpectAnswer(point->Share(), "setX", {Number(x)}, "");
    ExpectAnswer(point->Share(), "setY", {Number(5)}, "");
    ExpectAnswer(Make("beans.ObjectTaker"), "takesPoint", {ObjectOf(*point)},
                 std::to_string(x * 100 + 5));
  }

  void Walk() {
    static constexpr const char* kWhat[] = {"empty",    "entries", "deque",  "texts",
                                            "wrappers", "arrays",  "nested", "foreign",
                                            "a null",   "no size", "none"};
    if (std::optional<BeanObject> maker = Make("beans.CollectionMaker")) {
      const auto* methods = maker->Methods();
      if (methods == nullptr) return;
      const host::CallOutcome made =
          Call(ground.host, *maker, methods->front(), {Plain(Argument::Kind::Text, OneOf(kWhat))});
      if (made.result) Keep(BeanObject::FromValue(ground.host, *made.result), false);
    }
    const std::optional<BeanObject> object = held.back().object.Share();
    Handler& handler = *object->GetHandler();
    context::CollectionContext open;
    if (handler.OpenCollection(open) != status::kSuccess) return;
    for (int i = 0; i < 2; ++i) {
      int size = 0;
      std::list<type::Object*> items;
      EXPECT_EQ(handler.GetCollectionSize(open, size), status::kSuccess);
      handler.SkipItems(open, Small(3));
      handler.GetNextItems(open, -1, items, nullptr);
      for (type::Object* item : items) {
        const ValuePtr value(item, host::ValueRelease{ground.host.GetReceiver(handler)});
        if (value && Below(4) == 0) Keep(BeanObject::FromValue(ground.host, *value), true);
      }
      handler.ResetCollection(open);
    }
    EXPECT_EQ(handler.CloseCollection(open), status::kSuccess);
  }

  void Pass() {
    Held& chosen = Any();
    // An object is described before others see it: that sets its identity.
    if (chosen.object.Introspect() == status::kSuccess) {
      chosen.isShared = true;
      Leave(chosen.object.Share());
    }
    std::optional<BeanObject> taken;
    {
      const std::lock_guard lock(ground.passing);
      const auto& there = ground.places[2 * Below(kThreads / 2) + place % 2];
      if (there) taken = there->Share();
    }
    Keep(std::move(taken), true);
  }

  void Nest() { NestTo(1 + Small(20)); }

  void Identify() {
    BeanObject& object = Any().object;
    const std::vector<MethodDescription>* methods = object.Methods();
    if (methods == nullptr || methods->empty() || object.Introspect() != status::kSuccess) return;
    Handler& handler = *object.GetHandler();
    const MethodDescription& method = OneOf(*methods);
    WideString name;
    WideString built;
    meta_object::MethodType kind{};
    EXPECT_EQ(handler.ParseMethodID(WideString(method.id.getWCharPtr()), name, kind, true), 0U);
    EXPECT_EQ(ToUtf8(name), ToUtf8(method.name));
    EXPECT_EQ(handler.BuildMethodID(built, name, kind, nullptr, false), 0U);
    WideString keyword(L"Int");
    EXPECT_EQ(handler.BuildNativeType(keyword, built, false), 0U);
    // Some methods have names that no identifier can hold.
    EXPECT_GE(handler.GetMethodCount(), methods->size());
    EXPECT_TRUE(handler.IsValidObject() && !handler.IsHandlerAvailable("JAVABEAN://no.such.Bean"));
  }

  void Burden() {
    const auto burden = [this] { return Make("soak.Burden"); };
    ExpectAnswer(burden(), "slow", {Number(20)}, "20");
    ExpectAnswer(burden(), "recurse", {Number(1000)}, "1000");
    ExpectAnswer(burden(), "fail", {Number(1)}, "java.lang.AssertionError: 1");
    ExpectAnswer(burden(), "overflow", {}, "java.lang.StackOverflowError");
    // It costs all threads a good part of a second.
    const std::unique_lock turn(ground.heap, std::try_to_lock);
    if (!turn || Clock::now() < ground.nextHeapFill) return;
    std::optional<BeanObject> greedy = burden();
    if (!greedy || greedy->Methods() == nullptr) return;
    ++ground.heapFills;
    EXPECT_THAT(Ask(ground.host, *greedy, "fillHeap"), HasSubstr("java.lang.OutOfMemoryError"));
    ++ground.heapFills;
    ground.nextHeapFill = Clock::now() + std::chrono::seconds(2);
  }

  void Visit() {
    std::jthread(RunMix, std::ref(ground), place, random(), Clock::time_point::max(), Small(20))
        .join();
  }

  void Release() {
    EXPECT_THAT(Any().object.Release(),
                testing::AnyOf(status::kSuccess, status::kLastReferenceReleased));
    held.pop_back();
  }

  void Collect() { ground.host.Collect(); }

 private:
  struct Held {
    BeanObject object;
    bool isShared;
  };

  std::size_t Below(std::size_t limit) { return random() % limit; }
  int Small(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
  template <class All>
  auto OneOf(All& all) -> decltype(all[0]) {
    return all[Below(std::size(all))];
  }
  std::optional<BeanObject> Make(const std::string& className) {
    const HeapWatch watch(ground);
    host::Host::Creation creation = ground.host.Create(className);
    EXPECT_TRUE(creation.object || watch.Lacked()) << creation.text;
    return std::move(creation.object);
  }

  void Keep(std::optional<BeanObject> object, bool isShared) {
    constexpr std::size_t kMost = 6;
    if (!object) return;
    if (held.size() == kMost) Release();
    held.push_back({std::move(*object), isShared});
  }

  Held& Any() {
    std::swap(OneOf(held), held.back());
    return held.back();
  }

  void Leave(std::optional<BeanObject> object) {
    // What lay there goes without the lock.
    const std::lock_guard lock(ground.passing);
    ground.places[place].swap(object);
  }

  Argument MakeArgument(const host::JavaType& javaType) {
    if (javaType.dimensions > 0) {
      Argument array;
      array.kind = Argument::Kind::Array;
      for (int i = 0; i < 3; ++i)
        array.items.push_back(MakeArgument({javaType.name, javaType.dimensions - 1}));
      return array;
    }
    return host::IsPlainType(javaType.name) ? Number(Small(10)) : ObjectOf(OneOf(held).object);
  }

  // Right is also what fails for want of memory.
  void ExpectAnswer(std::optional<BeanObject> object, const char* method,
                    const std::vector<Argument>& arguments, const std::string& answer) {
    if (!object) return;
    const HeapWatch watch(ground);
    const std::string found = Ask(ground.host, *object, method, arguments);
    EXPECT_TRUE(watch.Lacked() || found.find(answer) != std::string::npos) << found;
  }

  void NestTo(int depth) {
    if (depth == 0) return CallAny();
    const std::optional<BeanObject> object = Any().object.Share();
    Handler& handler = *object->GetHandler();
    context::MethodCallContext open;
    EXPECT_EQ(handler.OpenMethodCall(open, WideString(L"Invoke:hashCode:0")), status::kSuccess);
    NestTo(depth - 1);
    handler.SetReturnDataType(open,
                              TypeDesc(TypeDesc::Key::Int, WideString(L"int"), WideString(L"int")));
    // As often as one likes.
    for (int i = Small(3); i >= 0; --i) {
      meta_object::MethodInvokeStatus answer;
      type::Object* code = nullptr;
      handler.InvokeMethod(open, answer, &code);
      handler.Release(code);
    }
    handler.CloseMethodCall(open);
  }

  Ground& ground;
  const std::size_t place;
  std::mt19937_64 random;
  std::vector<Held> held;
};

// The first ones are chosen most often, the last a hundred times as seldom.
struct Operation {
  const char* name;
  void (Mix::*run)();
  std::atomic<long> done = 0;
} operations[] = {{"call", &Mix::CallAny},
                  {"create", &Mix::Create},
                  {"pass", &Mix::Pass},
                  {"walk", &Mix::Walk},
                  {"describe", &Mix::Describe},
                  {"release", &Mix::Release},
                  {"identify", &Mix::Identify},
                  {"known answers", &Mix::CheckAnswers},
                  {"create in vain", &Mix::CreateInVain},
                  {"nest", &Mix::Nest},
                  {"collect", &Mix::Collect},
                  {"visit", &Mix::Visit},
                  {"burden", &Mix::Burden}};

void Mix::Run(Clock::time_point end, int most) {
  const bool isAttached = IsAttached(ground.host);
  for (int i = 0; i < most && Clock::now() < end; ++i) {
    Operation& chosen = operations[Below(1 + Below(std::size(operations)))];
    if (held.empty()) Create();
    if (!held.empty()) (this->*chosen.run)();
    ++chosen.done;
    ++ground.operations;
    ASSERT_EQ(IsAttached(ground.host), isAttached) << "after " << chosen.name;
  }
}

}  // namespace

std::string Ask(host::Host& host, BeanObject& object, const std::string& name,
                const std::vector<Argument>& arguments) {
  const std::vector<MethodDescription>* methods = object.Methods();
  if (methods == nullptr) return "not described";
  const auto isNamed = [&name](const auto& method) { return ToUtf8(method.name) == name; };
  const host::CallOutcome outcome =
      Call(host, object, *std::ranges::find_if(*methods, isNamed), arguments);
  WideString text;
  if (outcome.result) outcome.result->GetValueAsString(text);
  return ToUtf8(outcome.result ? text : outcome.failureText);
}

void CallEach(host::Host& host, const std::string& className) {
  BeanObject object = std::move(*host.Create(className).object);
  for (const MethodDescription& method : *object.Methods())
    Call(host, object, method, {method.parameters.size(), Number(1)});
}

std::string DescribeOperations() {
  std::string text;
  for (const Operation& operation : operations)
    text += std::string(operation.name) + " " + std::to_string(operation.done) + ", ";
  return text;
}

void RunMix(Ground& ground, std::size_t place, std::uint64_t seed, Clock::time_point end,
            int most) {
  ++ground.threads;
  if (place % 2 != 0) return Mix(ground, place, seed).Run(end, most);
  Handler* const anchor = ground.host.GetHandlers().GetDefault()->GetReceiver();
  context::MethodCallContext attached;
  // Attaching takes Java memory, too.
  while (!IsAttached(ground.host)) {
    anchor->CloseMethodCall(attached);
    anchor->OpenMethodCall(attached, WideString(L"Invoke:hashCode:0"));
  }
  {
    void* env = nullptr;
    ground.host.GetVm()->GetEnv(&env, JNI_VERSION_1_8);
    test::JniReferenceTracker tracker(static_cast<JNIEnv*>(env), &ground.globals);
    Mix(ground, place, seed).Run(end, most);
    EXPECT_EQ(tracker.Left(), 0);
  }
  anchor->CloseMethodCall(attached);
  EXPECT_FALSE(IsAttached(ground.host));
}

}  // namespace quenlatrix::soak
