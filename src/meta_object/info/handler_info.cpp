#include "meta_object/info/handler_info.h"

#include <string>

#include "os/module.h"

namespace quenlatrix::meta_object::info {

namespace {

constexpr unsigned long kPathBufferSize = 1024;

std::string DirectoryOf(const std::string& path) {
  std::size_t cut = path.rfind('\\');
  if (cut == std::string::npos) {
    cut = path.rfind('/');
  }
  return path.substr(0, cut);
}

// A copied text makes its narrow form anew, which may cut it: a path keeps its bytes.
WideString CopyOfPath(const WideString& path) {
  WideString copy;
  copy.assignBytes(path.getCharPtr());
  if (copy.compare(path.getWCharPtr(), 0) != 0) {
    return path;
  }
  return copy;
}

}  // namespace

HandlerInfo::HandlerInfo(const HandlerInfo& other) { *this = other; }

HandlerInfo::~HandlerInfo() = default;

HandlerInfo& HandlerInfo::operator=(const HandlerInfo& other) {
  if (this != &other) {
    handlerName = other.handlerName;
    handlerType = other.handlerType;
    description = other.description;
    serverPath = CopyOfPath(other.serverPath);
    serverDirectory = CopyOfPath(other.serverDirectory);
    firstReserved = other.firstReserved;
    secondReserved = other.secondReserved;
  }
  return *this;
}

const char* HandlerInfo::GetHandlerName() const { return handlerName.getCharPtr(); }

const char* HandlerInfo::GetHandlerType() const { return handlerType.getCharPtr(); }

const char* HandlerInfo::GetDescription() const { return description.getCharPtr(); }

const char* HandlerInfo::GetServerPath() const { return serverPath.getCharPtr(); }

const char* HandlerInfo::GetServerDirectory() const { return serverDirectory.getCharPtr(); }

void HandlerInfo::FinishWith(void* moduleHandle) {
  char path[kPathBufferSize] = "";
  GetModuleFileName(moduleHandle, path, sizeof path);
  serverPath.assignBytes(path);
  serverDirectory.assignBytes(DirectoryOf(path).c_str());
  GetHandlerName();
  GetHandlerType();
  GetDescription();
}

}  // namespace quenlatrix::meta_object::info
