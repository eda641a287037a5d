#include "meta_object/info/property.h"

#include <utility>

#include "meta_object/info/record_io.h"

namespace quenlatrix::meta_object {
namespace {

constexpr std::size_t kTrailingBytes = 2;

}  // namespace

Property::Property(WideString name, WideString value, bool flag)
    : name(std::move(name)), value(std::move(value)), flag(flag) {}

Property::~Property() = default;

bool Property::Serialize(void** buffer, int* size) const {
  if (buffer == nullptr || size == nullptr) {
    return false;
  }
  info::RecordWriter out;
  out.Text(name);
  out.Number(code);
  out.Text(value);
  out.Number(number);
  out.Flag(flag);
  out.Zeros(kTrailingBytes);
  return out.Release(buffer, size);
}

bool Property::Deserialize(void* buffer) {
  return Deserialize(buffer, info::RecordReader::kTrusted);
}

bool Property::Deserialize(const void* buffer, std::size_t size) {
  if (buffer == nullptr) {
    return false;
  }
  info::RecordReader in(buffer, size);
  Property read(*this);
  const bool whole = in.Text(read.name) && in.Number(read.code) && in.Text(read.value) &&
                     in.Number(read.number) && in.Flag(read.flag) &&
                     in.Take(kTrailingBytes) != nullptr;
  if (whole) {
    *this = std::move(read);
  }
  return whole;
}

}  // namespace quenlatrix::meta_object
