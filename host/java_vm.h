#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <vector>

namespace quenlatrix::host {

// The Java virtual machine of this process, started from a libjvm that is found at run time.
//
// The VM lives until the process ends: destroying a JavaVm leaves it running (DestroyJavaVM would
// wait for every non-daemon thread that a bean has started, maybe for ever). A program whose work
// is done ends with EndProcess. One process can make one VM; a second Start fails with a text that
// says so. The object may be used from any thread; it keeps no JNIEnv, because an environment ends
// with its thread's attachment.
class JavaVm {
 public:
  struct Options {
    // A JDK's or JRE's home directory, or a libjvm.so itself. When given, no other place is tried.
    // Empty: JAVA_HOME, then the home of the "java" and of the "javac" on PATH, then each entry of
    // /usr/lib/jvm, newest first.
    std::string home;
    // Entries of the class path, in order; each a jar or a directory.
    std::vector<std::string> classPath;
    // Further options as the "java" command takes them, such as "-Xmx64m" or "-Dkey=value". None
    // may set "java.class.path": Start then fails.
    std::vector<std::string> options;
    // Called when Java code ends the VM (System.exit, Runtime.halt), with the status that it gave,
    // and has to end the process. It is called on a thread of the VM while all threads in Java
    // stand still: it makes no JNI call and waits for no thread. Null: the process exits with that
    // status.
    void (*onExit)(int status) = nullptr;
  };

  // A place that was looked at for a virtual machine, and why it did not serve.
  struct Place {
    std::string path;
    std::string reason;
  };

  // Finds libjvm and starts the machine on the calling thread, which is attached from then on.
  // Afterwards sets the process's locale, which starting a machine changes: LC_CTYPE from the
  // environment ("C.UTF-8" when that names none or one that isn't there), LC_NUMERIC "C".
  // Null on failure; `why` then says what was looked for, where, and what to do.
  static std::unique_ptr<JavaVm> Start(const Options& options, std::string& why);

  // Exits with that status, as std::exit does, from within the VM: the VM's own threads, which
  // would meet what libjvm's destructors leave behind, are stopped first. Java threads are not
  // waited for and shutdown hooks not run. Called by main() when nothing else of the program runs
  // any more; returns when there is no VM, or none that answers.
  static void EndProcess(int status);

  JavaVm(const JavaVm&) = delete;
  JavaVm& operator=(const JavaVm&) = delete;

  // Lends the machine; never null.
  JavaVM* Get() const { return machine; }
  // The libjvm.so that serves.
  const std::string& GetLibraryFile() const { return libraryFile; }
  // The places that were looked at before it and did not serve.
  const std::vector<Place>& GetPlacesPassed() const { return placesPassed; }

 private:
  JavaVm(JavaVM* machine, std::string libraryFile, std::vector<Place> placesPassed);

  JavaVM* machine;
  std::string libraryFile;
  std::vector<Place> placesPassed;
};

}  // namespace quenlatrix::host
