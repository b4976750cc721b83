#include "util/base64.h"

#include <array>
#include <cstring>

#include "util/byte_order.h"

namespace tvr::util {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kInvalid = 0xFF;
// Set in a decode table entry for a character outside the alphabet; no valid
// 24-bit group reaches it.
constexpr std::uint32_t kBad = 0x80000000u;

// Two output characters for every 12-bit value.
struct PairTable {
    std::array<char, std::size_t{2} * 4096> chars{};
    constexpr PairTable() {
        for (std::size_t v = 0; v < 4096; ++v) {
            chars[2 * v] = kAlphabet[v >> 6];
            chars[2 * v + 1] = kAlphabet[v & 63];
        }
    }
};

// Sextet value of each character, and the same value pre-shifted into each of
// the four positions of a group, with kBad for characters outside the alphabet.
struct DecodeTables {
    std::array<std::uint8_t, 256> value{};
    std::array<std::array<std::uint32_t, 256>, 4> shifted{};
    constexpr DecodeTables() {
        for (int c = 0; c < 256; ++c) {
            value[static_cast<std::size_t>(c)] = kInvalid;
            for (auto& position : shifted) {
                position[static_cast<std::size_t>(c)] = kBad;
            }
        }
        for (int v = 0; v < 64; ++v) {
            const auto c = static_cast<std::size_t>(static_cast<unsigned char>(kAlphabet[v]));
            value[c] = static_cast<std::uint8_t>(v);
            const auto u = static_cast<std::uint32_t>(v);
            shifted[0][c] = u << 18;
            shifted[1][c] = u << 12;
            shifted[2][c] = u << 6;
            shifted[3][c] = u;
        }
    }
};

constexpr PairTable kPairs;

// For each of eight positions in a run of eight characters, the bits of every
// character already placed where they land among the run's six output bytes as
// a little-endian word reads them, with kWideBad (beyond those six bytes) for a
// character outside the alphabet. Eight lookups OR-ed give the six bytes ready
// to store. 16 KiB.
constexpr std::uint64_t kWideBad = std::uint64_t{1} << 63;

struct WideTables {
    std::array<std::array<std::uint64_t, 256>, 8> placed{};
    constexpr WideTables() {
        for (auto& position : placed) {
            for (auto& entry : position) entry = kWideBad;
        }
        for (int p = 0; p < 8; ++p) {
            for (int v = 0; v < 64; ++v) {
                // The six output bytes as one big-endian number, then each byte
                // moved to its little-endian place.
                const std::uint64_t stream = static_cast<std::uint64_t>(v) << (42 - 6 * p);
                std::uint64_t word = 0;
                for (int k = 0; k < 6; ++k) word |= ((stream >> (40 - 8 * k)) & 0xFF) << (8 * k);
                const auto c = static_cast<std::size_t>(static_cast<unsigned char>(kAlphabet[v]));
                placed[static_cast<std::size_t>(p)][c] = word;
            }
        }
    }
};

constexpr WideTables kWide;
constexpr DecodeTables kDecode;

// A group that the fast path rejected: padding or an error. Appends its bytes to
// `out` and answers how many, or -1 on an error.
int decodeGroupSlow(const unsigned char* g, std::uint8_t* out) {
    const int count = 3 - (g[3] == '=' ? 1 : 0) - (g[2] == '=' ? 1 : 0);
    const std::uint8_t v0 = kDecode.value[g[0]];
    const std::uint8_t v1 = kDecode.value[g[1]];
    if (v0 == kInvalid || v1 == kInvalid) {
        return -1;
    }
    std::uint8_t v2 = 0;
    std::uint8_t v3 = 0;
    if (count >= 2) {
        v2 = kDecode.value[g[2]];
        if (v2 == kInvalid) {
            return -1;
        }
    }
    if (count == 3) {
        v3 = kDecode.value[g[3]];
        if (v3 == kInvalid) {
            return -1;
        }
    }
    out[0] = static_cast<std::uint8_t>((v0 << 2) | (v1 >> 4));
    if (count >= 2) {
        out[1] = static_cast<std::uint8_t>((v1 << 4) | (v2 >> 2));
    }
    if (count == 3) {
        out[2] = static_cast<std::uint8_t>((v2 << 6) | v3);
    }
    return count;
}

}  // namespace

ByteArray::ByteArray(const void* data, std::size_t length) {
    if (data != nullptr && length > 0) {
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        assign(bytes, bytes + length);
    }
}

bool ByteArray::copyTo(void* buffer, std::size_t capacity) const {
    if (capacity < size() || (buffer == nullptr && !empty())) {
        return false;
    }
    if (!empty()) {
        std::memcpy(buffer, data(), size());
    }
    return true;
}

std::string Base64::encode(const ByteArray& bytes) { return encode(bytes.data(), bytes.size()); }

