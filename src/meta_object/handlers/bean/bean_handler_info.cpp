#include "meta_object/handlers/bean/bean_handler_info.h"

#include <string>

#include "os/module.h"

namespace quenlatrix::meta_object::handlers::bean {

namespace {

constexpr unsigned long kPathBufferSize = 1024;

std::string DirectoryOf(const std::string& path) {
  std::size_t cut = path.rfind('\\');
  if (cut == std::string::npos) {
    cut = path.rfind('/');
  }
  return path.substr(0, cut);
}

}  // namespace

void BeanHandlerInfo::Initialize(void* moduleHandle) {
  this->moduleHandle = moduleHandle;
  if (moduleHandle == nullptr) {
    for (WideString* text :
         {&handlerName, &handlerType, &description, &serverPath, &serverDirectory}) {
      text->assign(static_cast<const wchar_t*>(nullptr));
    }
    return;
  }
  handlerName.assign("Java Bean Object Handler");
  description.assign("Meta object native object handler plugin for Java Beans.");
  handlerType.assign("JAVABEAN");
  char path[kPathBufferSize] = "";
  GetModuleFileName(moduleHandle, path, sizeof path);
  serverPath.assign(path);
  serverDirectory.assign(DirectoryOf(path).c_str());
  // The narrow forms are made here, once, so that later readers on any thread change nothing.
  GetHandlerName();
  GetHandlerType();
  GetDescription();
  GetServerPath();
  GetServerDirectory();
}

}  // namespace quenlatrix::meta_object::handlers::bean
