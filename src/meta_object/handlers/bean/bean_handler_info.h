#pragma once

#include "meta_object/info/handler_info.h"

namespace quenlatrix::meta_object::handlers::bean {

// The description of this plug-in: its names, and where its file lies. Filled once, by InitHandler,
// before other threads read it.
class BeanHandlerInfo : public info::HandlerInfo {
 public:
  BeanHandlerInfo() = default;
  ~BeanHandlerInfo() override = default;

  // Stores the handle of the plug-in's own loaded image and fills the description from it. A null
  // handle empties all five texts; a handle whose file can't be found leaves the path and the
  // directory empty.
  void Initialize(void* moduleHandle);

  // The plug-in's own loaded image; null until Initialize. Also the owner token under which objects
  // are registered with the host's collector.
  void* moduleHandle = nullptr;
};

}  // namespace quenlatrix::meta_object::handlers::bean
