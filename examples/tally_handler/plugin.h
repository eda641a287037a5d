#pragma once

#include "meta_object/environment.h"
#include "meta_object/info/handler_info.h"

// What the host has handed over. Filled during its single-threaded start and only read afterwards.
struct Plugin {
  quenlatrix::meta_object::Environment* environment = nullptr;
  void* moduleHandle = nullptr;
  quenlatrix::meta_object::info::HandlerInfo info;
};

extern Plugin plugin;
