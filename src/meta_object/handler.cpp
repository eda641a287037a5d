#include "meta_object/handler.h"

#include <string>

#include "meta_object/no_throw.h"
#include "text/whole_text.h"

namespace quenlatrix::meta_object {

Handler::Handler() : objectLock(Mutex::Private) {}

Handler::~Handler() { objectLock.DestroyMutex(); }

HandlerStatus Handler::OnConstructObject(const char* /*identity*/,
                                         context::CreateObjectContext* /*context*/) {
  return handler_status::kSuccess;
}

HandlerStatus Handler::OnDestructObject() { return handler_status::kSuccess; }

void Handler::SetObjectIdentity(const Identity& identity) {
  NoThrow([&] { SetIdentity(identity.identity); });
}

void Handler::SetIdentity(const char* text) {
  SetIdentity(std::string_view(text == nullptr ? "" : text));
}

void Handler::SetIdentity(std::string_view text) {
  const MutexLock lock(objectLock);
  if (objectIdentity.identity != text) {
    objectIdentity.SetIdentity(std::string(text));
  }
}

bool Handler::IsValidObject() {
  const MutexLock lock(objectLock);
  return NoThrow(false, [&] { return IsValidObjectImp(); });
}

HandlerStatus Handler::CreateObject(const char* identity, context::CreateObjectContext* context) {
  {
    const MutexLock lock(objectLock);
    const HandlerStatus status = NoThrow(handler_status::kObjectNotMade, [&] {
      return IsValidObjectImp() ? handler_status::kSuccess : CreateObjectImp(identity, context);
    });
    if (status != handler_status::kSuccess) {
      return status;
    }
  }
  return NoThrow(handler_status::kObjectNotMade,
                 [&] { return OnConstructObject(identity, context); });
}

HandlerStatus Handler::AddRef() {
  const MutexLock lock(objectLock);
  ++referenceCount;
  return handler_status::kSuccess;
}

HandlerStatus Handler::Release() {
  {
    const MutexLock lock(objectLock);
    if (referenceCount == 0) {
      return handler_status::kReleasedTwice;
    }
    if (referenceCount > 1) {
      --referenceCount;
      return handler_status::kSuccess;
    }
  }
  NoThrow([&] { OnDestructObject(); });
  const MutexLock lock(objectLock);
  NoThrow([&] { ReleaseObjectImp(); });
  referenceCount = 0;
  return handler_status::kLastReferenceReleased;
}

Handler::Attribute::Attribute(const ZuText& handlerName, const ZuText& key, const ZuText& value) {
  text::SetWhole(this->key, key);
  text::SetWhole(this->value, value);
  text::SetWhole(this->handlerName, handlerName);
}

Handler::Attribute::Attribute(const Attribute& other)
    : Attribute(other.handlerName, other.key, other.value) {}

Handler::Attribute& Handler::Attribute::operator=(const Attribute& other) {
  Attribute copy(other);
  key.Swap(copy.key);
  value.Swap(copy.value);
  handlerName.Swap(copy.handlerName);
  return *this;
}

std::uint32_t Handler::GetReferenceCount() {
  const MutexLock lock(objectLock);
  return referenceCount;
}

}  // namespace quenlatrix::meta_object
