#include "fuzz/jvm_host.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "fuzz/require.h"
#include "tests/support/jni_reference_tracker.h"

namespace {

using quenlatrix::host::Host;
using quenlatrix::test::JniReferenceTracker;

// Standard output, into which the VM writes its warnings: a file in memory. The fuzzer itself
// writes to standard error.
class VmOutput {
 public:
  VmOutput() : file(memfd_create("vm_output", MFD_CLOEXEC)) {
    Require(file != -1 && dup2(file, STDOUT_FILENO) == STDOUT_FILENO);
  }
  // Lives as long as the process.
  ~VmOutput() = delete;
  VmOutput(const VmOutput&) = delete;
  VmOutput& operator=(const VmOutput&) = delete;

  // Fails for a warning, and forgets all other output.
  void RequireNoWarning() const {
    const off_t size = lseek(STDOUT_FILENO, 0, SEEK_CUR);
    if (size == 0) return;
    std::string text(static_cast<std::size_t>(size), '\0');
    Require(pread(file, text.data(), text.size(), 0) == size && ftruncate(file, 0) == 0);
    lseek(STDOUT_FILENO, 0, SEEK_SET);
    if (text.find("WARNING in native") == std::string::npos &&
        text.find("WARNING: JNI") == std::string::npos) {
      return;
    }
    std::fputs(text.c_str(), stderr);
    std::abort();
  }

 private:
  int file;
};

const VmOutput& GetVmOutput() {
  static const auto* const output = new VmOutput;
  return *output;
}

Host* StartHost() {
  GetVmOutput();
  Require(setenv("LC_ALL", "C.UTF-8", 1) == 0);
  Host::Options options;
  options.pluginFile = FUZZ_PLUGIN;
  options.classPath = FUZZ_CLASS_PATH;
  // The signals that end a run are the fuzzer's; few threads besides its own.
  options.javaOptions = {"-Xcheck:jni", "-Xrs", "-Xmx128m", "-XX:+UseSerialGC",
                         "-XX:TieredStopAtLevel=1"};
  options.allow = {"beans.*Echo",
                   "beans.ArrayChanger",
                   "beans.ArrayMaker",
                   "beans.Object*",
                   "beans.Over*",
                   "beans.Throwing*",
                   "beans.UnusualNames",
                   "beans.*Collection",
                   "beans.IndexedProperty",
                   "beans.Point",
                   "beans.AbstractBean",
                   "examples.*",
                   "java.lang.StringBuilder",
                   "java.lang.Object",
                   "java.util.ArrayList",
                   "java.util.HashMap",
                   "java.util.TreeSet",
                   "java.util.Date"};
  std::string why;
  std::unique_ptr<Host> host = Host::Start(options, why);
  if (host == nullptr) {
    std::fprintf(stderr, "The target needs a Java VM: %s\n", why.c_str());
    std::exit(EXIT_FAILURE);
  }
  return host.release();
}

// Whether a run left no handler and no reference beyond those to it.
bool RunTracked(const std::function<void()>& run) {
  GetHost().Collect();
  const std::size_t handlers = GetHost().GetCollector().GetCount();
  const JniReferenceTracker tracker(GetEnv());
  run();
  GetHost().Collect();
  Require(tracker.LiveLocals() == 0 && tracker.OpenFrames() == 0);
  Require(GetEnv()->ExceptionCheck() == JNI_FALSE);
  GetVmOutput().RequireNoWarning();
  return GetHost().GetCollector().GetCount() == handlers && tracker.LiveGlobals() == 0;
}

}  // namespace

Host& GetHost() {
  // Never destroyed: the VM would outlive it.
  static Host* const host = StartHost();
  return *host;
}

JNIEnv* GetEnv() {
  void* env = nullptr;
  Require(GetHost().GetVm()->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK);
  return static_cast<JNIEnv*>(env);
}

quenlatrix::host::BeanObject MakeBean(const std::string& className) {
  Host::Creation creation = GetHost().Create(className);
  if (!creation.object) {
    std::fprintf(stderr, "%s\n", creation.text.c_str());
    std::exit(EXIT_FAILURE);
  }
  return std::move(*creation.object);
}

void RequireNothingLeft(const std::function<void()>& run) {
  Require(RunTracked(run) || RunTracked(run));
}

// The plug-in attaches a thread for as long as it is at work. A call that is left open keeps this
// one attached, and its table of JNI functions in one place.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  static auto* const bean = new quenlatrix::host::BeanObject(MakeBean("java.lang.Object"));
  static auto* const call = new quenlatrix::meta_object::context::MethodCallContext;
  Require(bean->GetHandler()->OpenMethodCall(*call, WideString("Invoke:none:0")) == 0);
  return 0;
}
