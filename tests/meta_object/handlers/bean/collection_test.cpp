#include <thread>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/jni_reference_tracker.h"

namespace quenlatrix::test {
namespace {

namespace type = meta_object::type;
using meta_object::Handler;
using meta_object::HandlerStatus;
using testing::ElementsAre;

constexpr HandlerStatus kDone = meta_object::handler_status::kSuccess;
constexpr HandlerStatus kNone = meta_object::handler_status::kNoCollection;

// What a host does with one walk. The items go back to the handler with it.
class Walk {
 public:
  explicit Walk(Handler& handler) : handler(handler) {}
  ~Walk() { Close(); }
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;

  HandlerStatus Open() { return handler.OpenCollection(context); }
  HandlerStatus Reset() { return handler.ResetCollection(context); }
  HandlerStatus Skip(int count) { return handler.SkipItems(context, count); }
  HandlerStatus Size(int& size) { return handler.GetCollectionSize(context, size); }
  HandlerStatus Close() { return handler.CloseCollection(context); }
  bool IsOpen() const { return context.walk != nullptr; }

  HandlerStatus Next() {
    std::list<type::Object*> given;
    int delivered = -1;
    const HandlerStatus status = handler.GetNextItems(context, 1, given, &delivered);
    EXPECT_EQ(delivered, static_cast<int>(given.size()));
    items.clear();
    for (type::Object* const item : given) {
      EXPECT_TRUE(item == nullptr || item->CanInvoke());
      items.emplace_back();
      items.back().handler = &handler;
      items.back().result = item;
    }
    return status;
  }
  // The items that are left, as Show has them; the status alone when it isn't 0.
  std::vector<std::string> Rest() {
    std::vector<std::string> texts;
    if (const HandlerStatus status = Next(); status != kDone) {
      texts.push_back("status " + std::to_string(status));
    }
    for (const CallOutcome& item : items) texts.push_back(Show(item.result));
    return texts;
  }
  void Forget() { items.clear(); }
  // The handler of an object among the items.
  Handler& Object(std::size_t index) { return *items.at(index).Object(); }

 private:
  Handler& handler;
  meta_object::context::CollectionContext context;
  std::vector<CallOutcome> items;
};

std::vector<std::string> Elements(Handler& handler) {
  Walk walk(handler);
  EXPECT_EQ(walk.Open(), kDone);
  return walk.Rest();
}

class CollectionTest : public PluginTest {
 protected:
  CallOutcome MakeCollection(const std::string& what) {
    return Call(Make("beans.CollectionMaker"), "make", "java.lang.Object",
                ValuesOf({{"java.lang.String", {what.begin(), what.end()}}}));
  }

  Handler& MakeBroken(const std::string& part, int element = 0) {
    Handler& broken = Make("beans.BrokenCollection");
    Break(broken, part, element);
    return broken;
  }

  static void Break(Handler& broken, const std::string& part, int element = 0) {
    const Values values = ValuesOf(
        {{"java.lang.String", {part.begin(), part.end()}}, {"int", std::to_wstring(element)}});
    EXPECT_EQ(Call(broken, "breakAt", "void", values).status, kDone);
  }
};

TEST_F(CollectionTest, ElementsOfEveryCollectionComeAsTheirOwnKind) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"empty", {}},
      {"keys", {"String a", "String b"}},
      {"entries", {"Object java.util.HashMap$Node", "Object java.util.HashMap$Node"}},
      {"deque", {"Char a", "Char b"}},
      {"texts", {"String ", "String t\u00e4xt \U0001f600", "String a,b"}},
      {"wrappers",
       {"Bool true", "Int -1", "Int -2", "Int 3", "Int 1099511627776", "Real 1.500000", "Char c"}},
      {"arrays", {"Int [1,2]", "String [a,-]", "null", "Int [[1,2],[3,4]]", "null", "String end"}},
      {"a null", {"status 13"}},
      {"code", {"Object I", "Object [-,-]", "Int [0,0]", "Object [-,-]", "Object [[-],[-]]"}},
      {"foreign", {"Object beans.Point"}},
  };
  for (const auto& [what, items] : cases) {
    const CallOutcome made = MakeCollection(what);
    ASSERT_NE(made.Object(), nullptr) << what;
    const JniReferenceTracker tracker(Env());
    EXPECT_EQ(Elements(*made.Object()), items) << what;
    EXPECT_GT(tracker.GlobalsMade(), 0) << what;
    EXPECT_EQ(tracker.Left(), 0) << what;
  }
}

