#include "host/utf8.h"

#include <bit>
#include <cstdint>

namespace quenlatrix::host {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool IsCharacter(std::uint32_t code) {
  return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

// The bytes of the sequence that `first` opens; 0 when it opens none.
std::size_t SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  if (first >= 0xF0 && first < 0xF5) return 4;
  return 0;
}

// Reads the sequence at `at`; false when the bytes there are none.
bool ReadSequence(std::string_view text, std::size_t at, std::uint32_t& code, std::size_t& length) {
  static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto first = static_cast<unsigned char>(text[at]);
  length = SequenceLength(first);
  if (length == 0 || length > text.size() - at) return false;
  code = length == 1 ? first : first & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[at + i]);
    if ((next & 0xC0u) != 0x80u) return false;
    code = (code << 6) | (next & 0x3Fu);
  }
  return code >= kLeast[length] && IsCharacter(code);
}

void AppendByte(std::string& out, std::uint32_t byte) { out.push_back(static_cast<char>(byte)); }

}  // namespace

std::wstring Utf8ToWide(std::string_view text) {
  std::wstring wide;
  wide.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    std::uint32_t code = 0;
    std::size_t length = 0;
    if (!ReadSequence(text, at, code, length)) {
      code = kReplacement;
      length = 1;
    }
    wide.push_back(static_cast<wchar_t>(code));
    at += length;
  }
  return wide;
}

std::string WideToUtf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (const wchar_t character : text) {
    auto code = std::bit_cast<std::uint32_t>(character);
    if (!IsCharacter(code)) code = kReplacement;
    if (code < 0x80) {
      AppendByte(out, code);
      continue;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    AppendByte(out, ((0xFF00u >> (more + 1)) & 0xFFu) | (code >> (6 * more)));
    for (int i = more - 1; i >= 0; --i) AppendByte(out, 0x80u | ((code >> (6 * i)) & 0x3Fu));
  }
  return out;
}

WideString ToWideString(std::string_view text) { return WideString(Utf8ToWide(text).c_str()); }

std::string ToUtf8(const WideString& text) {
  const wchar_t* characters = text.getWCharPtr();
  return characters == nullptr ? std::string() : WideToUtf8(characters);
}

}  // namespace quenlatrix::host
