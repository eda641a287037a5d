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
// ask for. Load, Initialise, SetVm and MakeReceiver belong to the single-threaded start; the rest
// may be called from any thread.
class PluginLibrary {
 public:
  static constexpr std::uint32_t kVersion = 0x00020000;

  // The "javabean_handler.so" that came with the running program.
  static std::string DefaultFile();

  // Loads the library and resolves its entry points. Null on failure (no such file, a missing entry
  // point, another version than kVersion); `why` says which, as a clause without a full stop.
  static std::unique_ptr<PluginLibrary> Load(const std::string& file, std::string& why);

  // CleanUpHandler, then the library is unloaded. Every handler must have been freed, and every
  // value and record that the plug-in made given back.
  ~PluginLibrary();
  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  // SetEnvironment, then InitHandler. The environment must outlive this object. False when the
  // plug-in refuses or doesn't say which type of handler it serves; `why` as for Load.
  bool Initialise(meta_object::Environment* environment, std::string& why);
  // SetJavaVM; to be called after Initialise.
  void SetVm(JavaVM* machine);
  // Makes the receiver, to be called after SetVm. False when the plug-in makes no handler objects.
  bool MakeReceiver(std::string& why);

  // Makes an empty handler with a reference count of 1, registered with the environment's
  // collector. It goes back through FreeHandler.
  meta_object::Handler* MakeHandler();
  void FreeHandler(meta_object::Handler* handler);

  // The handler through which the plug-in's values and records are given back when the one that
  // made them may be gone; null before MakeReceiver. It stands for no object; the environment's
  // collector frees it at the end.
  meta_object::Handler* GetReceiver() const { return receiver; }

  // Lends the plug-in's description record, filled by Initialise. Its texts are for one thread at a
  // time; its address tells whose handler one is.
  const meta_object::info::HandlerInfo* GetInfo() const;
  // The type of handler that it serves, such as "JAVABEAN"; empty before Initialise.
  const std::string& GetType() const { return type; }
  // The loaded image: what the plug-in names as the owner of its handlers.
  const void* GetModule() const { return handle; }
  // The loaded file, with its whole path.
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
  std::string type;
  meta_object::Handler* receiver = nullptr;
};

}  // namespace quenlatrix::host
