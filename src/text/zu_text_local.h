#pragma once

#include "text/zu_text.h"

// Text of at most N - 1 characters whose storage is inside the object: it never touches the heap.
// What is assigned or formatted into the empty text is cut to fit; what is appended without room
// changes nothing; a longer ZuText isn't taken over (construction leaves the text empty).
//
// Threads: as ZuText.
template <unsigned long N>
class ZuTextLocal : public ZuText {
 public:
  ZuTextLocal() { InitTextLocal(); }
  ZuTextLocal(const ZuText& o) : ZuTextLocal() { ZuText::SetEqualTo(o); }
  ZuTextLocal(const ZuTextLocal& o) : ZuTextLocal(static_cast<const ZuText&>(o)) {}
  ZuTextLocal(const char* s) : ZuTextLocal() { ZuText::operator=(s); }
  ZuTextLocal(char c) : ZuTextLocal() { ZuText::operator=(c); }
  // The storage goes with the object: nothing is left to write to or to free.
  ~ZuTextLocal() override { buffer = nullptr; }

  using ZuText::operator=;
  ZuTextLocal& operator=(const ZuTextLocal& o) {
    if (this != &o) {
      ZuText::operator=(o);
    }
    return *this;
  }
  ZuTextLocal& operator=(const ZuText& o) {
    ZuText::operator=(o);
    return *this;
  }
  ZuTextLocal& operator=(const char* s) {
    ZuText::operator=(s);
    return *this;
  }
  ZuTextLocal& operator=(const unsigned char* s) {
    ZuText::operator=(reinterpret_cast<const char*>(s));
    return *this;
  }
  ZuTextLocal& operator=(char c) {
    ZuText::operator=(c);
    return *this;
  }

  // The storage isn't handed out: null, and nothing changes.
  void* ReleaseBuffer(unsigned long*, unsigned long*) override { return nullptr; }
  // Clears the text alone.
  void ReleaseData() override { Clear(); }

  // Makes the inner storage the buffer again, empty.
  void InitTextLocal() {
    Adopt(storage, N, 0);
    storage[0] = '\0';
  }

 private:
  unsigned char storage[N];
};

extern template class ZuTextLocal<31>;
extern template class ZuTextLocal<63>;
extern template class ZuTextLocal<255>;
