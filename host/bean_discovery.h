#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace quenlatrix::host {

struct Discovery {
  // False when the path is no jar and no directory that can be examined.
  bool isReadable = false;
  // Class names, sorted, UTF-8; empty when there are none.
  std::vector<std::string> names;
};

// The bean classes in a jar or below a directory, asked from the library itself: the plug-in's
// interface doesn't carry it. Attaches and detaches the calling thread.
Discovery DiscoverBeans(JavaVM* machine, const std::string& path);

}  // namespace quenlatrix::host
