#pragma once

#include <dlfcn.h>
#include <jni.h>
#include <link.h>

#include <cstddef>
#include <string_view>

namespace quenlatrix::test {

// Ends the process's VM, whoever started it; does nothing when there is none. For the end of
// main(): the watcher thread of a VM that still runs compares the signal handlers with what
// libjvm's own destructors take apart, and complains. Waits for every thread that is attached and
// every Java thread that is no daemon.
inline void EndVm() {
  // Found by its name, since whoever started the VM keeps the library to himself. Looked for first:
  // what the loader says of a library that isn't there would be left behind.
  const auto isVm = [](dl_phdr_info* image, std::size_t, void*) {
    return std::string_view(image->dlpi_name).ends_with("/libjvm.so") ? 1 : 0;
  };
  if (dl_iterate_phdr(isVm, nullptr) == 0) return;
  void* const library = dlopen("libjvm.so", RTLD_NOW | RTLD_NOLOAD);
  using GetCreated = jint (*)(JavaVM**, jsize, jsize*);
  const auto getCreated = reinterpret_cast<GetCreated>(dlsym(library, "JNI_GetCreatedJavaVMs"));
  JavaVM* vm = nullptr;
  jsize count = 0;
  if (getCreated != nullptr && getCreated(&vm, 1, &count) == JNI_OK && count == 1)
    vm->DestroyJavaVM();
}

}  // namespace quenlatrix::test
