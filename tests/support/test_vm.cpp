#include "tests/support/test_vm.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "host/java_vm.h"
#include "tests/support/end_vm.h"

namespace quenlatrix::test {

namespace {

host::JavaVm::Options& Options() {
  static host::JavaVm::Options options = {
      TestVm::JavaHome(),
      {TestVm::Jar("javabean_handler.jar"), TestVm::Jar("test_beans.jar"),
       TestVm::Jar("named_parameters.jar")},
      {"-Xcheck:jni"}};
  return options;
}

bool isLeftRunning = false;

std::unique_ptr<host::JavaVm> Start() {
  std::string why;
  std::unique_ptr<host::JavaVm> machine = host::JavaVm::Start(Options(), why);
  if (machine == nullptr) {
    std::fprintf(stderr, "The test needs a Java VM: %s\n", why.c_str());
    std::exit(EXIT_FAILURE);
  }
  return machine;
}

}  // namespace

void TestVm::AddOption(const std::string& option) { Options().options.push_back(option); }

void TestVm::SetClassPath(const std::vector<std::string>& entries) {
  Options().classPath = entries;
}

JavaVM* TestVm::Get() {
  static const std::unique_ptr<host::JavaVm> machine = Start();
  return machine->Get();
}

JNIEnv* TestVm::Env() {
  void* environment = nullptr;
  if (Get()->AttachCurrentThread(&environment, nullptr) != JNI_OK) {
    std::fprintf(stderr, "The Java VM does not attach this thread.\n");
    std::exit(EXIT_FAILURE);
  }
  return static_cast<JNIEnv*>(environment);
}

void TestVm::LeaveRunning() { isLeftRunning = true; }

void TestVm::End() {
  if (isLeftRunning) return;
  alarm(60);  // A thread that a test left in the VM fails the test.
  EndVm();
  alarm(0);
}

std::string TestVm::JavaHome() {
  const char* home = std::getenv("QUENLATRIX_TEST_JAVA_HOME");
  return home == nullptr ? "" : home;
}

std::string TestVm::Jar(const std::string& name) {
  const std::filesystem::path product = std::filesystem::path(PRODUCT_JARS) / name;
  return (std::filesystem::exists(product) ? product : std::filesystem::path(TEST_JARS) / name)
      .string();
}

}  // namespace quenlatrix::test
