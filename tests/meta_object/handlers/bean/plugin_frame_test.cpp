#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <cwchar>
#include <fstream>
#include <iterator>
#include <set>
#include <thread>

#include "tests/meta_object/handlers/bean/plugin_fixture.h"
#include "tests/support/patched_jni.h"

namespace quenlatrix::test {
namespace {

namespace status = meta_object::handler_status;
using meta_object::Environment;
using meta_object::Handler;
using meta_object::info::HandlerInfo;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// The names that a shared library defines for others.
std::set<std::string> ExportedNames(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string image{std::istreambuf_iterator<char>(file), {}};
  const auto* const header = reinterpret_cast<const ElfW(Ehdr)*>(image.data());
  const auto* const sections = reinterpret_cast<const ElfW(Shdr)*>(image.data() + header->e_shoff);
  std::set<std::string> names;
  for (unsigned int i = 0; i < header->e_shnum; ++i) {
    if (sections[i].sh_type != SHT_DYNSYM) {
      continue;
    }
    const char* const texts = image.data() + sections[sections[i].sh_link].sh_offset;
    const auto* const symbols =
        reinterpret_cast<const ElfW(Sym)*>(image.data() + sections[i].sh_offset);
    for (std::size_t s = 0; s < sections[i].sh_size / sizeof(ElfW(Sym)); ++s) {
      if (symbols[s].st_shndx != SHN_UNDEF) {
        names.insert(texts + symbols[s].st_name);
      }
    }
  }
  return names;
}

bool IsLoaded() {
  void* const handle = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) {
    dlclose(handle);
  }
  return handle != nullptr;
}

struct Entries {
  explicit Entries(const PluginImage& image)
      : SetEnvironment(image.Get<void(Environment*)>("SetEnvironment")),
        SetJavaVM(image.Get<void(JavaVM*)>("SetJavaVM")),
        InitHandler(image.Get<bool(void*)>("InitHandler")),
        GetHandlerInfo(image.Get<HandlerInfo*()>("GetHandlerInfo")),
        GetHandlerObject(image.Get<Handler*()>("GetHandlerObject")),
        FreeHandlerObject(image.Get<void(Handler*)>("FreeHandlerObject")) {}

