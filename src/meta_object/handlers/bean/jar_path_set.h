#pragma once

#include <set>
#include <string>

#include "meta_object/handlers/bean/until_unloaded.h"
#include "os/mutex.h"

// The process-wide record of which jar file holds which bean. Every function and every operation
// below may be called by any thread.

// One bean; entries are ordered, byte by byte, by the bean's name alone.
class JarPathBean {
 public:
  bool operator()(const JarPathBean& left, const JarPathBean& right) const;

  // The jar file that holds the bean.
  std::string jarPath;
  // The bean's class name.
  std::string beanName;
  // Whether the jar takes part in the class-path check.
  bool marked = false;
};

// Where its mutex could not be made nothing is recorded, and so nothing found.
class JarPathBeanSet {
 public:
  JarPathBeanSet();
  ~JarPathBeanSet();

  JarPathBeanSet(const JarPathBeanSet&) = delete;
  JarPathBeanSet& operator=(const JarPathBeanSet&) = delete;

  // Adds the entry, unless there is one with its bean name: that one stays as it is.
  void Add(JarPathBean entry);
  // The jar path of the bean, empty when the bean is unknown.
  std::string FindJarPath(const std::string& beanName) const;
  // The jar paths of all marked entries.
  std::set<std::string> MarkedPaths() const;
  void Clear();

 private:
  std::set<JarPathBean, JarPathBean> beans GUARDED_BY(mutex);
  mutable StaticMutex mutex;
};

// Made when the plug-in is loaded; what the functions below work on.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the interface's own name
extern quenlatrix::meta_object::handlers::bean::UntilUnloaded<JarPathBeanSet> _JarPathBeanSet;

// Records, not marked, that `jarPath` holds the bean. The first jar path recorded for a bean stays.
void addJarPath(std::string& jarPath, std::string& beanName);

// The jar path of the bean, empty when the bean is unknown.
std::string getJarPath(const std::string& beanName);

// The jar paths of all marked entries, as a new set that the caller deletes.
std::set<std::string>* getPaths();

// Removes every entry.
void cleanJarPath();

// Accepted and without effect.
void mark(std::string& jarPath);
void remove_unmarked();

namespace quenlatrix::meta_object::handlers::bean {

// Whether a jar path, not an empty one, is recorded for the class that the identity text names.
bool IsValidBeanName(const char* identity);

}  // namespace quenlatrix::meta_object::handlers::bean
