#include "tests/support/patched_jni.h"

namespace quenlatrix::test {

PatchedJni::PatchedJni(JNIEnv* env) : env(env), original(env->functions), table(*env->functions) {
  env->functions = &table;
}

PatchedJni::~PatchedJni() { env->functions = original; }

FaultyJni::FaultyJni(JNIEnv* env, Fault fault, int faultAt) : patch(env), faultAt(faultAt) {
  healthy = &patch.Original();
  callsUntilFault = faultAt;
  fault(patch.Table());
}

void FaultyJni::RunOutOfMemory(JNIEnv* env) {
  const jclass cls = healthy->FindClass(env, "java/lang/OutOfMemoryError");
  healthy->ThrowNew(env, cls, "patched");
  healthy->DeleteLocalRef(env, cls);
}

PatchedVm::PatchedVm(JavaVM* machine)
    : machine(machine), original(machine->functions), table(*machine->functions) {
  machine->functions = &table;
}

PatchedVm::~PatchedVm() { machine->functions = original; }

}  // namespace quenlatrix::test
