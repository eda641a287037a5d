#pragma once

#include <dlfcn.h>
#include <jni.h>

namespace quenlatrix::test {

// Ends the process's VM, whoever started it; does nothing when there is none. For the end of
// main(): the watcher thread of a VM that still runs compares the signal handlers with what
// libjvm's own destructors take apart, and complains. Waits for every thread that is attached and
// every Java thread that is no daemon.
inline void EndVm() {
  // Found by its name, since whoever started the VM keeps the library to himself.
  void* const library = dlopen("libjvm.so", RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) return;
  using GetCreated = jint (*)(JavaVM**, jsize, jsize*);
  const auto getCreated = reinterpret_cast<GetCreated>(dlsym(library, "JNI_GetCreatedJavaVMs"));
  JavaVM* vm = nullptr;
  jsize count = 0;
  if (getCreated != nullptr && getCreated(&vm, 1, &count) == JNI_OK && count == 1)
    vm->DestroyJavaVM();
}

}  // namespace quenlatrix::test
