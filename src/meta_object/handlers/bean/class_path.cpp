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
#include "meta_object/handlers/bean/java_refs.h"
#include "meta_object/handlers/bean/plugin_state.h"
#include "os/module.h"

namespace quenlatrix::meta_object::handlers::bean {

char const* const ClassPathFile = "beanpaths.ini";

namespace {

constexpr char kSeparator = ':';
constexpr int kLineSize = 2048;
constexpr unsigned long kPathSize = 1024;

struct CloseStream {
  void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, CloseStream>;

Stream OpenForReading(std::string const& name) {
  int const descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
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
  if (GetModuleFileName(_HandlerInfo.moduleHandle, path, sizeof path) > 0) {
    name = path;
    name.erase(std::min(name.rfind('/'), name.size()));
  }
  if (!name.empty()) {
    name += '/';
  }
  return name + ClassPathFile;
}

}  // namespace

bool GetClassPathFileName(std::string& name) {
  static std::string fileName;
  if (fileName.empty()) {
    fileName = MakeClassPathFileName();
  }
  name = fileName;
  return true;
}

void getPathFromFile(std::string& classPath) {
  std::string name;
  GetClassPathFileName(name);
  UGuardLock const lock(_mutexClassPathFile, UGuard::LockType1);
  bool separate = classPath.empty() || classPath.back() != kSeparator;
  Stream const stream = OpenForReading(name);
  if (stream == nullptr) {
    return;
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
}

bool GetClassPath(std::string& classPath) {
  char const* const variable = std::getenv("CLASSPATH");
  if (variable == nullptr) {
    return false;
  }
  if (*variable != '\0') {
    classPath = variable;
  }
  getPathFromFile(classPath);
  return !classPath.empty();
}

bool NotFoundPathInClassPath() {
  std::unique_ptr<std::set<std::string>> const paths(getPaths());
  if (paths->empty()) {
    return false;
  }
  std::string classPath;
  if (!GetClassPath(classPath)) {
    return true;
  }
  return std::any_of(paths->begin(), paths->end(), [&classPath](std::string const& path) {
    return classPath.find(path) == std::string::npos;
  });
}

int AddPath2ClassPath() { return 0; }

int GetBeanNames(JNIEnv* env, char const* jarPath, std::list<char*>& names) {
  BeanIntrospector introspector;
  if (!introspector.CreateIntrospector(env)) {
    return 0;
  }
  int const count = introspector.enumJavaBeans(env, jarPath) ? introspector.getBeanCount(env) : 0;
  int delivered = 0;
  while (delivered < count) {
    auto const name = LocalRef<jstring>::Adopt(env, introspector.getBeanName(env, delivered));
    ++delivered;
    UtfChars const chars(env, name.Get());
    if (auto const exception = LocalRef<jthrowable>::Adopt(env, env->ExceptionOccurred())) {
      env->ExceptionClear();
      break;
    }
    if (chars.Get() == nullptr) {
      break;
    }
    std::size_t const size = std::strlen(chars.Get()) + 1;
    auto copy = std::make_unique<char[]>(size);
    std::memcpy(copy.get(), chars.Get(), size);
    names.push_back(copy.get());
    static_cast<void>(copy.release());
  }
  introspector.DestroyIntrospector(env);
  return delivered;
}

int GetDisplayName(char const*, char const*, char*, int) { return 1; }

}  // namespace quenlatrix::meta_object::handlers::bean
