#pragma once

#include <array>
#include <cstdint>

// Case of single bytes, Latin-1 order, whatever the locale. Constant: free for all threads.
namespace quenlatrix::i18n {

// The upper-case and the lower-case counterpart of each byte value, in an entry's low byte. Every
// byte of the blocks 97-122 and 224-255 has its counterpart 32 below; k2upper gives 101 for both
// 201 and 233.
extern const std::array<std::uint32_t, 256> k2upper;
extern const std::array<std::uint32_t, 256> k2lower;

}  // namespace quenlatrix::i18n