TEST_F(CollectionTest, ElementsAreCalledAndWalkedInTheirTurn) {
  const CallOutcome nested = MakeCollection("nested");
  Walk outer(*nested.Object());
  ASSERT_EQ(outer.Open(), kDone);
  ASSERT_EQ(outer.Rest().size(), 3U);
  EXPECT_THAT(Elements(outer.Object(0)), ElementsAre("Int 1", "Int 2"));
  EXPECT_THAT(Elements(outer.Object(1)), ElementsAre());
  Walk inner(outer.Object(2));
  ASSERT_EQ(inner.Open(), kDone);
  EXPECT_THAT(inner.Rest(), ElementsAre("String a", "Object java.util.ArrayList"));
  EXPECT_THAT(Elements(inner.Object(1)), ElementsAre("Bool true"));

  for (const auto& [what, method, text] : {std::tuple{"entries", "toString", "String a=1"},
                                           {"foreign", "toString", "String (0, 0)"}}) {
    const CallOutcome made = MakeCollection(what);
    Walk walk(*made.Object());
    ASSERT_EQ(walk.Open(), kDone);
    ASSERT_EQ(walk.Next(), kDone);
    EXPECT_EQ(Answer(walk.Object(0), method, "java.lang.String"), text);
  }
}

TEST_F(CollectionTest, AWalkGivesTheRestOnceAndStartsAnewAfterAReset) {
  Handler& strings = Make("beans.ThreeStrings");
  const std::vector<std::string> all = {"String one", "String two", "String three"};
  Walk walk(strings);
  ASSERT_EQ(walk.Open(), kDone);
  EXPECT_EQ(walk.Rest(), all);
  EXPECT_EQ(walk.Open(), kDone) << "an open walk is kept";
  EXPECT_THAT(walk.Rest(), ElementsAre());
  const std::pair<int, std::vector<std::string>> skips[] = {
      {0, all}, {-1, all}, {2, {"String three"}}, {3, {}}, {4, {}}, {2147483647, {}},
  };
  for (const auto& [count, rest] : skips) {
    ASSERT_EQ(walk.Reset(), kDone);
    EXPECT_EQ(walk.Skip(count), kDone) << count;
    EXPECT_EQ(walk.Rest(), rest) << count;
  }
}

TEST_F(CollectionTest, WhatIsNoCollectionIsNotOpened) {
  std::vector<CallOutcome> made;
  std::vector<Handler*> handlers = {&NewHandler(), &Make("beans.Point"), &MakeBroken("iterator"),
                                    &MakeBroken("no iterator")};
  for (const char* const what : {"no size", "no iterator", "other iterator"}) {
    made.push_back(MakeCollection(what));
    handlers.push_back(made.back().Object());
  }
  for (Handler* const handler : handlers) {
    const JniReferenceTracker tracker(Env());
    Walk walk(*handler);
    EXPECT_EQ(walk.Open(), kNone);
    EXPECT_FALSE(walk.IsOpen());
    EXPECT_EQ(tracker.Left(), 0);
  }
}

TEST_F(CollectionTest, WithoutAWalkEveryOperationFails) {
  Walk walk(Make("beans.ThreeStrings"));
  int size = -5;
  const auto expectClosed = [&] {
    EXPECT_EQ(walk.Reset(), kNone);
    EXPECT_EQ(walk.Next(), kNone);
    EXPECT_EQ(walk.Skip(0), kNone);
    EXPECT_EQ(walk.Size(size), kNone);
    EXPECT_EQ(walk.Close(), kNone);
  };
  expectClosed();
  EXPECT_EQ(size, -5);
  ASSERT_EQ(walk.Open(), kDone);
  EXPECT_EQ(walk.Size(size), kDone);
  EXPECT_EQ(size, 3);
  EXPECT_EQ(walk.Close(), kDone);
  expectClosed();
}

TEST_F(CollectionTest, APartThatMisbehavesEndsTheWalkAndNothingElse) {
  struct Case {
    const char* part;
    int element;
    std::vector<std::string> rest;
    std::vector<std::string> restAfterTwo;  // after passing over two elements
    int size;
  };
  const std::vector<std::string> all(4, "String good");
  const std::vector<std::string> two(2, "String good");
  const std::vector<std::string> failed = {"status 13"};
  const Case cases[] = {
      {"", 0, all, two, 4},
      {"size", 0, all, two, 0},
      {"lying size", 0, all, two, -1000},
      {"hasNext", 0, failed, failed, 4},
      {"hasNext", 2, failed, failed, 4},
      {"hasNext", 4, failed, failed, 4},
      {"next", 0, failed, {3, "String good"}, 4},
      {"next", 2, failed, failed, 4},
      {"null", 0, failed, {3, "String good"}, 4},
      {"null", 1, failed, two, 4},
      {"null", 3, failed, failed, 4},
  };
  for (const Case& c : cases) {
    Handler& broken = MakeBroken(c.part, c.element);
    const JniReferenceTracker tracker(Env());
    Walk walk(broken);
    ASSERT_EQ(walk.Open(), kDone) << c.part;
    int size = -5;
    EXPECT_EQ(walk.Size(size), kDone);
    EXPECT_EQ(size, c.size) << c.part;
    EXPECT_EQ(walk.Rest(), c.rest) << c.part << c.element;
    EXPECT_EQ(walk.Reset(), kDone);
    EXPECT_EQ(walk.Skip(2), kDone) << c.part << c.element;
    EXPECT_EQ(walk.Rest(), c.restAfterTwo) << c.part << c.element;
    EXPECT_EQ(walk.Close(), kDone);
    walk.Forget();
    EXPECT_EQ(tracker.Left(), 0) << c.part;
  }
}

