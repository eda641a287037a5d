#include "meta_object/info/object_info.h"

#include <memory>
#include <utility>

#include "meta_object/info/record_io.h"

namespace quenlatrix::meta_object::info {
namespace {

constexpr std::size_t kTrailingBytes = 8;

bool WriteProperty(RecordWriter& out, const Property& property) {
  void* record = nullptr;
  int size = 0;
  if (!property.Serialize(&record, &size)) {
    return false;
  }
  const std::unique_ptr<char[]> owned(static_cast<char*>(record));
  out.Number(static_cast<std::uint64_t>(size));
  out.Bytes(record, static_cast<std::size_t>(size));
  return true;
}

// Memory follows what the record holds, never what its counts claim.
bool ReadProperties(RecordReader& in, ObjectInfo& target) {
  std::int64_t count = 0;
  if (!in.Number(count)) {
    return false;
  }
  for (; count > 0; --count) {
    std::uint64_t size = 0;
    if (!in.Number(size)) {
      return false;
    }
    if (size == 0) {
      return true;
    }
    const unsigned char* record = in.Take(size);
    auto property = std::make_unique<Property>();
    if (record == nullptr || !property->Deserialize(record, in.LengthOf(size))) {
      return false;
    }
    target.properties.push_back(property.get());
    static_cast<void>(property.release());
  }
  return in.Take(kTrailingBytes) != nullptr;
}

}  // namespace

ObjectInfo::ObjectInfo(const ObjectInfo& other) : ObjectInfo() { *this = other; }

ObjectInfo::ObjectInfo(ObjectInfo&& other) noexcept : ObjectInfo() { *this = std::move(other); }

ObjectInfo::~ObjectInfo() {
  for (Property* property : properties) {
    delete property;
  }
}

ObjectInfo& ObjectInfo::operator=(const ObjectInfo& other) {
  if (this == &other) {
    return *this;
  }
  ObjectInfo copy;
  copy.infoKind = other.infoKind;
  copy.description = other.description;
  copy.flagA = other.flagA;
  copy.flagB = other.flagB;
  copy.note = other.note;
  copy.properties.reserve(other.properties.size());
  for (const Property* property : other.properties) {
    if (property != nullptr) {
      copy.properties.push_back(new Property(*property));
    }
  }
  return *this = std::move(copy);
}

ObjectInfo& ObjectInfo::operator=(ObjectInfo&& other) noexcept {
  if (this != &other) {
    Clear();
    std::swap(infoKind, other.infoKind);
    std::swap(description, other.description);
    std::swap(flagA, other.flagA);
    std::swap(flagB, other.flagB);
    std::swap(note, other.note);
    std::swap(properties, other.properties);
  }
  return *this;
}

void ObjectInfo::Clear() {
  infoKind = 2;
  description = WideString();
  flagA = true;
  flagB = false;
  note = WideString();
  for (Property* property : properties) {
    delete property;
  }
  properties.clear();
}

bool ObjectInfo::Serialize(void** buffer, int* size) const {
  if (buffer == nullptr || size == nullptr) {
    return false;
  }
  RecordWriter out;
  out.Number(infoKind);
  out.Text(description);
  out.Flag(flagA);
  out.Flag(flagB);
  out.Text(note);
  out.Number(static_cast<std::uint64_t>(properties.size()));
  for (const Property* property : properties) {
    if (property != nullptr && !WriteProperty(out, *property)) {
      return false;
    }
  }
  out.Zeros(kTrailingBytes);
  return out.Release(buffer, size);
}

bool ObjectInfo::Deserialize(void* buffer) { return Deserialize(buffer, RecordReader::kTrusted); }

bool ObjectInfo::Deserialize(const void* buffer, std::size_t size) {
  if (buffer == nullptr) {
    return false;
  }
  RecordReader in(buffer, size);
  ObjectInfo read;
  read.description = description;
  read.note = note;
  if (!in.Number(read.infoKind) || !in.Text(read.description) || !in.Flag(read.flagA) ||
      !in.Flag(read.flagB) || !in.Text(read.note) || !ReadProperties(in, read)) {
    return false;
  }
  read.properties.insert(read.properties.begin(), properties.begin(), properties.end());
  properties.clear();
  *this = std::move(read);
  return true;
}

}  // namespace quenlatrix::meta_object::info
