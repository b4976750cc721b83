// The compressed form of a stored state: a 16-byte header, a frequency table
// and Huffman-coded bits.
//
//   offset 0   u32 magic 0x005331CA
//   offset 4   u32 version 100
//   offset 8   i32 symbol count S, 0..256
//   offset 12  u32 decompressed length
//   offset 16  S entries: symbol byte, u32 frequency (non-decreasing order)
//   then       code bits, each byte read from its lowest bit up
//
// All whole numbers are little-endian. Input whose first 16 bytes do not pass
// the header check is not compressed and is taken as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tvr::plr::state {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kMagic = 0x005331CA;
constexpr std::uint32_t kVersion = 100;
constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kTableEntrySize = 5;
// No stated length above this is decoded.
constexpr std::size_t kMaxDecompressedSize = std::size_t{256} << 20;

struct DecompressOptions {
    // Lower limit on the output size, for callers that must bound memory more
    // tightly; never above kMaxDecompressedSize.
    std::size_t maxOutput = kMaxDecompressedSize;
    // Full check: the header must pass (otherwise it is an error rather than
    // uncompressed data) and the frequencies must never decrease.
    bool strict = false;
    // Decode one bit at a time instead of through the lookup table (the two
    // give identical results; kept for cross-checking).
    bool bitByBit = false;
};

struct DecompressResult {
    Bytes bytes;
    // Empty on success.
    std::string error;
    // False when the input did not carry the header and was passed through.
    bool wasCompressed = false;

    bool ok() const { return error.empty(); }
};

// Decodes the compressed form. A table with one symbol makes a tree whose root
// is a leaf: every output byte is that symbol and no bits are read, so the
// stated length alone sets the output size (still bounded by the limits).
DecompressResult decompress(const std::uint8_t* data, std::size_t size, const DecompressOptions& options = {});
DecompressResult decompress(const Bytes& data, const DecompressOptions& options = {});

// Writes the compressed form: the table in non-decreasing frequency order,
// ties by symbol value. Throws std::length_error for input of 4 GiB or more.
Bytes compress(const std::uint8_t* data, std::size_t size);
Bytes compress(const Bytes& data);

}  // namespace tvr::plr::state
