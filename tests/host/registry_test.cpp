// What a host serves by the registry of its installation, and what it says of the rest.
#include <dlfcn.h>

#include "host/utf8.h"
#include "tests/host/beanhost_cli.h"
#include "tests/host/test_host.h"

namespace quenlatrix::host {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr const char* kBean =
    "[Bean]\nShortName=JB\nDescription=Java Beans\nServerPath=" PLUGIN_FILE
    "\nLoadHandler=1\nSupportsScanning=1\nColor=red\nColor=blue\n\n";
constexpr const char* kOff = "[Off%s]\nShortName=O\nServerPath=" PLUGIN_FILE "\nLoadHandler=0\n\n";
constexpr const char* kBroken = "[100%s]\nServerPath=lib/none.so\nLoadHandler=Yes\n\n";
constexpr const char* kProbe =
    "[Probe]\nServerPath=" PROBE_PLUGIN "\nLoadHandler=1\nColor=green\n\n";

class RegistryCli : public BeanhostCli {
 protected:
  // Makes the test's directory an installation with this registry.
  void Install(const std::string& registry) {
    file = directory / "Configuration" / "handlers.ini";
    fs::create_directory(file.parent_path());
    std::ofstream(file) << registry;
    setenv("QUENLATRIX_PATH", directory.c_str(), 1);
  }

  // The lines of the event log, without their prefixes' process and time.
  std::string Events() const {
    std::string events;
    for (const std::string& line : LinesOf(ReadFile(directory / "log"))) {
      events += line.substr(line.find(']') + 22) + "\n";
    }
    return events;
  }

