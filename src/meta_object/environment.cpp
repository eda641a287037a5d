#include "meta_object/environment.h"

#include <cstring>
#include <utility>

#include "text/whole_text.h"

namespace quenlatrix::meta_object {

Environment& Environment::operator=(const Environment& other) {
  if (this == &other) {
    return *this;
  }
  // All that needs memory goes first.
  std::list<ZuText> texts;
  for (const ZuText& text : other.textList) {
    text::SetWhole(texts.emplace_back(), text);
  }
  std::list<std::unique_ptr<Handler::Attribute>> copies;
  for (const auto& attribute : other.attributes) {
    if (attribute != nullptr) {
      copies.push_back(std::make_unique<Handler::Attribute>(*attribute));
    }
  }
  WideString first(other.firstWideText);
  WideString second(other.secondWideText);
  Clear();
  textList.swap(texts);
  attributes.swap(copies);
  firstWideText = std::move(first);
  secondWideText = std::move(second);
  checkSecurity = other.checkSecurity;
  return *this;
}

void Environment::Clear() {
  hostContext = nullptr;
  attributes.clear();
  textList.clear();
  firstWideText = WideString();
  secondWideText = WideString();
  cacheOpenIntrospect = nullptr;
  cacheIntrospectDone = nullptr;
  cacheCloseIntrospect = nullptr;
  cacheAddMethodInfo = nullptr;
  cacheGetMethodInfo = nullptr;
  cacheGetObjectInfo = nullptr;
  gcRegHandlerObject = nullptr;
}

bool Environment::IsMethodCacheSupported() const {
  return hostContext != nullptr && cacheOpenIntrospect != nullptr &&
         cacheIntrospectDone != nullptr && cacheCloseIntrospect != nullptr &&
         cacheAddMethodInfo != nullptr && cacheGetMethodInfo != nullptr &&
         cacheGetObjectInfo != nullptr;
}

bool Environment::CacheOpenIntrospect(const Identity& identity, bool& mustIntrospect) const {
  return IsMethodCacheSupported() && cacheOpenIntrospect(hostContext, identity, mustIntrospect);
}

bool Environment::CacheIntrospectDone(const Identity& identity, bool succeeded) const {
  return IsMethodCacheSupported() && cacheIntrospectDone(hostContext, identity, succeeded);
}

bool Environment::CacheCloseIntrospect(const Identity& identity) const {
  return IsMethodCacheSupported() && cacheCloseIntrospect(hostContext, identity);
}

bool Environment::CacheAddMethodInfo(const Identity& identity,
                                     const info::cache::CachedMethodInfo& method) const {
  return IsMethodCacheSupported() && cacheAddMethodInfo(hostContext, identity, method);
}

const info::cache::CachedMethodInfo* Environment::CacheGetMethodInfo(const Identity& identity,
                                                                     const char* methodId) const {
  return IsMethodCacheSupported() ? cacheGetMethodInfo(hostContext, identity, methodId) : nullptr;
}

const info::cache::CachedObjectInfo* Environment::CacheGetObjectInfo(
    const Identity& identity) const {
  return IsMethodCacheSupported() ? cacheGetObjectInfo(hostContext, identity) : nullptr;
}

void Environment::GCRegHandlerObject(Handler* handler, const void* ownerModule) const {
  if (hostContext != nullptr && gcRegHandlerObject != nullptr) {
    gcRegHandlerObject(hostContext, handler, ownerModule);
  }
}

const char* Environment::GetAttribute(const char* key, const char* handlerName) const {
  if (key == nullptr) {
    return nullptr;
  }
  for (const auto& attribute : attributes) {
    if (attribute != nullptr && std::strcmp(attribute->key.GetTextEx(), key) == 0 &&
        (handlerName == nullptr ||
         std::strcmp(attribute->handlerName.GetTextEx(), handlerName) == 0)) {
      return attribute->value.GetTextEx();
    }
  }
  return nullptr;
}

}  // namespace quenlatrix::meta_object
