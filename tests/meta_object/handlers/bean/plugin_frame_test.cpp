#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <tuple>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/locales.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Environment;
using meta_object::Handler;
using meta_object::info::HandlerInfo;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

// The names that the plug-in defines for others.
std::vector<std::string> ExportedNames() {
  FILE* const nm = popen("nm --dynamic --defined-only --format=just-symbols " PLUGIN_FILE, "r");
  std::vector<std::string> names;
  for (char line[200]; std::fgets(line, sizeof line, nm) != nullptr;) {
    names.emplace_back(line, std::strcspn(line, "\n"));
  }
  EXPECT_EQ(pclose(nm), 0);
  return names;
}

std::string NameOf(HandlerInfo* info) {
  const char* const name = info->GetHandlerName();
  return name == nullptr ? "" : name;
}

TEST(PluginFrame, ExportsItsTwelveNamesAndNothingElse) {
  EXPECT_THAT(ExportedNames(),
              UnorderedElementsAre("SetEnvironment", "SetJavaVM", "InitHandler", "GetHandlerInfo",
                                   "GetHandlerVersion", "GetHandlerObject", "FreeHandlerObject",
                                   "CleanUpHandler", "ProcessIdle", "_HandlerInfo", "_pEnvironment",
                                   "wcstol"));
}

TEST(PluginFrame, LeavesTheHostsWcstolAlone) {
  const PluginImage image;
  auto* const exported = image.Get<long(const wchar_t*, wchar_t**, int)>("wcstol");
  Dl_info place;
  ASSERT_NE(dladdr(reinterpret_cast<void*>(exported), &place), 0);
  EXPECT_STREQ(place.dli_fname, PLUGIN_FILE);
  EXPECT_EQ(exported(L"-42x", nullptr, 10), -42);
  void* const hosts = dlsym(RTLD_DEFAULT, "wcstol");
  ASSERT_NE(dladdr(hosts, &place), 0);
  EXPECT_STRNE(place.dli_fname, PLUGIN_FILE);
}

TEST(PluginFrame, InitialisesOnceTheEnvironmentIsThereAndBeforeTheMachineIs) {
  TestHost first;
  TestHost second;
  const PluginImage image;
  EXPECT_FALSE(image.InitHandler(image.handle)) << "no environment yet";
  Handler* const unregistered = image.GetHandlerObject();
  ASSERT_NE(unregistered, nullptr);
  image.FreeHandlerObject(unregistered);
  image.FreeHandlerObject(nullptr);

  image.SetEnvironment(nullptr);
  image.SetEnvironment(&first.environment);
  image.SetEnvironment(&second.environment);
  EXPECT_EQ(*image.Get<Environment*>("_pEnvironment"), &first.environment);
  EXPECT_FALSE(image.InitHandler(nullptr));
  EXPECT_EQ(NameOf(image.GetHandlerInfo()), "");

  ASSERT_TRUE(image.InitHandler(image.handle));
  HandlerInfo* const info = image.GetHandlerInfo();
  EXPECT_EQ(info, image.Get<HandlerInfo>("_HandlerInfo"));
  EXPECT_STREQ(info->GetHandlerName(), "Java Bean Object Handler");
  EXPECT_STREQ(info->GetHandlerType(), "JAVABEAN");
  EXPECT_STREQ(info->GetDescription(), "Meta object native object handler plugin for Java Beans.");
  const std::string path = PLUGIN_FILE;
  EXPECT_EQ(info->GetServerPath(), path);
  EXPECT_EQ(info->GetServerDirectory(), path.substr(0, path.rfind('/')));
  EXPECT_EQ(image.Get<std::uint32_t()>("GetHandlerVersion")(), 131072U);
  EXPECT_TRUE(image.Get<bool()>("CleanUpHandler")());
  EXPECT_EQ(image.Get<int()>("ProcessIdle")(), 1);

  image.SetJavaVM(TestVm::Get());
  EXPECT_FALSE(image.InitHandler(image.handle)) << "too late";
  EXPECT_EQ(NameOf(info), "Java Bean Object Handler");
  Handler* const handler = image.GetHandlerObject();
  EXPECT_THAT(first.registered, ElementsAre(handler));
  EXPECT_THAT(first.owners, ElementsAre(image.handle));
  EXPECT_THAT(second.registered, IsEmpty());
  EXPECT_EQ(handler->GetReferenceCount(), 1U);
  EXPECT_EQ(handler->GetHandlerInfo(), info);
  image.FreeHandlerObject(handler);
}

