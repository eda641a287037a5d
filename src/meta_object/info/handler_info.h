#pragma once

#include "text/wide_string.h"

namespace quenlatrix::meta_object::info {

// What a handler plug-in says about itself. The host calls the getters through the table of virtual
// functions, so their order is fixed. Filled once at start-up; the getters keep narrow copies and
// so are for one thread at a time.
class HandlerInfo {
 public:
  HandlerInfo() = default;
  HandlerInfo(const HandlerInfo& other);
  virtual ~HandlerInfo();
  HandlerInfo& operator=(const HandlerInfo& other);

  // The narrow form of each text, valid until the text changes; null when the text is empty or has
  // no narrow form. Path and directory are the very bytes of the file's name, null where the
  // process's encoding can't read them.
  virtual const char* GetHandlerName() const;
  virtual const char* GetHandlerType() const;
  virtual const char* GetDescription() const;
  virtual const char* GetServerPath() const;
  virtual const char* GetServerDirectory() const;

  // Ends the filling: path and directory from the plug-in's image, both empty when its file can't
  // be found, and every text's narrow form, so that readers on any thread change nothing.
  void FinishWith(void* moduleHandle);

  WideString handlerName;
  WideString handlerType;
  WideString description;
  WideString serverPath;       // the plug-in's file
  WideString serverDirectory;  // the directory that holds the plug-in's file
  void* firstReserved = nullptr;
  void* secondReserved = nullptr;
};

}  // namespace quenlatrix::meta_object::info
