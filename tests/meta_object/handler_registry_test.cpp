#include "meta_object/handler_registry.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "tests/support/files.h"

namespace quenlatrix::meta_object {
namespace {

using testing::ElementsAre;
using testing::Pair;
using Texts = std::vector<std::string>;

// An installation whose registry is a real file.
class HandlerRegistryTest : public testing::Test {
 protected:
  HandlerRegistryTest() {
    std::filesystem::create_directory(root / "Configuration");
    setenv("QUENLATRIX_PATH", root.c_str(), 1);
  }

  void WriteRegistry(const std::string& text) const {
    std::ofstream(root / "Configuration" / "handlers.ini") << text;
  }

  static Texts NamesIn(Handler::Enum& registry) {
    Texts names;
    for (const auto* entry = registry.GetFirst(true); entry; entry = registry.GetNext()) {
      names.emplace_back(entry->handlerName.GetTextEx());
    }
    return names;
  }

  const TemporaryDirectory directory;
  const std::filesystem::path& root = directory.path;
};

TEST_F(HandlerRegistryTest, AnEntryHoldsWhatItsStanzaSaysAndItsCloneOutlivesIt) {
  WriteRegistry(
      "[Handlers]\nFoo=\n\n[Foo]\nShortName=F\nServerPath=lib/foo.so\nColor=red\nLoadHandler=1\n"
      "Description=Of foos = bars\nSupportsScanning=y\nshortname=g\nColor=blue\n");
  Handler::Enum registry;
  const Handler::EnumInfo* entry = registry.GetFirst(false);
  ASSERT_NE(entry, nullptr);
  const std::unique_ptr<Handler::EnumInfo> foo(entry->CloneHandlerInfo());
  registry.ResetObjectHandlerEnum();
  EXPECT_STREQ(foo->handlerName.GetTextEx(), "Foo");
  EXPECT_STREQ(foo->shortName.GetTextEx(), "F");
  EXPECT_STREQ(foo->serverPath.GetTextEx(), "lib/foo.so");
  EXPECT_STREQ(foo->description.GetTextEx(), "Of foos = bars");
  EXPECT_TRUE(foo->loadHandler);
  EXPECT_TRUE(foo->supportsScanning);
  std::vector<std::pair<std::string, std::string>> attributes;
  for (const auto& attribute : foo->attributes) {
    EXPECT_STREQ(attribute->handlerName.GetTextEx(), "Foo");
    attributes.emplace_back(attribute->key.GetTextEx(), attribute->value.GetTextEx());
  }
  EXPECT_THAT(attributes,
              ElementsAre(Pair("Color", "red"), Pair("shortname", "g"), Pair("Color", "blue")));
  EXPECT_STREQ(foo->GetHandlerAttrbiute("Color"), "red");
  for (const char* key : {"", "color", "ShortName", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(foo->GetHandlerAttrbiute(key), nullptr);
  }
}

TEST_F(HandlerRegistryTest, ASwitchIsOnForYesTrueOneAndNothing) {
  const std::pair<const char*, bool> cases[] = {
      {"=1", true},  {"=True", true}, {"=true", true}, {"=Yes", true},
      {"=y2", true}, {"=", true},     {"=0", false},   {"=no", false},
      {"=N", false}, {"= 1", false},  {"=on", false},  {"OfAnother=1", false},
  };
  for (const auto& [value, isOn] : cases) {
    WriteRegistry(std::string("[Handlers]\nFoo=\n\n[Foo]\nLoadHandler") + value + "\n");
    Handler::Enum registry;
    EXPECT_EQ(registry.GetFirst(false)->loadHandler, isOn) << value;
  }
  config_file::ConfigFile::Stanza stanza("Foo");
  for (const char* key : {"LoadHandler", static_cast<const char*>(nullptr)}) {
    EXPECT_FALSE(IsStanzaValueTrue(&stanza, key));
    EXPECT_FALSE(IsStanzaValueTrue(nullptr, key));
  }
}

TEST_F(HandlerRegistryTest, ListsTheStanzasOfItsDirectoryUntilItIsLoadedAgain) {
  WriteRegistry("[Handlers]\nB=\nMissing=\na=\n\n[A]\nx=1\n\n[B]\nx=1\n\n[Unlisted]\nx=1\n");
  Handler::Enum registry;
  EXPECT_STREQ(registry.GetRegistryName(), "handlers.ini");
  EXPECT_TRUE(registry.IsRegistryAvailable());
  EXPECT_EQ(registry.GetNext(), nullptr);
  EXPECT_THAT(NamesIn(registry), ElementsAre("B", "A"));
  EXPECT_EQ(registry.GetNext(), nullptr) << "past the end";
  WriteRegistry("[Handlers]\nC=\n\n[C]\nx=1\n");
  EXPECT_THAT(NamesIn(registry), ElementsAre("B", "A"));
  EXPECT_TRUE(registry.LoadRegistryEntries());
  EXPECT_THAT(NamesIn(registry), ElementsAre("C"));
  registry.ResetObjectHandlerEnum();
  EXPECT_EQ(registry.GetNext(), nullptr);
  EXPECT_THAT(NamesIn(registry), ElementsAre("C"));
}

TEST(HandlerEntry, TakesWholeAttributesAndClonesThoseThatWereNotCleared) {
  Handler::EnumInfo original;
  original.AddHandlerAttribute("Foo", "Gone", "1");
  original.ClearHandlerInfo();
  EXPECT_EQ(original.GetHandlerAttrbiute("Gone"), nullptr);
  original.AddHandlerAttribute("Foo", "Color", "red");
  original.AddHandlerAttribute("Foo", nullptr, "red");
  original.AddHandlerAttribute("Foo", "Color", nullptr);
  EXPECT_EQ(original.attributes.size(), 2U) << "a place that was cleared, and one attribute";
  const std::unique_ptr<Handler::EnumInfo> clone(original.CloneHandlerInfo());
  EXPECT_EQ(clone->attributes.size(), 1U);
  EXPECT_STREQ(clone->GetHandlerAttrbiute("Color"), "red");
}

}  // namespace
}  // namespace quenlatrix::meta_object
