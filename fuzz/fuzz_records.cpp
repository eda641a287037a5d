#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/require.h"
#include "meta_object/info/object_info.h"
#include "meta_object/info/property.h"

// A record from outside is read whole or refused with the target as it was; what was read writes a
// record that both ways of reading take back unchanged.
namespace {

using quenlatrix::meta_object::Property;
using quenlatrix::meta_object::info::ObjectInfo;

template <typename Record>
std::vector<char> Serialized(const Record& record) {
  void* buffer = nullptr;
  int size = 0;
  Require(record.Serialize(&buffer, &size));
  const std::unique_ptr<char[]> owned(static_cast<char*>(buffer));
  return {owned.get(), owned.get() + size};
}

template <typename Record>
void Check(const std::uint8_t* bytes, std::size_t size) {
  Record record;
  const std::vector<char> before = Serialized(record);
  if (!record.Deserialize(bytes, size)) {
    Require(Serialized(record) == before);
    return;
  }
  std::vector<char> written = Serialized(record);
  Require(written.size() <= size);
  Record checked;
  Require(checked.Deserialize(written.data(), written.size()));
  Require(Serialized(checked) == written);
  Record trusted;
  Require(trusted.Deserialize(written.data()));
  Require(Serialized(trusted) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  Check<Property>(bytes, size);
  Check<ObjectInfo>(bytes, size);
  return 0;
}