  fs::path file;
};

TEST_F(RegistryCli, ListsEachHandlerWithItsVerdict) {
  Install(std::string("[Handlers]\nBean=\nOff%s=\n100%s=\nTwin=\n\n") + kBean + kOff + kBroken +
          "[Twin]\nServerPath=" PLUGIN_FILE "\nLoadHandler=1\n");
  const std::string none = directory / "lib/none.so";
  setenv("JAVA_HOME", "/no/such/home", 1);
  const ProgramRun run = Start({"handlers"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, file.string() +
                         "\nBean (JB): Java Beans\n"
                         "  used: serves JAVABEAN from " PLUGIN_FILE
                         "\nOff%s (O)\n"
                         "  not used: disabled by LoadHandler; LoadHandler=1 in its stanza "
                         "enables it\n100%s\n  not used: it cannot be loaded: " +
                         none +
                         ": cannot open shared object file: No such file or directory\nTwin\n"
                         "  not used: the handler type JAVABEAN is served already, by " PLUGIN_FILE
                         "\n");

  const json handlers = json::parse(Start({"--json", "handlers"}).out)["handlers"];
  ASSERT_EQ(handlers.size(), 4U);
  EXPECT_EQ(handlers[0], (json{{"name", "Bean"},
                               {"shortName", "JB"},
                               {"description", "Java Beans"},
                               {"serverPath", PLUGIN_FILE},
                               {"load", true},
                               {"supportsScanning", true},
                               {"attributes", {{"Color", "red"}}},
                               {"used", true},
                               {"why", "serves JAVABEAN from " PLUGIN_FILE}}));
  EXPECT_EQ(handlers[1]["load"], false);

  const ProgramRun overruled = Start({"handlers", "--plugin", PROBE_PLUGIN});
  EXPECT_EQ(overruled.status, 0);
  EXPECT_THAT(overruled.out,
              AllOf(HasSubstr("Beans\n  not used: overruled by --plugin " PROBE_PLUGIN),
                    EndsWith("\n--plugin " PROBE_PLUGIN "\n  used: serves PROBE\n")));
}

TEST_F(RegistryCli, KeepsEventsInAFile) {
  Install(std::string("[Handlers]\nOff%s=\nSilent=\n100%s=\nBean=\n\n") + kBean + kOff + kBroken +
          "[Silent]\nServerPath=" PLUGIN_FILE "\n");
  const std::string log = directory / "log";
  const std::string script =
      "new no no.Such%s%n\nnew denied java.util.TreeSet\n"
      "new t beans.ThrowingMethods\ncall t checked \"two\\nlines%s\"\n";
  Script(script, {"--event-log", log, "--keep-going", "--deny", "java.util.*"});
  EXPECT_THAT(
      Events(),
      MatchesRegex(
          "START      INFO     beanhost starts: run\n"
          "START      INFO     Off%s Handler: LoadHandler in handlers.ini is set to 0\n"
          "START      INFO     Off%s Handler: Administratively Disabled\n"
          "CONFIG     ERROR    100%s Handler: not loaded: it cannot be loaded: .*\n"
          "START      INFO     beanhost serves JAVABEAN on the Java VM .*\n"
          "RUNTIME    WARNING  no object of class no.Such%s%n could be made .*\n"
          "RUNTIME    WARNING  class java.util.TreeSet is refused: .*\n"
          "EXCEPTION  ERROR    beans.ThrowingMethods.checked failed with status 7: .*two lines%s\n"
          "STOP       INFO     beanhost stops with exit status 1\n"));
  const ProgramRun refused = Start({"--event-log", "/no/such/log", "handlers"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.err, HasSubstr("/no/such/log can't be opened: No such file or directory"));
}

TEST_F(RegistryCli, FailsWithATextAndAStopEventWhenABeanEndsTheVm) {
  for (const char* method : {"exit 0", "halt 0", "exit 3"}) {
    const fs::path log = directory / "log";
    fs::remove(log);
    const ProgramRun run = Script(std::string("new e VmEnder\ncall e ") + method + "\nsize e\n",
                                  {"--class-path", test::TestVm::Jar("hostile_beans.jar"),
                                   "--event-log", log.string(), "--json", "--keep-going"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("a bean ended the Java VM")) << method;
    EXPECT_EQ(Parsed(run.out).size(), 1U);
    EXPECT_THAT(Events(), HasSubstr("STOP       ERROR    beanhost stops with exit status 1"));
  }
}

TEST_F(RegistryCli, KeepsTheEventLogForEventsWhereStandardStreamsAreClosed) {
  const std::string command = std::string(BEANHOST_PROGRAM " --event-log ") +
                              (directory / "log").string() + " handlers >&- 2>&-";
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1) << "the list went nowhere";
  EXPECT_EQ(Events(),
            "START      INFO     beanhost starts: handlers\n"
            "STOP       INFO     beanhost stops with exit status 1\n");
}

TEST_F(RegistryCli, RunsOnWhatTheRegistryOrAnOptionNames) {
  const Words call = {"call", "examples.Greeter", "greet"};
  const Words withPlugin = {"--plugin", PLUGIN_FILE, "call", "examples.Greeter", "greet"};
  const std::string directoryStanza = "[Handlers]\nBean=\n100%s=\n\n";
  Install(directoryStanza + kBean + kBroken);
  const ProgramRun run = Host(call);
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, Host(withPlugin).out);

  const std::tuple<std::string, const char*> cases[] = {
      {directoryStanza + kBroken, "can be used:\n  100%s: it cannot be loaded: "},
      {"[Handlers]\nBean=\n[Bean]\n", " offers no handler: expected a stanza [Handlers]"},
  };
  for (const auto& [registry, why] : cases) {
    Install(registry);
    const ProgramRun failed = Host(call);
    EXPECT_EQ(failed.status, 3);
    EXPECT_THAT(failed.err, AllOf(HasSubstr(file.string()), HasSubstr(why)));
    EXPECT_EQ(Start({"handlers"}).status, 3);
    EXPECT_EQ(Host(withPlugin).status, 0) << "--plugin overrules";
  }

  setenv("QUENLATRIX_PATH", "/no/such/root", 1);
  EXPECT_EQ(Host(call).status, 0) << "the plug-in beside the program";
  const ProgramRun none = Start({"handlers"});
  EXPECT_EQ(none.status, 3);
  EXPECT_THAT(none.err, AllOf(HasSubstr("\n  /no/such/root/Configuration/handlers.ini\n"),
                              HasSubstr("Set QUENLATRIX_PATH"), HasSubstr("--plugin")));
  setenv("QUENLATRIX_PATH", ("/" + std::string(237, 'r')).c_str(), 1);
  EXPECT_THAT(Start({"handlers"}).err, HasSubstr("too long to look for handlers.ini there: "
                                                 "expected at most 237 characters"));
  unsetenv("QUENLATRIX_PATH");
  EXPECT_THAT(Start({"handlers"}).out, StartsWith(BUILD_TREE "/Configuration/handlers.ini\n"));
}

TEST_F(RegistryCli, AHostFreesWhatEachOfItsPlugInsMadeThroughItsMaker) {
  Install(std::string("[Handlers]\nProbe=\nBean=\n\n") + kBean + kProbe);
  std::unique_ptr<host::Host> host = StartHost("");
  ASSERT_NE(host, nullptr);
  void* module = dlopen(PROBE_PLUGIN, RTLD_LAZY | RTLD_NOLOAD);
  ASSERT_NE(module, nullptr);
  const auto handlersLeft = reinterpret_cast<int (*)()>(dlsym(module, "ProcessIdle"));
  ASSERT_EQ(handlersLeft(), 1) << "the host's own receiver";

  host::Host::Creation probe = host->Create("PROBE://thing?Scope=user");
  ASSERT_TRUE(probe.object.has_value()) << probe.text;
  EXPECT_EQ(probe.object->ClassName(), "PROBE://thing");
  EXPECT_EQ(probe.object->ToText(), std::nullopt);
  EXPECT_EQ(probe.object->SupertypesOfClass(), nullptr);
  ASSERT_NE(probe.object->Methods(), nullptr);
  EXPECT_EQ(ToUtf8(probe.object->GetHandler()->GetErrorText()), "green");

  for (const char* name : {"java/util/ArrayList", "JAVABEAN://java.util.ArrayList"}) {
    host::Host::Creation list = host->Create(name);
    ASSERT_TRUE(list.object.has_value()) << list.text;
    EXPECT_EQ(list.object->ClassName(), "java.util.ArrayList");
    EXPECT_EQ(ToUtf8(list.object->ToText().value()), "[]");
  }
  EXPECT_THAT(host->Create("probe://thing").text, HasSubstr("one of PROBE, JAVABEAN;"));
  EXPECT_EQ(host->Collect(), 2U);
  EXPECT_EQ(handlersLeft(), 2);
  probe.object.reset();
  EXPECT_EQ(host->Collect(), 1U);
  EXPECT_EQ(handlersLeft(), 1);
  host.reset();
  EXPECT_EQ(handlersLeft(), 0);
  dlclose(module);
}

}  // namespace
}  // namespace quenlatrix::host