TEST_F(CollectionTest, ACollectionThatBreaksOrChangesLaterFailsUntilItsReset) {
  Handler& broken = Make("beans.BrokenCollection");
  Walk walk(broken);
  ASSERT_EQ(walk.Open(), kDone);
  Break(broken, "iterator");
  EXPECT_EQ(walk.Reset(), kNone);
  EXPECT_TRUE(walk.IsOpen());
  EXPECT_EQ(walk.Next(), kNone);
  EXPECT_EQ(walk.Skip(1), kNone);
  int size = -5;
  EXPECT_EQ(walk.Size(size), kDone);
  EXPECT_EQ(size, 0) << "without an iterator there is no size either";
  Break(broken, "");
  EXPECT_EQ(walk.Reset(), kDone);
  EXPECT_EQ(walk.Rest().size(), 4U);

  Handler& strings = Make("beans.ThreeStrings");
  Walk changed(strings);
  ASSERT_EQ(changed.Open(), kDone);
  EXPECT_EQ(Call(strings, "trimToSize", "void").status, kDone);
  EXPECT_EQ(changed.Next(), kNone);
  EXPECT_EQ(changed.Reset(), kDone);
  EXPECT_EQ(changed.Rest().size(), 3U);
}

TEST_F(CollectionTest, OpenWalksAndCallsShareOneAttach) {
  Handler& strings = Make("beans.ThreeStrings");
  Handler& point = Make("beans.Point");
  std::thread([&strings, &point] {
    const auto isAttached = [] {
      void* env = nullptr;
      return TestVm::Get()->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK;
    };
    Walk first(strings);
    Walk second(strings);
    Walk none(point);
    meta_object::context::MethodCallContext call;
    EXPECT_EQ(point.CloseMethodCall(call), kDone) << "nothing to undo";
    EXPECT_EQ(none.Open(), kNone);
    EXPECT_FALSE(isAttached()) << "a failed open leaves nothing";
    ASSERT_EQ(first.Open(), kDone);
    EXPECT_EQ(first.Open(), kDone) << "opened twice, attached once";
    EXPECT_EQ(first.Next(), kDone);
    EXPECT_EQ(first.Reset(), kDone);
    ASSERT_EQ(second.Open(), kDone);
    EXPECT_EQ(first.Close(), kDone);
    EXPECT_TRUE(isAttached());
    EXPECT_EQ(point.OpenMethodCall(call, WideString("Invoke:getX:0")), kDone);
    EXPECT_EQ(second.Next(), kDone);
    EXPECT_EQ(second.Close(), kDone);
    EXPECT_TRUE(isAttached()) << "the call is open still";
    EXPECT_EQ(point.CloseMethodCall(call), kDone);
    EXPECT_FALSE(isAttached());
    EXPECT_EQ(point.CloseMethodCall(call), kDone) << "undone already";
    EXPECT_EQ(second.Close(), kNone);
  }).join();
}

TEST_F(CollectionTest, AMillionElementsKeepNoReferences) {
  constexpr int kElements = 1000000;
  const CallOutcome made = Call(Make("beans.CollectionMaker"), "makeLong", "java.lang.Object",
                                ValuesOf({{"int", std::to_wstring(kElements)}}));
  const JniReferenceTracker tracker(Env());
  Walk walk(*made.Object());
  ASSERT_EQ(walk.Open(), kDone);
  const std::vector<std::string> items = walk.Rest();
  ASSERT_EQ(items.size(), static_cast<std::size_t>(kElements));
  EXPECT_EQ(items[kElements - 1], "Int 999999");
  EXPECT_EQ(items[kElements - 2], "Int [999998]");
  EXPECT_EQ(items[kElements - 3], "String text");
  EXPECT_EQ(walk.Reset(), kDone);
  EXPECT_EQ(walk.Skip(kElements - 1), kDone);
  EXPECT_THAT(walk.Rest(), ElementsAre("Int 999999"));
  EXPECT_EQ(walk.Close(), kDone);
  EXPECT_GT(tracker.LocalsMade(), 2 * kElements);
  EXPECT_GE(tracker.GlobalsMade(), kElements);
  EXPECT_LE(tracker.MostLocals(), 8);
  EXPECT_EQ(tracker.Left(), 0);
}

}  // namespace
}  // namespace quenlatrix::test
