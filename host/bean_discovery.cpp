#include "host/bean_discovery.h"

#include <list>
#include <memory>

#include "host/utf8.h"
#include "meta_object/handlers/bean/bean_introspector.h"
#include "meta_object/handlers/bean/class_path.h"
#include "meta_object/handlers/bean/java_text.h"

namespace quenlatrix::host {

namespace bean = meta_object::handlers::bean;

namespace {

// No name is found either way: was there anything to look at?
bool IsReadable(JNIEnv* env, const std::string& path) {
  bean::BeanIntrospector introspector;
  const bool isReadable =
      introspector.CreateIntrospector(env) && introspector.enumJavaBeans(env, path.c_str());
  introspector.DestroyIntrospector(env);
  return isReadable;
}

}  // namespace

Discovery DiscoverBeans(JavaVM* machine, const std::string& path) {
  Discovery found;
  void* env = nullptr;
  if (machine->AttachCurrentThread(&env, nullptr) != JNI_OK) return found;
  auto* const jni = static_cast<JNIEnv*>(env);
  std::list<char*> names;
  bean::GetBeanNames(jni, path.c_str(), names);
  for (char* const name : names) {
    const std::unique_ptr<char[]> owned(name);
    WideString wide;
    bean::AppendModifiedUtf8(name, wide);
    found.names.push_back(ToUtf8(wide));
  }
  found.isReadable = !found.names.empty() || IsReadable(jni, path);
  machine->DetachCurrentThread();
  return found;
}

}  // namespace quenlatrix::host
