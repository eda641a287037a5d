#pragma once

#include <string_view>

#include "meta_object/type/string_values.h"

namespace quenlatrix::host {

// A text on its way to the plug-in, which passes on the narrow form of its value text. That form
// has no more bytes than the text has characters, so a text beyond ASCII goes out with as many
// blanks behind it as its bytes need: those are cut off, and nothing of the text is. GetDesc
// answers the text itself. A value of one thread, like every other.
class OutgoingText : public meta_object::type::String {
 public:
  // `text` is UTF-8. An empty element of an array goes out as the marker that the plug-in knows.
  // Throws HostError (Failed) for a character that the locale's encoding lacks.
  OutgoingText(const meta_object::TypeDesc& desc, std::string_view text, bool isElement);

  Object* Clone() const override;
  void GetValueAsString(WideString& text) const override;

 private:
  WideString outgoing;
};

}  // namespace quenlatrix::host