std::string Base64::encode(const void* data, std::size_t length) {
    if (data == nullptr || length == 0) {
        return std::string();
    }
    const auto* in = static_cast<const std::uint8_t*>(data);
    const std::size_t groups = (length + 2) / 3;
    std::string text(groups * 4, '=');
    char* out = text.data();

    const std::size_t whole = length / 3;
    const char* pairs = kPairs.chars.data();
    std::size_t i = 0;
    // 24 bytes a round from four eight-byte loads of six bytes each; the round
    // runs only while 26 bytes remain, so the two read ahead by the last load
    // are inside the input.
    auto six = [pairs](const std::uint8_t* from, char* to) {
        const std::uint64_t v = loadBigEndian64(from);
        std::memcpy(to, pairs + 2 * (v >> 52), 2);
        std::memcpy(to + 2, pairs + 2 * ((v >> 40) & 0xFFF), 2);
        std::memcpy(to + 4, pairs + 2 * ((v >> 28) & 0xFFF), 2);
        std::memcpy(to + 6, pairs + 2 * ((v >> 16) & 0xFFF), 2);
    };
    for (; 3 * i + 26 <= length; i += 8) {
        six(in, out);
        six(in + 6, out + 8);
        six(in + 12, out + 16);
        six(in + 18, out + 24);
        in += 24;
        out += 32;
    }
    for (; i < whole; ++i) {
        const std::uint32_t v = (std::uint32_t{in[0]} << 16) | (std::uint32_t{in[1]} << 8) | in[2];
        std::memcpy(out, pairs + std::size_t{2} * (v >> 12), 2);
        std::memcpy(out + 2, pairs + std::size_t{2} * (v & 0xFFF), 2);
        in += 3;
        out += 4;
    }
    // One or two bytes left: the positions that get no bits stay '='.
    const std::size_t rest = length - 3 * whole;
    if (rest > 0) {
        out[0] = kAlphabet[in[0] >> 2];
        if (rest == 1) {
            out[1] = kAlphabet[(in[0] & 0x03) << 4];
        } else {
            out[1] = kAlphabet[((in[0] & 0x03) << 4) | (in[1] >> 4)];
            out[2] = kAlphabet[(in[1] & 0x0F) << 2];
        }
    }
    return text;
}

ByteArray Base64::decode(const std::string& text) { return decode(text.data(), text.size()); }

ByteArray Base64::decode(const char* text, std::size_t length) {
    ByteArray bytes;
    if (text == nullptr || length == 0 || length % 4 != 0) {
        return bytes;
    }
    bytes.resize(length / 4 * 3);
    std::uint8_t* out = bytes.data();
    const auto* in = reinterpret_cast<const unsigned char*>(text);
    const auto* end = in + length;
    const auto& s = kDecode.shifted;
    auto group = [&](const unsigned char* g) { return s[0][g[0]] | s[1][g[1]] | s[2][g[2]] | s[3][g[3]]; };
    // Half the characters of a run come as bytes from memory and half from one
    // four-byte load taken apart in registers: the two ways share the load and
    // arithmetic units between them, faster than either alone.
    auto run = [](const unsigned char* r) {
        const auto& t = kWide.placed;
        std::uint32_t y;
        std::memcpy(&y, r + 4, 4);
        if (!kLittleEndianHost) y = static_cast<std::uint32_t>(byteSwap64(y) >> 32);
        return t[0][r[0]] | t[1][r[1]] | t[2][r[2]] | t[3][r[3]] | t[4][y & 0xFF] | t[5][(y >> 8) & 0xFF] |
               t[6][(y >> 16) & 0xFF] | t[7][y >> 24];
    };
    // A block is 64 characters, eight runs of eight, with one check for a bad
    // character at its end. Each run stores eight bytes of which the next run
    // overwrites the last two, so four characters must follow the block to keep
    // the last store inside the output.
    constexpr std::ptrdiff_t kBlock = 64;
    while (in != end) {
        while (end - in >= kBlock + 4) {
            std::uint64_t bad = 0;
            for (std::ptrdiff_t r = 0; r < 8; ++r) {
                const std::uint64_t w = run(in + 8 * r);
                bad |= w;
                storeLittleEndian64(out + 6 * r, w);
            }
            if ((bad & kWideBad) != 0) break;
            in += kBlock;
            out += kBlock / 4 * 3;
        }
        // The groups of a block that held padding or a bad character, or the
        // last few, one at a time.
        const unsigned char* stop = end - in >= kBlock ? in + kBlock : end;
        for (; in != stop; in += 4) {
            const std::uint32_t v = group(in);
            if ((v & kBad) == 0) {
                out[0] = static_cast<std::uint8_t>(v >> 16);
                out[1] = static_cast<std::uint8_t>(v >> 8);
                out[2] = static_cast<std::uint8_t>(v);
                out += 3;
            } else {
                const int produced = decodeGroupSlow(in, out);
                if (produced < 0) {
                    return ByteArray();
                }
                out += produced;
            }
        }
    }
    bytes.resize(static_cast<std::size_t>(out - bytes.data()));
    return bytes;
}

}  // namespace tvr::util
