#include "text/case_tables.h"

namespace quenlatrix::i18n {
namespace {

constexpr std::uint32_t caseDistance = 32;

constexpr bool IsLower(std::uint32_t byte) { return (byte >= 97 && byte <= 122) || byte >= 224; }

constexpr std::array<std::uint32_t, 256> MakeUpperTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = IsLower(byte) ? byte - caseDistance : byte;
  }
  table[201] = 101;
  table[233] = 101;
  return table;
}

constexpr std::array<std::uint32_t, 256> MakeLowerTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = byte < 224 && IsLower(byte + caseDistance) ? byte + caseDistance : byte;
  }
  return table;
}

}  // namespace

constinit const std::array<std::uint32_t, 256> k2upper = MakeUpperTable();
constinit const std::array<std::uint32_t, 256> k2lower = MakeLowerTable();

}  // namespace quenlatrix::i18n
