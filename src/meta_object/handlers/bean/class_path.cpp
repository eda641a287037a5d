#include "meta_object/handlers/bean/class_path.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>

#include "meta_object/handlers/bean/bean_introspector.h"
#include "meta_object/handlers/bean/jar_path_set.h"
#include "meta_object/handlers/bean/java_exception.h"
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "meta_object/handlers/bean/until_unloaded.h"
#include "os/module.h"

namespace quenlatrix::meta_object::handlers::bean {

const char* const ClassPathFile = "beanpaths.ini";

namespace {

constexpr char kSeparator = ':';
constexpr int kLineSize = 2048;
constexpr unsigned long kPathSize = 1024;

struct CloseStream {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

Stream OpenForReading(const std::string& name) {
  const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor == -1) {
    return nullptr;
  }
  Stream stream(fdopen(descriptor, "r"));
  if (stream == nullptr) {
    close(descriptor);
  }
  return stream;
}

std::string MakeClassPathFileName() {
  char path[kPathSize] = "";
  std::string name;
  if (GetModuleFileName(_HandlerInfo->moduleHandle, path, sizeof path) > 0) {
    name = path;
    name.erase(std::min(name.rfind('/'), name.size()));
  }
  if (!name.empty()) {
    name += '/';
  }
  return name + ClassPathFile;
}

// The Java side for the length of a scope.
class JavaSide {
 public:
  explicit JavaSide(JNIEnv* env) : isThere(introspector.CreateIntrospector(env)), env(env) {}
  JavaSide(const JavaSide&) = delete;
  JavaSide& operator=(const JavaSide&) = delete;
  ~JavaSide() { introspector.DestroyIntrospector(env); }

  BeanIntrospector introspector;
  const bool isThere;

 private:
  JNIEnv* env;
};

// The bytes of the name at that position, terminated; null when they can't be had.
std::unique_ptr<char[]> CopyBeanName(JNIEnv* env, BeanIntrospector& introspector, int index) {
  const auto name = LocalRef<jstring>::Adopt(env, introspector.getBeanName(env, index));
  const UtfChars chars(env, name.Get());
  if (IsJavaExceptionHappened(env, nullptr) || chars.Get() == nullptr) {
    return nullptr;
  }
  std::size_t const size = std::strlen(chars.Get()) + 1;
  auto copy = std::make_unique_for_overwrite<char[]>(size);
  std::memcpy(copy.get(), chars.Get(), size);
  return copy;
}

}  // namespace

bool GetClassPathFileName(std::string& name) {
  static const UntilUnloaded<std::string> fileName(MakeClassPathFileName());
  name = *fileName;
  return true;
}

void getPathFromFile(std::string& classPath) {
  std::string name;
  GetClassPathFileName(name);
  getPathFromFile(name, classPath);
}

bool getPathFromFile(const std::string& fileName, std::string& classPath) {
  // A thread's type-1 hold would join another's; the file is read by one at a time.
  const MutexLock turn(*classPathTurn);
  const UGuardLock hold(*_mutexClassPathFile, UGuard::LockType1);
  if (!turn.IsHeld() || !hold.IsHeld()) {
    return false;
  }
  bool separate = classPath.empty() || classPath.back() != kSeparator;
  const Stream stream = OpenForReading(fileName);
  if (stream == nullptr) {
    return true;
  }
  char line[kLineSize];
  while (std::fgets(line, sizeof line, stream.get()) != nullptr) {
    std::size_t length = std::strlen(line);
    if (length > 0 && line[length - 1] == '\n') {
      --length;
    }
    if (length == 0) {
      continue;
    }
    if (separate) {
      classPath += kSeparator;
    }
    classPath.append(line, length);
    separate = true;
  }
  return true;
}

bool GetClassPath(std::string& classPath) {
  std::string name;
  GetClassPathFileName(name);
  return GetClassPath(name, classPath);
}

bool GetClassPath(const std::string& fileName, std::string& classPath) {
  const char* const variable = std::getenv("CLASSPATH");
  if (variable == nullptr) {
    return false;
  }
  if (*variable != '\0') {
    classPath = variable;
  }
  return getPathFromFile(fileName, classPath) && !classPath.empty();
}

bool NotFoundPathInClassPath() {
  const std::unique_ptr<std::set<std::string>> paths(getPaths());
  if (paths->empty()) {
    return false;
  }
  std::string classPath;
  if (!GetClassPath(classPath)) {
    return true;
  }
  return std::any_of(paths->begin(), paths->end(), [&classPath](const std::string& path) {
    return classPath.find(path) == std::string::npos;
  });
}

int AddPath2ClassPath() { return 0; }

int GetBeanNames(JNIEnv* env, const char* jarPath, std::list<char*>& names) {
  JavaSide java(env);
  if (!java.isThere || !java.introspector.enumJavaBeans(env, jarPath)) {
    return 0;
  }
  const int count = java.introspector.getBeanCount(env);
  for (int i = 0; i < count; ++i) {
    auto name = CopyBeanName(env, java.introspector, i);
    if (name == nullptr) {
      return i + 1;
    }
    names.push_back(name.get());
    static_cast<void>(name.release());
  }
  return std::max(count, 0);
}

int GetDisplayName(const char*, const char*, char*, int) { return 1; }

}  // namespace quenlatrix::meta_object::handlers::bean
