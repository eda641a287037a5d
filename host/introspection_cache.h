#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "host/monitor.h"
#include "meta_object/info/cached_method_info.h"

namespace quenlatrix::meta_object {
class Identity;
}

namespace quenlatrix::host {

// The catalogue of each bean class, filled once by the plug-in and read by all: what stands behind
// the six cache callbacks of the environment. The key is the identity's core: the handler and its
// data, the class; of a class that its name doesn't find the whole identity, with the attribute
// that tells it apart (see ClassFacts).
//
// A class is filled by the first thread that opens it; others that open it meanwhile wait. When the
// fill fails, its entries are dropped and the turn goes to one of those that wait, so each of them
// answers for itself. A thread that opens once more the class that it is filling is refused, as it
// would wait for itself. A fill that is closed without having been reported as done has failed. A
// record can be read when its fill is done, and then stays as it is until it is forgotten, or for
// this object's life. Any thread may call any operation.
class IntrospectionCache {
 public:
  IntrospectionCache();
  ~IntrospectionCache();
  IntrospectionCache(const IntrospectionCache&) = delete;
  IntrospectionCache& operator=(const IntrospectionCache&) = delete;

  // True: the class can be read (mustIntrospect false), or the caller has to fill it now
  // (mustIntrospect true) with Add and end with Done.
  bool Open(const meta_object::Identity& identity, bool& mustIntrospect);
  // Ends the calling thread's fill. False when it is not filling this class.
  bool Done(const meta_object::Identity& identity, bool succeeded);
  // Undoes one Open; false for a class never opened.
  bool Close(const meta_object::Identity& identity);
  // Appends a copy of the entry; false when the calling thread is not filling this class.
  bool Add(const meta_object::Identity& identity,
           const meta_object::info::cache::CachedMethodInfo& method);
  // The entry at the position that a method identifier names, or null.
  const meta_object::info::cache::CachedMethodInfo* GetMethod(const meta_object::Identity& identity,
                                                              const char* methodId);
  // The class's record, or null while it isn't completely filled.
  const meta_object::info::cache::CachedObjectInfo* GetObject(
      const meta_object::Identity& identity);
  // Frees what is kept under that identity. To be called when nobody uses the class any more.
  void Forget(const std::string& identity);

 private:
  struct Entry;

  // Null for a class never opened.
  Entry* Find(const meta_object::Identity& identity) REQUIRES(monitor);

  Monitor monitor;
  std::map<std::string, std::unique_ptr<Entry>, std::less<>> entries GUARDED_BY(monitor);
};

}  // namespace quenlatrix::host
