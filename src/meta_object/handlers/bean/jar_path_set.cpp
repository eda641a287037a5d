#include "meta_object/handlers/bean/jar_path_set.h"

#include <utility>

#include "meta_object/identity.h"

bool JarPathBean::operator()(const JarPathBean& left, const JarPathBean& right) const {
  return left.beanName < right.beanName;
}

JarPathBeanSet::JarPathBeanSet() : mutex(Mutex::Private) {}

JarPathBeanSet::~JarPathBeanSet() { mutex.DestroyMutex(); }

void JarPathBeanSet::Add(JarPathBean entry) {
  const MutexLock lock(mutex);
  if (lock.IsHeld()) {
    beans.insert(std::move(entry));
  }
}

std::string JarPathBeanSet::FindJarPath(const std::string& beanName) const {
  JarPathBean wanted;
  wanted.beanName = beanName;
  const MutexLock lock(mutex);
  const auto found = beans.find(wanted);
  return found != beans.end() ? found->jarPath : std::string();
}

std::set<std::string> JarPathBeanSet::MarkedPaths() const {
  std::set<std::string> paths;
  const MutexLock lock(mutex);
  for (const JarPathBean& bean : beans) {
    if (bean.marked) {
      paths.insert(bean.jarPath);
    }
  }
  return paths;
}

void JarPathBeanSet::Clear() {
  const MutexLock lock(mutex);
  beans.clear();
}

void addJarPath(std::string& jarPath, std::string& beanName) {
  JarPathBean bean;
  bean.jarPath = jarPath;
  bean.beanName = beanName;
  _JarPathBeanSet->Add(std::move(bean));
}

std::string getJarPath(const std::string& beanName) {
  return _JarPathBeanSet->FindJarPath(beanName);
}

std::set<std::string>* getPaths() {
  return new std::set<std::string>(_JarPathBeanSet->MarkedPaths());
}

void cleanJarPath() { _JarPathBeanSet->Clear(); }

void mark(std::string& /*jarPath*/) {}

void remove_unmarked() {}

namespace quenlatrix::meta_object::handlers::bean {

bool IsValidBeanName(const char* identity) {
  return !getJarPath(Identity(identity).handlerData).empty();
}

}  // namespace quenlatrix::meta_object::handlers::bean
