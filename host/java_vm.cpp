#include "host/java_vm.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "host/host_error.h"

namespace quenlatrix::host {

namespace {

namespace fs = std::filesystem;

constexpr const char* kJvmDirectory = "/usr/lib/jvm";
// Below a home: since Java 9; JRE and JDK 8, which name the processor.
constexpr const char* kLibraryPlaces[] = {
    "lib/server/libjvm.so",         "jre/lib/amd64/server/libjvm.so",
    "lib/amd64/server/libjvm.so",   "jre/lib/aarch64/server/libjvm.so",
    "lib/aarch64/server/libjvm.so", "jre/lib/server/libjvm.so",
};

constexpr const char* kClassPathOption = "-Djava.class.path=";

using CreateJavaVM = jint (*)(JavaVM**, void**, void*);

std::atomic<bool> machineStarted = false;
std::atomic<bool> isStarting = false;
// The VM of this process once it runs.
std::atomic<JavaVM*> runningMachine = nullptr;
// What EndProcess ends with; negative before.
std::atomic<int> endStatus = -1;
std::atomic<void (*)(int)> exitHandler = nullptr;

// A place to look at: a home, or why there is none.
struct Candidate {
  std::string home;
  std::string missing;
};

bool IsThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

std::string RealPath(const fs::path& path) {
  std::error_code failed;
  const fs::path real = fs::canonical(path, failed);
  return failed ? std::string() : real.string();
}

Candidate FromEnvironment() {
  const char* home = std::getenv("JAVA_HOME");
  if (home == nullptr || *home == '\0') {
    return {"JAVA_HOME", "not set"};
  }
  return {home, {}};
}

// The home of a program on PATH: <home>/bin/<program>, links resolved.
Candidate FromPath(const std::string& program) {
  const char* variable = std::getenv("PATH");
  std::string_view rest = variable == nullptr ? "" : variable;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const fs::path file = fs::path(rest.substr(0, end)) / program;
    if (end > 0 && access(file.c_str(), X_OK) == 0 && !fs::is_directory(file)) {
      const fs::path real = RealPath(file);
      return {real.parent_path().parent_path().string(), {}};
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return {"PATH", "no \"" + program + "\" on it"};
}

// The major version in a home's "release" file, 0 without one.
int VersionOf(const fs::path& home) {
  constexpr std::string_view kKey = "JAVA_VERSION=\"";
  std::ifstream release(home / "release");
  for (std::string line; std::getline(release, line);) {
    if (line.starts_with(kKey)) {
      return static_cast<int>(std::strtol(line.c_str() + kKey.size(), nullptr, 10));
    }
  }
  return 0;
}

std::vector<Candidate> FromJvmDirectory() {
  std::vector<std::pair<int, std::string>> homes;
  std::error_code failed;
  for (const auto& entry : fs::directory_iterator(kJvmDirectory, failed)) {
    if (entry.is_directory()) {
      homes.emplace_back(-VersionOf(entry.path()), entry.path().string());
    }
  }
  if (homes.empty()) {
    return {{kJvmDirectory, "no Java installation in it"}};
  }
  std::sort(homes.begin(), homes.end());
  std::vector<Candidate> candidates;
  candidates.reserve(homes.size());
  for (auto& [order, home] : homes) {
    candidates.push_back({std::move(home), {}});
  }
  return candidates;
}

std::vector<Candidate> Candidates(const std::string& givenHome) {
  if (!givenHome.empty()) {
    return {{givenHome, {}}};
  }
  std::vector<Candidate> candidates = {FromEnvironment(), FromPath("java"), FromPath("javac")};
  for (Candidate& candidate : FromJvmDirectory()) {
    candidates.push_back(std::move(candidate));
  }
  return candidates;
}

std::string FindLibrary(const fs::path& home) {
  if (home.filename() == "libjvm.so" && IsThere(home)) {
    return home.string();
  }
  for (const char* place : kLibraryPlaces) {
    if (IsThere(home / place)) {
      return (home / place).string();
    }
  }
  return {};
}

struct Library {
  std::string file;
  CreateJavaVM create = nullptr;
};

// Opens the first library that serves. What didn't goes into `passed`.
Library OpenLibrary(const std::string& givenHome, std::vector<JavaVm::Place>& passed) {
  std::vector<std::string> tried;
  for (const Candidate& candidate : Candidates(givenHome)) {
    if (!candidate.missing.empty()) {
      passed.push_back({candidate.home, candidate.missing});
      continue;
    }
    const std::string file = FindLibrary(candidate.home);
    if (file.empty()) {
      passed.push_back({candidate.home, "no lib/server/libjvm.so below it"});
      continue;
    }
    const std::string real = RealPath(file);
    if (std::find(tried.begin(), tried.end(), real) != tried.end()) {
      continue;
    }
    tried.push_back(real);
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      passed.push_back({file, dlerror()});
      continue;
    }
    if (void* create = dlsym(handle, "JNI_CreateJavaVM")) {
      return {file, reinterpret_cast<CreateJavaVM>(create)};
    }
    passed.push_back({file, "it has no JNI_CreateJavaVM"});
    dlclose(handle);
  }
  return {};
}

std::string DescribePlaces(const std::vector<JavaVm::Place>& places) {
  std::string text = "no Java virtual machine found. Looked at:";
  for (const JavaVm::Place& place : places) {
    text += "\n  " + place.path + ": " + place.reason;
  }
  return text +
         "\nInstall a Java runtime (on Debian and Ubuntu the package default-jre-headless) or set "
         "JAVA_HOME to the directory of one.";
}

std::string DescribeFailure(jint code, const std::string& file) {
  const char* meaning = "it doesn't say why";
  switch (code) {
    case JNI_EVERSION:
      meaning = "it doesn't offer JNI 1.8";
      break;
    case JNI_ENOMEM:
      meaning = "there is not enough memory";
      break;
    case JNI_EEXIST:
      meaning = "this process has a virtual machine already";
      break;
    case JNI_EINVAL:
      meaning = "it refuses an argument";
      break;
    default:
      break;
  }
  return "the Java virtual machine " + file + " did not start (code " + std::to_string(code) +
         "): " + meaning + ". Check the Java options; what the machine itself wrote stands above.";
}

// Starting a machine sets every category of the locale from the environment.
void RestoreLocale() {
  const char* names[] = {std::getenv("LC_ALL"), std::getenv("LC_CTYPE"), std::getenv("LANG")};
  const bool named = std::any_of(std::begin(names), std::end(names),
                                 [](const char* name) { return name != nullptr && *name != '\0'; });
  if (!named || std::setlocale(LC_CTYPE, "") == nullptr) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
  std::setlocale(LC_NUMERIC, "C");
}

// A machine that is set up wrongly, with too small a heap for example, doesn't answer but aborts,
// which would end the process with a status of the machine's own.
void EndAsHost() {
  if (!isStarting) return;
  std::fputs(
      "beanhost: the Java virtual machine gave up while it started. Check the Java options; what "
      "the machine itself wrote stands above.\n",
      stderr);
  _exit(static_cast<int>(ExitStatus::NothingToRunOn));
}

// The VM's hook for its exit.
void OnExit(jint code) {
  if (endStatus >= 0) std::exit(endStatus);
  exitHandler.load()(code);
}

// An option can give the VM another class path than the one that it is started with: one of ours,
// or one in the variable that the VM reads last of all. Empty when none does.
std::string WhyClassPathIsNotOurs(const std::vector<std::string>& options) {
  const char* variable = std::getenv("_JAVA_OPTIONS");
  const bool isInVariable =
      variable != nullptr && std::string_view(variable).find(kClassPathOption) != std::string::npos;
  const bool isOption = std::any_of(options.begin(), options.end(), [](const std::string& option) {
    return option.starts_with(kClassPathOption);
  });
  if (!isInVariable && !isOption) return {};
  return std::string("-Djava.class.path") + (isOption ? " as a Java option" : " in _JAVA_OPTIONS") +
         " would replace the class path with which the virtual machine is started; leave it out "
         "and "
         "add the entries to the class path (--class-path of beanhost).";
}

jint CreateMachine(CreateJavaVM create, const JavaVm::Options& options, JavaVM** machine) {
  std::string classPath = kClassPathOption;
  for (const std::string& entry : options.classPath) {
    classPath += (&entry == &options.classPath.front() ? "" : ":") + entry;
  }
  // Of options that are given twice the last one counts.
  std::vector<std::string> texts = options.options;
  texts.push_back(classPath);
  std::vector<JavaVMOption> list;
  list.reserve(texts.size() + 2);
  for (std::string& text : texts) {
    list.push_back({text.data(), nullptr});
  }
  std::string abortHook = "abort";
  list.push_back({abortHook.data(), reinterpret_cast<void*>(EndAsHost)});
  std::string exitHook = "exit";
  exitHandler = options.onExit;
  if (options.onExit != nullptr) {
    list.push_back({exitHook.data(), reinterpret_cast<void*>(OnExit)});
  }
  JavaVMInitArgs arguments = {};
  arguments.version = JNI_VERSION_1_8;
  arguments.options = list.data();
  arguments.nOptions = static_cast<jint>(list.size());
  arguments.ignoreUnrecognized = JNI_FALSE;
  void* environment = nullptr;
  isStarting = true;
  const jint code = create(machine, &environment, &arguments);
  isStarting = false;
  return code;
}

}  // namespace

JavaVm::JavaVm(JavaVM* machine, std::string libraryFile, std::vector<Place> placesPassed)
    : machine(machine),
      libraryFile(std::move(libraryFile)),
      placesPassed(std::move(placesPassed)) {}

std::unique_ptr<JavaVm> JavaVm::Start(const Options& options, std::string& why) {
  why = WhyClassPathIsNotOurs(options.options);
  if (!why.empty()) {
    return nullptr;
  }
  if (machineStarted.exchange(true)) {
    why =
        "this process has started a Java virtual machine before, and there can be only one. Start "
        "the program again.";
    return nullptr;
  }
  std::vector<Place> passed;
  const Library library = OpenLibrary(options.home, passed);
  if (library.create == nullptr) {
    machineStarted = false;
    why = DescribePlaces(passed);
    return nullptr;
  }
  JavaVM* machine = nullptr;
  const jint code = CreateMachine(library.create, options, &machine);
  RestoreLocale();
  if (code != JNI_OK || machine == nullptr) {
    why = DescribeFailure(code, library.file);
    return nullptr;
  }
  runningMachine = machine;
  return std::unique_ptr<JavaVm>(new JavaVm(machine, library.file, std::move(passed)));
}

void JavaVm::EndProcess(int status) {
  JavaVM* const machine = runningMachine;
  void* environment = nullptr;
  if (machine == nullptr || machine->AttachCurrentThread(&environment, nullptr) != JNI_OK) return;
  auto* const env = static_cast<JNIEnv*>(environment);
  endStatus = status;
  const jclass runtime = env->FindClass("java/lang/Runtime");
  const jmethodID get =
      runtime == nullptr ? nullptr
                         : env->GetStaticMethodID(runtime, "getRuntime", "()Ljava/lang/Runtime;");
  const jmethodID halt = get == nullptr ? nullptr : env->GetMethodID(runtime, "halt", "(I)V");
  const jobject itself = halt == nullptr ? nullptr : env->CallStaticObjectMethod(runtime, get);
  if (itself != nullptr && env->ExceptionCheck() == JNI_FALSE) {
    env->CallVoidMethod(itself, halt, status);
  }
  env->ExceptionClear();
  machine->DetachCurrentThread();
}

}  // namespace quenlatrix::host
