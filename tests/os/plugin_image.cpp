// A plug-in with nothing but the entry point that the path look-up goes by.
extern "C" [[gnu::visibility("default")]] bool InitHandler(void* module) {
  return module != nullptr;
}
