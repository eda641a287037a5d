#pragma once

#include <jni.h>

#include <cstdint>
#include <memory>
#include <string>

namespace quenlatrix::meta_object {
class Handler;
class Environment;
namespace info {
class HandlerInfo;
}
}  // namespace quenlatrix::meta_object

namespace quenlatrix::host {

// A handler plug-in: its shared library and the nine entry points, called in the order that they
// ask for. Load, Initialise and SetVm belong to the single-threaded start; MakeHandler and
// FreeHandler may be called from any thread.
class PluginLibrary {
 public:
  static constexpr std::uint32_t kVersion = 0x00020000;

  // The "javabean_handler.so" that came with the running program.
  static std::string DefaultFile();

  // Loads the library and resolves its entry points; `file` empty means DefaultFile(). Null on
  // failure (no such file, a missing entry point, another version than kVersion); `why` says which.
  static std::unique_ptr<PluginLibrary> Load(const std::string& file, std::string& why);

  // CleanUpHandler, then the library is unloaded. Every handler must have been freed, and every
  // value and record that the plug-in made given back.
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // SetEnvironment, then InitHandler. The environment must outlive this object. False when the
  // plug-in refuses; `why` says so.
  bool Initialise(meta_object::Environment* environment, std::string& why);
  // SetJavaVM; to be called after Initialise.
  void SetVm(JavaVM* machine);

  // Makes an empty handler with a reference count of 1, registered with the environment's
  // collector. It goes back through FreeHandler.
  meta_object::Handler* MakeHandler();
  void FreeHandler(meta_object::Handler* handler);

  // Lends the plug-in's description record, filled by Initialise.
  const meta_object::info::HandlerInfo* GetInfo() const;
  // The loaded file, as the loader knows it.
  const std::string& GetFile() const { return file; }

 private:
  struct EntryPoints {
    void (*setEnvironment)(meta_object::Environment*);
    void (*setJavaVM)(JavaVM*);
    bool (*initHandler)(void*);
    meta_object::info::HandlerInfo* (*getHandlerInfo)();
    std::uint32_t (*getHandlerVersion)();
    meta_object::Handler* (*getHandlerObject)();
    void (*freeHandlerObject)(meta_object::Handler*);
    bool (*cleanUpHandler)();
    int (*processIdle)();
  };

  PluginLibrary(void* handle, std::string file);
  bool Resolve(std::string& why);

  void* handle;
  std::string file;
  EntryPoints entries = {};
  bool initialised = false;
};

}  // namespace quenlatrix::host