TEST(PluginFrame, TellsItsPathInTheFilesOwnBytes) {
  namespace fs = std::filesystem;
  const LocaleScope scope(utf8Locale);
  const fs::path folder =
      fs::temp_directory_path() / ("d\xC3\xBCr" + std::to_string(getpid())) / "\xC3\xA9";
  fs::create_directories(folder);
  fs::copy_file(PLUGIN_FILE, folder / "plugin.so");
  {
    TestHost host;
    PluginImage image((folder / "plugin.so").c_str());
    image.SetEnvironment(&host.environment);
    ASSERT_TRUE(image.InitHandler(image.handle));
    EXPECT_EQ(image.GetHandlerInfo()->GetServerPath(), (folder / "plugin.so").native());
    EXPECT_EQ(image.GetHandlerInfo()->GetServerDirectory(), folder.native());
    const meta_object::info::HandlerInfo copy(*image.GetHandlerInfo());
    EXPECT_EQ(copy.GetServerDirectory(), folder.native());
  }
  fs::remove_all(folder.parent_path());
}

class PluginFrameTest : public PluginTest {};

// The host's services; a bit for each, in this order, says which are taken away.
auto ServicesOf(Environment& environment) {
  return std::tie(environment.hostContext, environment.cacheOpenIntrospect,
                  environment.cacheAddMethodInfo, environment.cacheGetObjectInfo,
                  environment.cacheIntrospectDone, environment.cacheCloseIntrospect,
                  environment.cacheGetMethodInfo, environment.gcRegHandlerObject,
                  environment.checkSecurity);
}
constexpr unsigned int kContext = 1, kOpen = 2, kAdd = 4, kObject = 8, kDone = 16, kCache = 127,
                       kCollector = 128, kSecurity = 256, kServices = 512;

template <class Result, class... Arguments>
void TakeAway(Result (*&callback)(Arguments...), bool isMissing) {
  callback = isMissing ? nullptr : +[](Arguments...) { return Result(); };
}
void TakeAway(void*& context, bool isMissing) {
  if (isMissing) context = nullptr;
}

TEST_F(PluginFrameTest, AnswersAsPromisedWhicheverServicesAreMissingOrSayNo) {
  auto services = ServicesOf(host.environment);
  const auto whole = std::apply([](auto... field) { return std::tuple(field...); }, services);
  for (unsigned int bits = 0; bits < 2 * kServices; ++bits) {
    const bool isMissing = bits < kServices;
    const auto lacks = [bits](unsigned int lacking) { return (bits & lacking) != 0; };
    SCOPED_TRACE((isMissing ? "missing " : "saying no ") + std::to_string(bits % kServices));
    services = whole;
    host.cache.clear();
    host.log.clear();
    unsigned int bit = 1;
    std::apply(
        [&](auto&... field) {
          ((lacks(bit) ? TakeAway(field, isMissing) : void(), bit *= 2), ...);
        },
        services);
    const std::size_t known = host.registered.size();
    Handler& bean = NewHandler();
    const bool isKnown = !lacks(kCollector) && !(isMissing && lacks(kContext));
    EXPECT_EQ(host.registered.size() - known, isKnown ? 1U : 0U);

    const bool isMade = isMissing || !lacks(kSecurity);
    EXPECT_EQ(bean.CreateObject("JAVABEAN://beans.Point", nullptr),
              isMade ? status::kSuccess : status::kRefused);
    const bool isCached = isMade && !(isMissing && lacks(kCache)) && !lacks(kOpen);
    EXPECT_EQ(bean.OpenIntrospect(nullptr), !isMade ? status::kInvalidIdentity
                                            : isCached && !lacks(kDone)
                                                ? status::kSuccess
                                                : status::kIntrospectionFailed);
    EXPECT_EQ(bean.CloseIntrospect(), 0U);
    const bool isListed = isCached && !lacks(kAdd | kObject);
    std::list<WideString>* ids = nullptr;
    EXPECT_EQ(bean.GetMethodIDs(ids), isListed ? status::kSuccess : status::kIntrospectionFailed);
    EXPECT_EQ(ids != nullptr, isListed);
    EXPECT_EQ(bean.GetMethodCount() > 0, isListed);
    bean.Release(ids);
    if (isMissing && lacks(kCache)) {
      EXPECT_THAT(host.log, Each(StartsWith("may "))) << "asked a cache that is not whole";
    }
    EXPECT_EQ(Answer(bean, "getX", "int"),
              isMade ? "Int 0" : "failed: JavaBean method call failed");
    EXPECT_EQ(bean.Release(), status::kLastReferenceReleased);
    if (!isKnown) plugin->FreeHandlerObject(&bean);
  }
  services = whole;
}

}  // namespace
}  // namespace quenlatrix::test
