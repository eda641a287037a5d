#include "text/whole_text.h"

#include <new>

namespace quenlatrix::text {

void SetWhole(ZuText& to, std::string_view s) {
  to.SetEqualTo(s.data(), s.size(), 0);
  if (to.GetUsableDataSize() != s.size() && !to.IsBorrowed()) {
    throw std::bad_alloc();
  }
}

void SetWhole(ZuText& to, const char* s) {
  SetWhole(to, s == nullptr ? std::string_view() : std::string_view(s));
}

void SetWhole(ZuText& to, const ZuText& from) {
  to = from;
  if (!to.Equals(from, true) && !to.IsBorrowed()) {
    throw std::bad_alloc();
  }
}

}  // namespace quenlatrix::text
