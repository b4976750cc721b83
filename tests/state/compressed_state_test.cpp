#include <gtest/gtest.h>

#include <random>

#include "state/compressed_state.h"
#include "test_support/compressed_state_reference.h"

using namespace tvr::plr::state;

namespace {

void putU32(Bytes& out, std::uint32_t v) {
    for (int k = 0; k < 4; ++k) out.push_back(static_cast<std::uint8_t>(v >> (8 * k)));
}

Bytes header(std::int32_t symbols, std::uint32_t length,
             const std::vector<std::pair<char, std::uint32_t>>& table = {}) {
    Bytes out;
    putU32(out, kMagic);
    putU32(out, kVersion);
    putU32(out, static_cast<std::uint32_t>(symbols));
    putU32(out, length);
    for (const auto& [symbol, frequency] : table) {
        out.push_back(static_cast<std::uint8_t>(symbol));
        putU32(out, frequency);
    }
    return out;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::string text(const Bytes& b) { return std::string(b.begin(), b.end()); }

// Both decoding paths must agree on every input, good or bad.
DecompressResult decodeBothWays(const Bytes& in) {
    DecompressOptions slow;
    slow.bitByBit = true;
    DecompressResult fast = decompress(in);
    DecompressResult reference = decompress(in, slow);
    EXPECT_EQ(fast.error, reference.error);
    EXPECT_EQ(fast.bytes, reference.bytes);
    return fast;
}

// Streams with a full table of two symbols or more: also what the plain decoder answers.
void decodeAllWays(const Bytes& in) {
    const reference::Decoded want = reference::decode(in);
    const DecompressResult got = decodeBothWays(in);
    ASSERT_EQ(got.error, want.error);
    ASSERT_EQ(got.bytes, want.bytes);
}

Bytes randomData(std::mt19937& rng, std::size_t size, bool skewed) {
    Bytes out(size);
    std::geometric_distribution<int> geometric(0.25);
    std::uniform_int_distribution<int> uniform(0, 255);
    for (auto& b : out) b = static_cast<std::uint8_t>(skewed ? geometric(rng) % 256 : uniform(rng));
    return out;
}

}  // namespace

TEST(CompressedState, TreeFollowsTheInsertionRule) {
    // Weights 1, 1, 2: the inner node of weight 2 goes after the leaf of equal
    // weight, so the root's children are that leaf ('C', code 0) and the inner
    // node ('A' 10, 'B' 11). "CAB" is 0 10 11, read from the lowest bit.
    Bytes in = header(3, 3, {{'A', 1}, {'B', 1}, {'C', 2}});
    in.push_back(0x1A);
    DecompressResult out = decodeBothWays(in);
    ASSERT_TRUE(out.ok()) << out.error;
    EXPECT_TRUE(out.wasCompressed);
    EXPECT_EQ(text(out.bytes), "CAB");
}

TEST(CompressedState, RoundTripsRandomData) {
    std::mt19937 rng(42);
    const std::size_t sizes[] = {0, 1, 2, 3, 17, 255, 256, 1000, 4096, 40000, 65536};
    for (std::size_t size : sizes) {
        for (bool skewed : {false, true}) {
            const Bytes data = randomData(rng, size, skewed);
            const Bytes packed = compress(data);
            DecompressOptions strict;
            strict.strict = true;
            const DecompressResult out = decompress(packed, strict);
            ASSERT_TRUE(out.ok()) << size << ": " << out.error;
            EXPECT_EQ(out.bytes, data) << size;
            EXPECT_EQ(decodeBothWays(packed).bytes, data);
            if (skewed && size >= 4096) {
                EXPECT_LT(packed.size(), size / 2);
            }
        }
    }
    // A run of one byte value: one symbol and no code bits at all.
    const Bytes run(5000, 'z');
    EXPECT_EQ(compress(run).size(), kHeaderSize + kTableEntrySize);
    EXPECT_EQ(decompress(compress(run)).bytes, run);
}

TEST(CompressedState, HeaderlessInputPassesThrough) {
    const std::string plain = "<PLT_Plugin><name>m</name></PLT_Plugin>";
    const Bytes in(plain.begin(), plain.end());
    DecompressResult out = decompress(in);
    EXPECT_TRUE(out.ok());
    EXPECT_FALSE(out.wasCompressed);
    EXPECT_EQ(out.bytes, in);

    Bytes short15 = header(0, 0);
    short15.pop_back();
    for (const Bytes& odd : {header(257, 1), header(-1, 1), short15}) {
        out = decompress(odd);
        EXPECT_TRUE(out.ok());
        EXPECT_EQ(out.bytes, odd);
        DecompressOptions strict;
        strict.strict = true;
        EXPECT_FALSE(decompress(odd, strict).ok());
    }
    Bytes wrongVersion = header(0, 0);
    wrongVersion[4] = 101;
    EXPECT_FALSE(decompress(wrongVersion).wasCompressed);
}

TEST(CompressedState, BadInputsGiveErrors) {
    auto error = [](const Bytes& in) { return decodeBothWays(in).error; };
    EXPECT_NE(error(header(2, 1, {{'a', 1}})), "");  // table cut short
    EXPECT_NE(error(header(0, 1)), "");              // length without symbols
    EXPECT_EQ(error(header(0, 0)), "");
    EXPECT_NE(error(header(1, (256u << 20) + 1, {{'a', 1}})), "");                     // over the limit
    EXPECT_NE(error(header(2, 9, {{'a', 1}, {'b', 1}}) + Bytes{0}), "");               // 9 symbols from 8 bits
    EXPECT_NE(error(header(3, 5, {{'a', 1}, {'b', 1}, {'c', 2}}) + Bytes{0xFF}), "");  // runs out

    // One symbol: the root is a leaf, so the stated length alone is produced.
    EXPECT_EQ(text(decompress(header(1, 4, {{'q', 9}})).bytes), "qqqq");
    DecompressOptions small;
    small.maxOutput = 3;
    EXPECT_NE(decompress(header(1, 4, {{'q', 9}}), small).error, "");

    // Decreasing frequencies decode on the lenient path, not under the full check.
    const Bytes decreasing = header(2, 2, {{'a', 5}, {'b', 1}}) + Bytes{0x02};
    EXPECT_EQ(text(decompress(decreasing).bytes), "ab");
    DecompressOptions strict;
    strict.strict = true;
    EXPECT_NE(decompress(decreasing, strict).error, "");

    // A Fibonacci table makes codes far longer than the lookup covers.
    std::vector<std::pair<char, std::uint32_t>> fibonacci;
    for (std::uint32_t a = 1, b = 1, k = 0; k < 45; ++k, b += a, a = b - a)
        fibonacci.emplace_back(static_cast<char>(k), a);
    for (std::uint8_t fill : {0x00, 0xFF, 0x5A}) {
        const DecompressResult deep = decodeBothWays(header(45, 600, fibonacci) + Bytes(400, fill));
        EXPECT_TRUE(deep.ok() || deep.bytes.empty());
    }

    // Truncations and corruptions of a real stream: errors or bytes, the same
    // either way, and never more than the stated length.
    std::mt19937 rng(7);
    const Bytes packed = compress(randomData(rng, 3000, true));
    for (std::size_t cut = 0; cut < packed.size(); cut += 37)
        EXPECT_LE(decodeBothWays(Bytes(packed.begin(), packed.begin() + cut)).bytes.size(), 3000u);
    for (int trial = 0; trial < 300; ++trial) {
        Bytes bad = packed;
        bad[rng() % bad.size()] ^= static_cast<std::uint8_t>(1u << (rng() % 8));
        EXPECT_LE(decodeBothWays(bad).bytes.size(), bad.size() * 8);
    }
}

// The fast decoder against the plain one on seeded random streams: real ones
// (long enough for every path), cut short, with flipped bits, and made-up
// tables in any order with random code bits.
TEST(CompressedState, AgreesWithPlainDecoderOnRandomStreams) {
    std::mt19937 rng(1234);
    for (int trial = 0; trial < 60; ++trial) {
        const std::size_t size = trial % 5 == 0 ? 70000 + rng() % 30000 : 2 + rng() % 3000;
        Bytes data = randomData(rng, size, trial % 2 == 0);
        // One byte value far ahead of the rest gives one-bit codes: many symbols a lookup.
        if (trial % 3 == 2)
            for (auto& b : data) b = rng() % 8 ? 'a' : b;
        Bytes packed = compress(data);
        const std::size_t symbols = reference::u32(packed.data() + 8);
        const std::size_t codeBytes = packed.size() - kHeaderSize - kTableEntrySize * symbols;
        if (symbols < 2 || codeBytes < 2) continue;
        decodeAllWays(packed);
        const std::size_t cut = 1 + rng() % std::min<std::size_t>(codeBytes, 40);
        decodeAllWays(Bytes(packed.begin(), packed.end() - static_cast<std::ptrdiff_t>(cut)));
        for (int flip = 0; flip < 3; ++flip) packed[packed.size() - 1 - rng() % (packed.size() / 2)] ^= 0x10;
        decodeAllWays(packed);
    }
    for (int trial = 0; trial < 300; ++trial) {
        const int symbols = 2 + static_cast<int>(rng() % 60);
        std::vector<std::pair<char, std::uint32_t>> table;
        for (int k = 0; k < symbols; ++k)
            table.emplace_back(static_cast<char>(rng()), trial % 3 == 0 ? rng() : 1 + rng() % 50);
        Bytes in = header(symbols, static_cast<std::uint32_t>(rng() % 5000), table);
        const Bytes bits = randomData(rng, rng() % 2000, trial % 2 == 0);
        decodeAllWays(in + bits);
    }
}

// Long code is read from its two halves at once, the second half's symbols kept
// only where the first reader reaches a place the second stood. Codes of one
// length that does not divide the middle's bit offset never meet there; long
// codes on either side and cuts anywhere must change nothing either.
TEST(CompressedState, HalvesReadAtOnceGiveTheSequentialAnswer) {
    std::mt19937 rng(5150);
    for (int trial = 0; trial < 40; ++trial) {
        // Eight equally frequent values: every code three bits long.
        const std::size_t size = trial < 20 ? 600 + rng() % 4000 : 66000 + rng() % 9000;
        Bytes data(size);
        for (std::size_t k = 0; k < size; ++k) data[k] = static_cast<std::uint8_t>('a' + k % 8);
        if (trial % 4 == 1) {
            // One byte value a thousand times rarer: codes beyond the lookups,
            // placed in either half.
            for (int k = 0; k < 3; ++k) data[rng() % size] = '~';
        } else if (trial % 4 == 2) {
            for (auto& b : data) b = static_cast<std::uint8_t>(rng() % 3 ? 'a' + rng() % 3 : rng());
        }
        Bytes packed = compress(data);
        ASSERT_EQ(decompress(packed).bytes, data) << trial;
        decodeAllWays(
            Bytes(packed.begin(), packed.end() - 1 - static_cast<std::ptrdiff_t>(rng() % (packed.size() / 3))));
        packed[packed.size() / 2 + rng() % 16 - 8] ^= static_cast<std::uint8_t>(1u << (rng() % 8));
        decodeAllWays(packed);
    }
}
