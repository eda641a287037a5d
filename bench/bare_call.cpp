// A whole program's floor: starts the VM as a bare program does, makes one bean, calls one method
// and prints the answer.

#include <jni.h>

#include <cstdio>
#include <string>

#include "host/java_vm.h"

int main() {
  std::string why;
  const auto machine = quenlatrix::host::JavaVm::Start({}, why);
  if (machine == nullptr) {
    std::fprintf(stderr, "bare_call: %s\n", why.c_str());
    return 3;
  }
  void* given = nullptr;
  if (machine->Get()->GetEnv(&given, JNI_VERSION_1_8) != JNI_OK) {
    return 3;
  }
  auto* const env = static_cast<JNIEnv*>(given);
  const jclass random = env->FindClass("java/util/Random");
  const jobject bean = env->NewObject(random, env->GetMethodID(random, "<init>", "()V"));
  const jint answer = env->CallIntMethod(bean, env->GetMethodID(random, "nextInt", "()I"));
  if (env->ExceptionCheck() != JNI_FALSE) {
    return 1;
  }
  std::printf("%d\n", static_cast<int>(answer));
  // As beanhost does: the VM isn't waited for.
  std::fflush(stdout);
  return 0;
}
