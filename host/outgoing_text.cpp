#include "host/outgoing_text.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "host/host_error.h"
#include "host/utf8.h"

namespace quenlatrix::host {

namespace {

constexpr const wchar_t* kEmptyElement = L"4DCDFAD3_25A9_11D3_8062_00C04F5219CB";

}  // namespace

OutgoingText::OutgoingText(const meta_object::TypeDesc& desc, std::string_view text, bool isElement)
    : String(desc) {
  std::wstring wide = Utf8ToWide(text);
  SetValue(WideString(wide.c_str()));
  const std::size_t bytes = std::wcstombs(nullptr, wide.c_str(), 0);
  if (bytes == static_cast<std::size_t>(-1)) {
    throw HostError(ExitStatus::Failed,
                    "the text \"" + std::string(text) +
                        "\" has characters that the locale's encoding lacks; run with a UTF-8 "
                        "locale, such as LC_ALL=C.UTF-8");
  }
  wide.resize(std::max(bytes, wide.size()), L' ');
  if (wide.empty() && isElement) wide = kEmptyElement;
  outgoing.assign(wide.c_str());
}

meta_object::type::Object* OutgoingText::Clone() const { return new OutgoingText(*this); }

void OutgoingText::GetValueAsString(WideString& text) const { text = outgoing; }

}  // namespace quenlatrix::host
