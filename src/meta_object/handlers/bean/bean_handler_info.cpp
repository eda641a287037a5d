#include "meta_object/handlers/bean/bean_handler_info.h"

namespace quenlatrix::meta_object::handlers::bean {

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
  FinishWith(moduleHandle);
}

}  // namespace quenlatrix::meta_object::handlers::bean
