#include "os/tls_slot.h"

#include <pthread.h>

namespace {

constexpr OSTLSDATA kNoKey = 0xFFFFFFFF;

pthread_key_t KeyOf(OSTLSDATA data) { return static_cast<pthread_key_t>(data); }

}  // namespace

TlsSlot::TlsSlot() : data(kNoKey) { InitTLSData(); }

TlsSlot::~TlsSlot() { CleanUpTLSData(); }

bool TlsSlot::InitTLSData() {
  pthread_key_t key = 0;
  data = pthread_key_create(&key, nullptr) == 0 ? key : kNoKey;
  return IsValidTLSData();
}

void TlsSlot::CleanUpTLSData() {
  if (IsValidTLSData()) {
    pthread_key_delete(KeyOf(data));
    data = kNoKey;
  }
}

bool TlsSlot::IsValidTLSData() const { return data != kNoKey; }

void* TlsSlot::GetTlsValue() const {
  return IsValidTLSData() ? pthread_getspecific(KeyOf(data)) : nullptr;
}

bool TlsSlot::SetTlsValue(void* value) {
  return IsValidTLSData() && pthread_setspecific(KeyOf(data), value) == 0;
}
