#include "text/named_value.h"

#include <cstring>
#include <string_view>

namespace {

// What `value` becomes: a view into `data`.
std::string_view FindNamedValue(const char* data, const char* name, char sep) {
  const std::size_t nameLength = std::strlen(name);
  if (nameLength == 0) {
    return {};
  }
  while (data != nullptr && (data = std::strstr(data, name)) != nullptr) {
    data += nameLength;
    data += std::strspn(data, " ");
    if (*data == '=') {
      ++data;
      const char ends[] = {'\r', '\n', sep, '\0'};
      return {data, std::strcspn(data, ends)};
    }
    data = std::strchr(data, sep);
  }
  return {};
}

}  // namespace

ZuText& ScanGetPostCookie(const ZuText& data, const ZuText& name, ZuText& value, char sep) {
  const std::string_view found = FindNamedValue(data.GetTextEx(), name.GetTextEx(), sep);
  value.SetEqualTo(found.data(), found.size(), 0);
  return value;
}
