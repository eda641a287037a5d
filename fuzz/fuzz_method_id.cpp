#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "meta_object/handlers/bean/method_id.h"
#include "meta_object/wide_view.h"

// Any identifier and any Java type name reads without harm, and what is built is found again.
namespace {

using namespace quenlatrix::meta_object::handlers::bean;
using quenlatrix::meta_object::MethodType;
using quenlatrix::meta_object::TypeDesc;
using quenlatrix::meta_object::ViewOf;

bool IsAscii(std::wstring_view text) {
  return text.find_first_not_of(
             L"\t\n\r !\"#$%&'()*+,-./0123456789;<=>?@[\\]^_`{|}~"
             L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz") == std::wstring_view::npos;
}

void CheckIdentifier(const WideString& id) {
  WideString whole;
  WideString bare;
  MethodType type = MethodType::Set;
  Require(ParseMethodID(id, whole, type, false));
  MethodType again = MethodType::Set;
  Require(ParseMethodID(id, bare, again, true) && type == again);
  Require(ViewOf(bare).size() <= ViewOf(whole).size());
  unsigned long index = 0;
  ReadMethodIndex(id, index);
  WideString mangled(bare);
  mangleMethodName(mangled, type);
  Require(ViewOf(mangled).ends_with(ViewOf(bare)));
}

// A plain name comes back from its identifier with kind and index.
void CheckBuilding(const WideString& name, std::uint8_t seed) {
  const auto type = static_cast<MethodType>(seed % 3);
  WideString id;
  Require(CreateMethodID(id, name, type, seed));
  CheckIdentifier(id);
  if (ViewOf(name).empty() || !IsAscii(ViewOf(name))) {
    return;
  }
  WideString read;
  MethodType readType = MethodType::Invoke;
  Require(ParseMethodID(id, read, readType, true));
  Require(ViewOf(read) == ViewOf(name) && readType == type);
  unsigned long index = 0;
  Require(ReadMethodIndex(id, index) && index == seed);
}

void CheckTypeName(const std::wstring& name) {
  const TypeDesc desc = GetTypeDesc(name.c_str());
  const std::size_t brackets = std::min(name.find_first_not_of(L'['), name.size());
  Require((desc.arrayInfo == nullptr ? 0 : desc.arrayInfo->dimensions.size()) == brackets);
  Require(ViewOf(desc.displayName).ends_with(ViewOf(desc.typeName)));
  Require(desc.key == TypeDesc::Key::Object || !ViewOf(desc.typeName).empty());
  for (const int length : {0, static_cast<int>(name.size()) / 2}) {
    std::wstring trimmed = name;
    TrimJavaString(trimmed.data(), length);
    Require(std::wstring_view(trimmed.c_str()).size() <= name.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::setlocale(LC_CTYPE, "C.UTF-8");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string narrow(reinterpret_cast<const char*>(bytes), size);
  const std::wstring latin(bytes, bytes + size);
  const std::wstring name(latin.c_str());
  for (const WideString& text : {WideString(narrow.c_str()), WideString(name.c_str())}) {
    CheckIdentifier(text);
    CheckBuilding(text, size == 0 ? 0 : bytes[size - 1]);
  }
  CheckTypeName(name);
  wchar_t* wide = nullptr;
  CharPtrToWideString(narrow.c_str(), &wide);
  const std::unique_ptr<wchar_t[]> owned(wide);
  int number = 0;
  Require(Type2Num(ZuText(narrow.c_str()), number) && number >= 0 && number <= 9);
  return 0;
}
