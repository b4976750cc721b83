// Whole-word loads and stores in a fixed byte order, whatever the machine's.
// Compilers turn these into one move (and a byte swap where needed).
#pragma once

#include <cstdint>
#include <cstring>

namespace tvr::util {

inline std::uint64_t byteSwap64(std::uint64_t v) {
#if defined(__GNUC__) || defined(__clang__)
    return __builtin_bswap64(v);
#else
    std::uint64_t r = 0;
    for (int k = 0; k < 8; ++k, v >>= 8) r = r << 8 | (v & 0xFF);
    return r;
#endif
}

constexpr bool kLittleEndianHost =
#if defined(__BYTE_ORDER__) && defined(__ORDER_BIG_ENDIAN__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    false;
#else
    true;
#endif

inline std::uint64_t loadLittleEndian64(const void* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return kLittleEndianHost ? v : byteSwap64(v);
}

inline std::uint64_t loadBigEndian64(const void* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return kLittleEndianHost ? byteSwap64(v) : v;
}

inline void storeLittleEndian64(void* p, std::uint64_t v) {
    if (!kLittleEndianHost) v = byteSwap64(v);
    std::memcpy(p, &v, 8);
}

}  // namespace tvr::util
