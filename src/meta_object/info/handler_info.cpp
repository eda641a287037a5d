#include "meta_object/info/handler_info.h"

namespace quenlatrix::meta_object::info {

HandlerInfo::~HandlerInfo() = default;

const char* HandlerInfo::GetHandlerName() const { return handlerName.getCharPtr(); }

const char* HandlerInfo::GetHandlerType() const { return handlerType.getCharPtr(); }

const char* HandlerInfo::GetDescription() const { return description.getCharPtr(); }

const char* HandlerInfo::GetServerPath() const { return serverPath.getCharPtr(); }

const char* HandlerInfo::GetServerDirectory() const { return serverDirectory.getCharPtr(); }

}  // namespace quenlatrix::meta_object::info
