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
  ZuTextLocal(ZuText const& o) : ZuTextLocal() { ZuText::SetEqualTo(o); }
  ZuTextLocal(ZuTextLocal const& o) : ZuTextLocal(static_cast<ZuText const&>(o)) {}
  ZuTextLocal(char const* s) : ZuTextLocal() { ZuText::operator=(s); }
  ZuTextLocal(char c) : ZuTextLocal() { ZuText::operator=(c); }
  // The storage goes with the object: nothing is left to write to or to free.
  ~ZuTextLocal() override { buffer = nullptr; }

  using ZuText::operator=;
  ZuTextLocal& operator=(ZuTextLocal const& o) {
    if (this != &o) {
      ZuText::operator=(o);
    }
    return *this;
  }
  ZuTextLocal& operator=(ZuText const& o) {
    ZuText::operator=(o);
    return *this;
  }
  ZuTextLocal& operator=(char const* s) {
    ZuText::operator=(s);
    return *this;
  }
  ZuTextLocal& operator=(unsigned char const* s) {
    ZuText::operator=(reinterpret_cast<char const*>(s));
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
