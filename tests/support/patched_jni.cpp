#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

PatchedJni::PatchedJni(JNIEnv* env) : env(env), original(env->functions), table(*env->functions) {
  env->functions = &table;
}

PatchedJni::~PatchedJni() { env->functions = original; }

PatchedVm::PatchedVm(JavaVM* machine)
    : machine(machine), original(machine->functions), table(*machine->functions) {
  machine->functions = &table;
}

PatchedVm::~PatchedVm() { machine->functions = original; }

}  // namespace quenlatrix::test
