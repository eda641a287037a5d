// Reads named values out of request text of any bytes, and compares them with a plain model; texts
// in fixed storage and texts that are their own result take part.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <string>

#include "fuzz/require.h"
#include "text/named_value.h"
#include "text/zu_text_local.h"

namespace {

// The texts may hold NULs; nothing past the first counts.
std::string ModelOf(const std::string& data, const std::string& name, char sep) {
  for (std::size_t at = 0; !name.empty();) {
    at = data.find(name, at);
    if (at == std::string::npos) {
      break;
    }
    at = std::min(data.find_first_not_of(' ', at + name.size()), data.size());
    if (data[at] == '=') {
      const std::string value = data.substr(at + 1);
      return value.substr(0, value.find_first_of(std::string{sep, '\r', '\n'}));
    }
    at = data.find(sep, at);
    if (at == std::string::npos) {
      break;
    }
  }
  return "";
}

void SetBytes(ZuText& t, const std::string& bytes) { t.SetEqualTo(bytes.data(), bytes.size(), 0); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  FuzzedDataProvider input(bytes, size);
  const char sep = static_cast<char>(input.ConsumeIntegral<unsigned char>());
  const std::string nameBytes = input.ConsumeRandomLengthString(30);
  const std::string dataBytes = input.ConsumeRemainingBytesAsString();
  const std::string expected = ModelOf(dataBytes.c_str(), nameBytes.c_str(), sep);
  ZuText data;
  ZuText name;
  SetBytes(data, dataBytes);
  SetBytes(name, nameBytes);

  ZuText value("old");
  Require(&ScanGetPostCookie(data, name, value, sep) == &value);
  Require(value.GetTextEx() == expected && value.GetSize() == expected.size());

  ZuTextLocal<31> fixed("old");
  ScanGetPostCookie(data, name, fixed, sep);
  Require(fixed.GetTextEx() == expected.substr(0, 30) && fixed.GetBufferSize() == 31);

  ZuText both(data);
  ScanGetPostCookie(both, name, both, sep);
  Require(both.GetTextEx() == expected);
  ScanGetPostCookie(data, name, name, sep);
  Require(name.GetTextEx() == expected);
  return 0;
}
