#include "meta_object/info/record_io.h"

#include <algorithm>
#include <climits>
#include <string>

#include "meta_object/wide_view.h"

namespace quenlatrix::meta_object::info {

void RecordWriter::Text(const WideString& text) {
  const std::wstring_view units = ViewOf(text);
  Flag(!units.empty());
  for (const wchar_t unit : units) {
    Number(static_cast<std::uint32_t>(unit));
  }
  Number(std::uint32_t{0});
}

void RecordWriter::Bytes(const void* bytes, std::size_t count) {
  const char* first = static_cast<const char*>(bytes);
  record.insert(record.end(), first, first + count);
}

bool RecordWriter::Release(void** buffer, int* size) const {
  if (record.size() > INT_MAX) {
    return false;
  }
  char* block = new char[record.size()];
  std::ranges::copy(record, block);
  *buffer = block;
  *size = static_cast<int>(record.size());
  return true;
}

bool RecordReader::Flag(bool& flag) {
  const unsigned char* byte = Take(1);
  if (byte == nullptr) {
    return false;
  }
  flag = *byte != 0;
  return true;
}

bool RecordReader::Text(WideString& text) {
  bool present = false;
  if (!Flag(present)) {
    return false;
  }
  if (!present) {
    return Take(sizeof(std::uint32_t)) != nullptr;
  }
  std::wstring units;
  for (;;) {
    std::uint32_t unit = 0;
    if (!Number(unit)) {
      return false;
    }
    if (unit == 0) {
      break;
    }
    units += static_cast<wchar_t>(unit);
  }
  text.assign(units.c_str());
  return true;
}

const unsigned char* RecordReader::Take(std::size_t count) {
  if (count > left) {
    return nullptr;
  }
  const unsigned char* taken = next;
  next += count;
  left -= count;
  return taken;
}

}  // namespace quenlatrix::meta_object::info
