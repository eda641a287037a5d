#include "meta_object/environment.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "meta_object/info/cached_method_info.h"
#include "tests/meta_object/test_handler.h"

namespace quenlatrix::meta_object {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsNull;

// The host's side: its context is the list of the calls that it got.
using Calls = std::vector<std::string>;

using info::cache::CachedMethodInfo;
const CachedMethodInfo cachedMethod;
const info::cache::CachedObjectInfo cachedObject;

bool Note(void* hostContext, const std::string& call) {
  static_cast<Calls*>(hostContext)->push_back(call);
  return true;
}

void Connect(Environment& environment, Calls& calls) {
  environment.hostContext = &calls;
  environment.cacheOpenIntrospect = [](void* host, const Identity& identity, bool& must) {
    return must = Note(host, "open " + identity.handlerData);
  };
  environment.cacheIntrospectDone = [](void* host, const Identity&, bool succeeded) {
    return Note(host, "done") && succeeded;
  };
  environment.cacheCloseIntrospect = [](void* host, const Identity&) {
    return Note(host, "close");
  };
  environment.cacheAddMethodInfo = [](void* host, const Identity&, const CachedMethodInfo& method) {
    return Note(host, "add") && &method == &cachedMethod;
  };
  environment.cacheGetMethodInfo = [](void* host, const Identity&, const char* methodId) {
    return Note(host, std::string("method ") + methodId) ? &cachedMethod : nullptr;
  };
  environment.cacheGetObjectInfo = [](void* host, const Identity&) {
    return Note(host, "object") ? &cachedObject : nullptr;
  };
  environment.gcRegHandlerObject = [](void* host, Handler*, const void*) { Note(host, "collect"); };
  environment.checkSecurity = [](info::SecurityInfo*) { return true; };
}

// How many of the six cache operations, and of what they fill, succeed.
int Successes(const Environment& environment) {
  const Identity identity("A://B");
  bool must = false;
  return (environment.CacheOpenIntrospect(identity, must) ? 1 : 0) + (must ? 1 : 0) +
         (environment.CacheIntrospectDone(identity, true) ? 1 : 0) +
         (environment.CacheCloseIntrospect(identity) ? 1 : 0) +
         (environment.CacheAddMethodInfo(identity, cachedMethod) ? 1 : 0) +
         (environment.CacheGetMethodInfo(identity, "m") == &cachedMethod ? 1 : 0) +
         (environment.CacheGetObjectInfo(identity) == &cachedObject ? 1 : 0);
}

TEST(Environment, CallsAHostWhoseCacheIsWholeAndNoOther) {
  Environment environment;
  Calls calls;
  Connect(environment, calls);
  EXPECT_TRUE(environment.IsMethodCacheSupported());
  EXPECT_EQ(Successes(environment), 7);
  EXPECT_THAT(calls, ElementsAre("open B", "done", "close", "add", "method m", "object"));
  calls.clear();
  environment.cacheGetObjectInfo = nullptr;
  EXPECT_FALSE(environment.IsMethodCacheSupported());
  EXPECT_EQ(Successes(environment), 0);
  EXPECT_THAT(calls, IsEmpty());
  environment.GCRegHandlerObject(nullptr, nullptr);
  EXPECT_THAT(calls, ElementsAre("collect"));
}

void AddAttribute(Environment& environment, const char* handler, const char* key,
                  const char* value) {
  environment.attributes.push_back(std::make_unique<Handler::Attribute>(handler, key, value));
}

TEST(Environment, FindsAnAttributeByKeyAndHandler) {
  Environment environment;
  environment.attributes.push_back(nullptr);
  AddAttribute(environment, "first", "k", "1");
  AddAttribute(environment, "second", "k", "2");
  AddAttribute(environment, "second", "empty", "");
  EXPECT_STREQ(environment.GetAttribute("k", nullptr), "1");
  EXPECT_STREQ(environment.GetAttribute("k", "second"), "2");
  EXPECT_STREQ(environment.GetAttribute("empty", nullptr), "");
  EXPECT_THAT(environment.GetAttribute("K", nullptr), IsNull());
  EXPECT_THAT(environment.GetAttribute("k", "SECOND"), IsNull());
  EXPECT_THAT(environment.GetAttribute(nullptr, "first"), IsNull());
}

TEST(Environment, CopiesTextsAttributesAndPolicyButNotTheHost) {
  Environment source;
  Calls calls;
  Connect(source, calls);
  source.textList.emplace_back("text");
  source.firstWideText = WideString("one");
  source.secondWideText = WideString("two");
  source.attributes.push_back(nullptr);
  AddAttribute(source, "h", "k", "v");

  Environment target;
  Connect(target, calls);
  target.hostFlag = true;
  target.checkSecurity = nullptr;
  AddAttribute(target, "h", "old", "v");
  target = source;
  source.Clear();
  EXPECT_EQ(target.attributes.size(), 1U);
  EXPECT_STREQ(target.GetAttribute("k", "h"), "v");
  EXPECT_EQ(target.textList.size(), 1U);
  EXPECT_STREQ(target.firstWideText.getCharPtr(), "one");
  EXPECT_STREQ(target.secondWideText.getCharPtr(), "two");
  EXPECT_TRUE(target.hostFlag);
  EXPECT_THAT(source.attributes, IsEmpty());
  for (const Environment* cleared : {&source, &target}) {
    EXPECT_THAT(cleared->hostContext, IsNull());
    EXPECT_EQ(cleared->cacheOpenIntrospect, nullptr);
    EXPECT_EQ(cleared->gcRegHandlerObject, nullptr);
    EXPECT_NE(cleared->checkSecurity, nullptr);
  }
}

}  // namespace
}  // namespace quenlatrix::meta_object
