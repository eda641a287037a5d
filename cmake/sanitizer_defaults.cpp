// Defaults for programs built with AddressSanitizer. The VM handles SIGSEGV itself (null checks,
// safepoints), so the sanitizer must leave that signal alone; and what the VM's own libraries
// allocate for the life of the process is no leak of ours.

extern "C" {

[[gnu::used, gnu::visibility("default")]] const char* __asan_default_options() {
  return "handle_segv=0:allow_user_segv_handler=1:detect_stack_use_after_return=0";
}

[[gnu::used, gnu::visibility("default")]] const char* __lsan_default_suppressions() {
  return "leak:libjvm.so\nleak:libjava.so\nleak:libjli.so\nleak:libzip.so\nleak:libjimage.so\n";
}

// Looking for pointers in the thread-local storage of the VM's threads crashes the leak checker.
[[gnu::used, gnu::visibility("default")]] const char* __lsan_default_options() {
  return "print_suppressions=0:use_tls=0";
}
}
