#include <cstdio>
#include <cstdlib>

#include "host/java_vm.h"
#include "tests/support/end_vm.h"

// Calls into Java with an exception pending, which -Xcheck:jni warns about. Ends with 0 whatever
// happens, so that only the warning can make its test notice anything.
int main() {
  const char* home = std::getenv("QUENLATRIX_TEST_JAVA_HOME");
  std::string why;
  const auto machine =
      quenlatrix::host::JavaVm::Start({home == nullptr ? "" : home, {}, {"-Xcheck:jni"}}, why);
  void* environment = nullptr;
  if (machine == nullptr || machine->Get()->AttachCurrentThread(&environment, nullptr) != JNI_OK) {
    std::fprintf(stderr, "%s\n", why.c_str());
    return EXIT_SUCCESS;
  }
  auto* env = static_cast<JNIEnv*>(environment);
  env->FindClass("no/such/Class");
  env->FindClass("java/lang/String");
  env->ExceptionClear();
  quenlatrix::test::EndVm();
  return EXIT_SUCCESS;
}