  void (*SetEnvironment)(Environment*);
  void (*SetJavaVM)(JavaVM*);
  bool (*InitHandler)(void*);
  HandlerInfo* (*GetHandlerInfo)();
  Handler* (*GetHandlerObject)();
  void (*FreeHandlerObject)(Handler*);
};

std::string NameOf(HandlerInfo* info) {
  const char* const name = info->GetHandlerName();
  return name == nullptr ? "" : name;
}

TEST(PluginFrame, ExportsItsTwelveNamesAndNothingElse) {
  EXPECT_THAT(ExportedNames(PLUGIN_FILE),
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
  const Entries entry(image);
  EXPECT_FALSE(entry.InitHandler(image.Handle())) << "no environment yet";
  Handler* const unregistered = entry.GetHandlerObject();
  ASSERT_NE(unregistered, nullptr);
  entry.FreeHandlerObject(unregistered);
  entry.FreeHandlerObject(nullptr);

  entry.SetEnvironment(nullptr);
  entry.SetEnvironment(&first.environment);
  entry.SetEnvironment(&second.environment);
  EXPECT_EQ(*image.Get<Environment*>("_pEnvironment"), &first.environment);
  EXPECT_FALSE(entry.InitHandler(nullptr));
  EXPECT_EQ(NameOf(entry.GetHandlerInfo()), "");

  ASSERT_TRUE(entry.InitHandler(image.Handle()));
  HandlerInfo* const info = entry.GetHandlerInfo();
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

  entry.SetJavaVM(TestVm::Get());
  EXPECT_FALSE(entry.InitHandler(image.Handle())) << "too late";
  EXPECT_EQ(NameOf(info), "Java Bean Object Handler");
  Handler* const handler = entry.GetHandlerObject();
  EXPECT_THAT(first.registered, ElementsAre(handler));
  EXPECT_THAT(first.owners, ElementsAre(image.Handle()));
  EXPECT_THAT(second.registered, IsEmpty());
  EXPECT_EQ(handler->GetReferenceCount(), 1U);
  EXPECT_EQ(handler->GetHandlerInfo(), info);
  entry.FreeHandlerObject(handler);
}

TEST(PluginFrame, UnloadsWholeAndStartsAnewAtTheNextLoad) {
  for (int round = 0; round < 3; ++round) {
    TestHost host;
    {
      const PluginImage image;
      const Entries entry(image);
      EXPECT_EQ(*image.Get<Environment*>("_pEnvironment"), nullptr);
      EXPECT_EQ(NameOf(entry.GetHandlerInfo()), "");
      entry.SetEnvironment(&host.environment);
      EXPECT_TRUE(entry.InitHandler(image.Handle()));
      entry.SetJavaVM(TestVm::Get());
      std::thread([&entry] {
        Handler* const bean = entry.GetHandlerObject();
        EXPECT_EQ(bean->CreateObject("JAVABEAN://beans.Point", nullptr), 0U);
        EXPECT_EQ(bean->Release(), status::kLastReferenceReleased);
        entry.FreeHandlerObject(bean);
      }).join();
      EXPECT_TRUE(IsLoaded());
    }
    EXPECT_FALSE(IsLoaded()) << "round " << round;
  }
}

class PluginFrameTest : public PluginTest {};

int attaches = 0;
int detaches = 0;

TEST_F(PluginFrameTest, OnlyTheOutermostDetachDetaches) {
  Handler& bean = Make("beans.ScalarEcho");
  PatchedVm patch(TestVm::Get());
  static const JNIInvokeInterface_* const original = &patch.Original();
  patch.Table().AttachCurrentThread = [](JavaVM* vm, void** env, void* arguments) {
    ++attaches;
    return original->AttachCurrentThread(vm, env, arguments);
  };
  patch.Table().DetachCurrentThread = [](JavaVM* vm) {
    ++detaches;
    return original->DetachCurrentThread(vm);
  };
  std::thread([&bean] {
    meta_object::context::MethodCallContext outer;
    meta_object::context::MethodCallContext inner;
    bean.CloseMethodCall(outer);
    EXPECT_EQ(attaches + detaches, 0) << "nothing to undo";
    bean.OpenMethodCall(outer, WideString("Invoke:nothing:0"));
    bean.OpenMethodCall(inner, WideString("Invoke:nothing:0"));
    EXPECT_EQ(attaches, 2) << "on every call";
    bean.CloseMethodCall(inner);
    EXPECT_EQ(inner.call, nullptr);
    EXPECT_EQ(detaches, 0);
    meta_object::MethodInvokeStatus record;
    meta_object::type::Object* result = nullptr;
    EXPECT_EQ(bean.InvokeMethod(inner, record, &result), status::kCallFailed) << "closed";
    EXPECT_EQ(bean.InvokeMethod(outer, record, &result), 0U) << "still attached";
    bean.Release(result);
    bean.CloseMethodCall(outer);
    EXPECT_EQ(detaches, 1);
    EXPECT_EQ(bean.CloseMethodCall(outer), 0U);
    EXPECT_EQ(detaches, 1);
  }).join();
}

TEST_F(PluginFrameTest, AsksACacheThatIsNotWholeForNothing) {
  void (*const takeAway[])(Environment&) = {
      [](Environment& e) { e.hostContext = nullptr; },
      [](Environment& e) { e.cacheOpenIntrospect = nullptr; },
      [](Environment& e) { e.cacheIntrospectDone = nullptr; },
      [](Environment& e) { e.cacheCloseIntrospect = nullptr; },
      [](Environment& e) { e.cacheAddMethodInfo = nullptr; },
      [](Environment& e) { e.cacheGetMethodInfo = nullptr; },
      [](Environment& e) { e.cacheGetObjectInfo = nullptr; },
  };
  Handler& bean = Make("beans.Point");
  host.log.clear();
  TestHost fresh;
  for (auto* const take : takeAway) {
    take(host.environment);
    EXPECT_EQ(bean.OpenIntrospect(nullptr), status::kIntrospectionFailed);
    EXPECT_EQ(bean.CloseIntrospect(), 0U);
    std::list<WideString>* ids = nullptr;
    EXPECT_EQ(bean.GetMethodIDs(ids), status::kIntrospectionFailed);
    EXPECT_EQ(ids, nullptr);
    EXPECT_EQ(bean.GetMethodCount(), 0U);
    host.environment.hostContext = &host;
    host.environment.cacheOpenIntrospect = fresh.environment.cacheOpenIntrospect;
    host.environment.cacheIntrospectDone = fresh.environment.cacheIntrospectDone;
    host.environment.cacheCloseIntrospect = fresh.environment.cacheCloseIntrospect;
    host.environment.cacheAddMethodInfo = fresh.environment.cacheAddMethodInfo;
    host.environment.cacheGetMethodInfo = fresh.environment.cacheGetMethodInfo;
    host.environment.cacheGetObjectInfo = fresh.environment.cacheGetObjectInfo;
  }
  EXPECT_THAT(host.log, IsEmpty());
}

}  // namespace
}  // namespace quenlatrix::test
