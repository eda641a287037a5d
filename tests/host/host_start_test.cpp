#include <gmock/gmock.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "host/host.h"
#include "host/java_vm.h"
#include "host/plugin_library.h"
#include "tests/support/files.h"
#include "tests/support/locales.h"
#include "tests/support/test_vm.h"

namespace quenlatrix::host {
namespace {

namespace fs = std::filesystem;
using test::TestVm;
using testing::HasSubstr;

TEST(JavaVm, AHomeThatHoldsNoneIsNamedWithItsReason) {
  const TemporaryDirectory empty;
  std::string why;
  EXPECT_EQ(JavaVm::Start({empty.path.string(), {}, {}}, why), nullptr);
  EXPECT_THAT(why, HasSubstr(empty.path.string() + ": no lib/server/libjvm.so"));
  EXPECT_THAT(why, HasSubstr("JAVA_HOME"));

  fs::create_directories(empty.path / "lib/server");
  std::fclose(std::fopen((empty.path / "lib/server/libjvm.so").c_str(), "w"));
  EXPECT_EQ(JavaVm::Start({empty.path.string(), {}, {}}, why), nullptr);
  EXPECT_THAT(why, HasSubstr("file too short"));
}

TEST(JavaVm, IsFoundThroughALinkOnPathWhenJavaHomeDoesNotServe) {
  const TemporaryDirectory bin;
  const fs::path home = fs::canonical(TestVm::JavaHome());
  fs::create_symlink(home / "bin/java", bin.path / "java");
  setenv("JAVA_HOME", bin.path.c_str(), 1);
  setenv("PATH", ("/no/such/directory::" + bin.path.string()).c_str(), 1);
  std::string why;
  const auto machine = JavaVm::Start({}, why);
  ASSERT_NE(machine, nullptr) << why;
  EXPECT_EQ(fs::canonical(machine->GetLibraryFile()), home / "lib/server/libjvm.so");
  ASSERT_EQ(machine->GetPlacesPassed().size(), 1U);
  EXPECT_EQ(machine->GetPlacesPassed()[0].path, bin.path);

  EXPECT_EQ(JavaVm::Start({}, why), nullptr);
  EXPECT_THAT(why, HasSubstr("only one"));
}

TEST(JavaVm, AnOptionThatItRefusesIsAFailureWithAText) {
  std::string why;
  EXPECT_EQ(JavaVm::Start({TestVm::JavaHome(), {}, {"-no-such-option"}}, why), nullptr);
  EXPECT_THAT(why, HasSubstr("Check the Java options"));
}

// In a process of its own, as CTest gives it: the locale under which a bean makes texts.
void ExpectPointAndCharacter(const char* bytes, wchar_t character) {
  std::string why;
  const auto machine = JavaVm::Start({TestVm::JavaHome(), {}, {}}, why);
  ASSERT_NE(machine, nullptr) << why;
  wchar_t wide[2] = {};
  EXPECT_EQ(std::mbstowcs(wide, bytes, 2), 1U);
  EXPECT_EQ(wide[0], character);
  EXPECT_EQ(std::strtod("1.5", nullptr), 1.5) << "a decimal point";
}

TEST(JavaVm, LeavesTheDecimalPointAndTheEnvironmentsEncoding) {
  setenv("LOCPATH", QUENLATRIX_TEST_LOCALES, 1);
  setenv("LC_ALL", singleByteCommaLocale, 1);
  ExpectPointAndCharacter("\xE4", L'\u00E4');
}

TEST(JavaVm, SpeaksUtf8WhenTheEnvironmentNamesNoLocale) {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) unsetenv(name);
  ExpectPointAndCharacter("\u20AC", L'\u20AC');
}

TEST(PluginLibrary, WhatIsNoPluginIsRefusedWithItsReason) {
  const TemporaryDirectory empty;
  const std::pair<std::string, const char*> cases[] = {
      {(empty.path / "javabean_handler.so").string(), "cannot open shared object file"},
      {NO_PLUGIN, "lacks SetEnvironment, SetJavaVM, GetHandlerInfo"},
      {OLD_PLUGIN, "version 0x00010000, this host needs 0x00020000"},
  };
  for (const auto& [file, reason] : cases) {
    std::string why;
    EXPECT_EQ(PluginLibrary::Load(file, why), nullptr);
    EXPECT_THAT(why, HasSubstr(reason));
    EXPECT_THAT(why, HasSubstr(file));
  }
}

TEST(Host, StartsNoVmForAPluginThatDoesNotServe) {
  Host::Options options;
  options.pluginFile = OLD_PLUGIN;
  options.javaHome = "/no/such/home";
  std::string why;
  EXPECT_EQ(Host::Start(options, why), nullptr);
  EXPECT_THAT(why, HasSubstr("version"));
}

}  // namespace
}  // namespace quenlatrix::host
