#include "state/compressed_state.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "util/byte_order.h"

namespace tvr::plr::state {

namespace {

struct TableEntry {
    std::uint8_t symbol;
    std::uint32_t frequency;
};

struct Node {
    int first = -1;
    int second = -1;
    int parent = -1;
    std::uint64_t weight = 0;  // 64 bits: sums of 32-bit frequencies must not wrap
    int symbol = -1;
    bool isLeaf() const { return first < 0; }
};

std::uint32_t readU32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

void writeU32(Bytes& out, std::uint32_t v) {
    for (int k = 0; k < 4; ++k) out.push_back(static_cast<std::uint8_t>(v >> (8 * k)));
}

// The tree both sides agree on. The table is taken in its stored order as a
// list: each pair of neighbours i, i+1 gets an inner node, inserted into the
// list after every node of equal or smaller weight that follows them. Nodes
// keep the index they were made with (leaves first, in table order); the last
// one made is the root.
int addInner(std::vector<Node>& nodes, int a, int b) {
    Node inner;
    inner.first = a;
    inner.second = b;
    inner.weight = nodes[static_cast<std::size_t>(a)].weight + nodes[static_cast<std::size_t>(b)].weight;
    const int id = static_cast<int>(nodes.size());
    nodes.push_back(inner);
    nodes[static_cast<std::size_t>(a)].parent = nodes[static_cast<std::size_t>(b)].parent = id;
    return id;
}

std::vector<Node> buildTree(const std::vector<TableEntry>& table) {
    std::vector<Node> nodes;
    nodes.reserve(table.size() * 2);
    bool sorted = true;
    for (const TableEntry& e : table) {
        Node leaf;
        leaf.weight = e.frequency;
        leaf.symbol = e.symbol;
        sorted = sorted && (nodes.empty() || nodes.back().weight <= leaf.weight);
        nodes.push_back(leaf);
    }
    if (sorted) {
        // A list that starts in order takes every new inner node behind all the
        // nodes left, as sums of the two lightest never decrease, and behind
        // leaves of equal weight: the list is then the merge of the leaves and
        // the inner nodes in the order they were made, a leaf first on a tie.
        const std::size_t leaves = nodes.size();
        std::size_t leaf = 0;
        std::size_t inner = leaves;
        auto take = [&]() {
            if (leaf < leaves && (inner == nodes.size() || nodes[leaf].weight <= nodes[inner].weight))
                return static_cast<int>(leaf++);
            return static_cast<int>(inner++);
        };
        while ((leaves - leaf) + (nodes.size() - inner) >= 2) {
            const int a = take();
            const int b = take();
            addInner(nodes, a, b);
        }
        return nodes;
    }
    std::vector<int> list(nodes.size());
    for (std::size_t k = 0; k < list.size(); ++k) list[k] = static_cast<int>(k);
    auto weightOf = [&nodes](int id) { return nodes[static_cast<std::size_t>(id)].weight; };
    for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
        const int a = list[i];
        const int b = list[i + 1];
        const std::uint64_t w = weightOf(a) + weightOf(b);
        auto j = list.begin() + static_cast<std::ptrdiff_t>(i + 2);
        while (j != list.end() && weightOf(*j) <= w) ++j;
        list.insert(j, addInner(nodes, a, b));
    }
    return nodes;
}

// Lookup over the next kLookupBits bits: either the leaf reached within them
// and the bits it took, or the inner node reached after all of them. A leaf's
// entry holds the bits in its low byte, the symbol in the next and 1 in the
// top byte; an inner node's holds the node index from bit 8 and nothing else,
// so it takes no bits. Five entries added up keep the bits they take in the
// low byte and the number of leaves among them in the top byte.
constexpr unsigned kLookupBits = 11;
constexpr std::size_t kLookupSize = std::size_t{1} << kLookupBits;
constexpr std::uint32_t kLeaf = 0x01000000u;

std::uint32_t lookupBitsOf(std::uint32_t entry) { return entry & 0xFF; }
std::uint32_t leafSymbolOf(std::uint32_t entry) { return (entry >> 8) & 0xFF; }
std::uint32_t innerNodeOf(std::uint32_t entry) { return entry >> 8; }

// The single-symbol lookup, filled from the tree; also answers the depth of
// the shallowest leaf, which is always within the lookup: a tree of at most
// 256 leaves has one at depth 8 or less.
unsigned buildLookup(const std::vector<Node>& nodes, std::uint32_t* table) {
    unsigned minDepth = std::numeric_limits<unsigned>::max();
    struct Item {
        int node;
        std::uint32_t code;
    };
    // Level by level: once the inner nodes of depth d - 1 are known, the first
    // 2^d entries are right for every code of d bits. Doubling the table
    // repeats the shorter codes into the new top bit; the children of each
    // inner node then overwrite the two entries under its code.
    // At most 255 inner nodes in a tree of 256 leaves.
    Item buffers[2][256];
    Item* level = buffers[0];
    Item* next = buffers[1];
    std::size_t levelSize = 1;
    level[0] = {static_cast<int>(nodes.size()) - 1, 0};
    for (unsigned depth = 1; depth <= kLookupBits; ++depth) {
        const std::size_t half = std::size_t{1} << (depth - 1);
        if (depth > 1) std::memcpy(table + half, table, half * sizeof *table);
        std::size_t nextSize = 0;
        for (std::size_t k = 0; k < levelSize; ++k) {
            const Item& item = level[k];
            const Node& n = nodes[static_cast<std::size_t>(item.node)];
            const Item children[2] = {{n.first, item.code}, {n.second, item.code | static_cast<std::uint32_t>(half)}};
            for (const Item& child : children) {
                const Node& c = nodes[static_cast<std::size_t>(child.node)];
                if (c.isLeaf()) {
                    minDepth = std::min(minDepth, depth);
                    table[child.code] = kLeaf | static_cast<std::uint32_t>(c.symbol) << 8 | depth;
                } else if (depth == kLookupBits) {
                    table[child.code] = static_cast<std::uint32_t>(child.node) << 8;
                } else {
                    next[nextSize++] = child;
                }
            }
        }
        std::swap(level, next);
        levelSize = nextSize;
    }
    return minDepth;
}

// Several symbols per lookup over the next kMultiBits bits: every symbol
// whose whole code lies within them, up to six. Byte 0 holds the bits they
// take, byte 1 their number, bytes 2..7 the symbols. An entry with no symbols
// stands for a code longer than the single-symbol lookup and uses no bits.
constexpr unsigned kMultiBits = 12;
constexpr std::size_t kMultiSize = std::size_t{1} << kMultiBits;

std::vector<std::uint64_t> buildMultiLookup(const std::uint32_t* single) {
    std::vector<std::uint64_t> table(kMultiSize);
    for (std::size_t i = 0; i < kMultiSize; ++i) {
        std::uint64_t symbols = 0;
        unsigned used = 0;
        unsigned count = 0;
        while (count < 6) {
            // The single lookup's entry for the bits left, the unknown ones taken
            // as zeros: right as long as its code fits within the known bits.
            const std::uint32_t e = single[(i >> used) & (kLookupSize - 1)];
            if (!(e & kLeaf) || used + lookupBitsOf(e) > kMultiBits) break;
            symbols |= std::uint64_t{leafSymbolOf(e)} << (16 + 8 * count++);
            used += lookupBitsOf(e);
        }
        table[i] = symbols | count << 8 | used;
    }
    return table;
}

// Where a reader stands: the bits taken from the input but not yet used, and
// where its symbols go. Plain data, so that the fast loops keep it in
// registers.
struct Cursor {
    std::uint64_t buffer = 0;
    unsigned count = 0;
    // Next input byte to take into the buffer.
    std::size_t pos = 0;
    std::uint8_t* out = nullptr;

    // Bits used so far.
    std::size_t bit() const { return pos * 8 - count; }
};

// Whole-word refill, possible while eight bytes remain. Leaves at least 56
// bits. Bits above the counted ones are the next bytes at their own places, so
// or-ing them in again later changes nothing.
inline void refillWhole(const std::uint8_t* data, Cursor& c) {
    c.buffer |= util::loadLittleEndian64(data + c.pos) << c.count;
    c.pos += (63 - c.count) >> 3;
    c.count |= 56;
}

// One whole-word refill and four multi-symbol lookups; needs eight input bytes
// and 24 output places (each entry is stored as eight bytes, so `out` needs two
// places of room past the end). False in front of a long code, the symbols
// before it taken.
inline bool manyRound(const std::uint8_t* data, const std::uint64_t* multi, Cursor& c) {
    refillWhole(data, c);
    std::uint64_t e = 0;
    for (int k = 0; k < 4; ++k) {
        // An entry for a long code holds no symbols and uses no bits: the
        // lookups after it repeat it and change nothing, so one check at the
        // end does for all four.
        e = multi[c.buffer & (kMultiSize - 1)];
        const std::uint64_t symbols = e >> 16;
        std::memcpy(c.out, &symbols, 8);
        c.out += (e >> 8) & 0xFF;
        // The shift takes the low six bits alone: the bits used.
        c.buffer >>= (e & 63);
        c.count -= static_cast<unsigned>(e & 63);
    }
    return (e & 0xFF00) != 0;
}

// One whole-word refill and five single-symbol lookups; needs eight input
// bytes and five output places. False in front of a long code, the symbols
// before it taken: its entry takes no bits, so the lookups after it repeat it,
// and the places they write are given back by counting the leaves only.
inline bool singlesRound(const std::uint8_t* data, const std::uint32_t* lookup, Cursor& c) {
    refillWhole(data, c);
    std::uint32_t sum = 0;
    std::uint32_t e = 0;
    for (int k = 0; k < 5; ++k) {
        e = lookup[c.buffer & (kLookupSize - 1)];
        c.out[k] = static_cast<std::uint8_t>(leafSymbolOf(e));
        c.buffer >>= lookupBitsOf(e);
        sum += e;
    }
    c.count -= lookupBitsOf(sum);
    c.out += sum >> 24;
    return (e & kLeaf) != 0;
}

// Bits of the input, lowest bit of each byte first, for the careful paths.
class BitReader {
public:
    BitReader(const std::uint8_t* data, std::size_t size, const Cursor& at)
        : data_(data), size_(size), pos_(at.pos), buffer_(at.buffer), count_(at.count) {}

    void saveTo(Cursor& c) const {
        c.buffer = buffer_;
        c.count = count_;
        c.pos = pos_;
    }

    void refill() {
        if (pos_ + 8 <= size_) {
            buffer_ |= util::loadLittleEndian64(data_ + pos_) << count_;
            pos_ += (63 - count_) >> 3;
            count_ |= 56;
        } else {
            while (count_ <= 56 && pos_ < size_) {
                buffer_ |= static_cast<std::uint64_t>(data_[pos_++]) << count_;
                count_ += 8;
            }
        }
    }
    unsigned count() const { return count_; }
    std::uint64_t peek() const { return buffer_; }

    void consume(unsigned n) {
        buffer_ >>= n;
        count_ -= n;
    }

    // Next bit, or -1 when the input is used up.
    int next() {
        if (count_ == 0) {
            refill();
            if (count_ == 0) return -1;
        }
        const int bit = static_cast<int>(buffer_ & 1);
        consume(1);
        return bit;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_;
    std::uint64_t buffer_;
    unsigned count_;
};

// Walks from `node` to a leaf one bit at a time; -1 when the bits run out.
int walk(const std::vector<Node>& nodes, int node, BitReader& bits) {
    while (!nodes[static_cast<std::size_t>(node)].isLeaf()) {
        const int bit = bits.next();
        if (bit < 0) return -1;
        node = bit ? nodes[static_cast<std::size_t>(node)].second : nodes[static_cast<std::size_t>(node)].first;
    }
    return nodes[static_cast<std::size_t>(node)].symbol;
}

// One symbol through the single-symbol lookup, taking care at the end of the
// input; -1 when the bits run out.
int decodeOne(const std::vector<Node>& nodes, const std::uint32_t* lookup, BitReader& bits) {
    int node = static_cast<int>(nodes.size()) - 1;
    if (bits.count() < kLookupBits) bits.refill();
    const std::uint32_t entry = lookup[bits.peek() & (kLookupSize - 1)];
    if ((entry & kLeaf) && lookupBitsOf(entry) <= bits.count()) {
        bits.consume(lookupBitsOf(entry));
        return static_cast<int>(leafSymbolOf(entry));
    }
    // A code longer than the lookup, or the last few bits of the input.
    if (!(entry & kLeaf) && bits.count() >= kLookupBits) {
        node = static_cast<int>(innerNodeOf(entry));
        bits.consume(kLookupBits);
    }
    return walk(nodes, node, bits);
}

// Output at least this long is worth building the multi-symbol lookup for.
constexpr std::size_t kMultiLookupFrom = 64 << 10;
// Code of at least this many bytes is read from both ends of its halves at once.
constexpr std::size_t kHalvesFrom = 256;
// Places where the second half's reader stood, kept for meeting the first.
constexpr std::size_t kMarks = 64;

// The code bits and the tables for them.
struct Code {
    const std::uint8_t* data;
    std::size_t size;
    const std::vector<Node>& nodes;
    const std::uint32_t* lookup;

    bool canRound(const Cursor& c) const { return c.pos + 8 <= size; }

    // One symbol taken with care, for long codes and the end of the input.
    // False, the cursor left where it was, when the bits run out.
    bool one(Cursor& c, bool bitByBit) const {
        BitReader bits(data, size, c);
        const int symbol =
            bitByBit ? walk(nodes, static_cast<int>(nodes.size()) - 1, bits) : decodeOne(nodes, lookup, bits);
        if (symbol < 0) return false;
        bits.saveTo(c);
        *c.out++ = static_cast<std::uint8_t>(symbol);
        return true;
    }

    // The same for the fast loops, on a copy handed back: their cursors never
    // have their address taken, so they stay in registers.
    Cursor careful(Cursor c, bool& ok) const {
        ok = one(c, false);
        return c;
    }

    // How many rounds can run before input or output might run short: a round
    // takes at most seven bytes into the buffer and writes at most `room`
    // places.
    std::size_t roundsLeft(const Cursor& c, const std::uint8_t* end, std::ptrdiff_t room) const {
        if (c.pos + 8 > size || end - c.out < room) return 0;
        return std::min((size - 8 - c.pos) / 7, static_cast<std::size_t>((end - c.out - room) / room)) + 1;
    }

    // Rounds while input and `room` output places remain, a careful symbol in
    // front of each long code. False when the bits run out.
    template <class Round>
    bool rounds(Round round, std::ptrdiff_t room, Cursor& at, const std::uint8_t* end) const {
        Cursor c = at;  // a local whose address is never taken: kept in registers
        bool ok = true;
        for (std::size_t n; ok && (n = roundsLeft(c, end, room)) > 0;) {
            while (n-- > 0 && round(c)) {}
            // A long code ahead, or the batch done: a careful symbol where it
            // is needed, then counted again.
            if (n != static_cast<std::size_t>(-1)) c = careful(c, ok);
        }
        at = c;
        return ok;
    }

    // A code's symbols come one after another, each lookup waiting for the one
    // before it. A second reader starting in the middle of the code runs beside
    // the first, its symbols kept aside: a prefix code finds its step again
    // within a few symbols, so when the first reader reaches the middle and
    // stands exactly where the second stood, everything the second read from
    // there on is what the first would read. The first then takes the second's
    // symbols and place; if they never meet, the second's work is dropped.
    // Either way `a` ends where a single reader would be. False when the bits
    // run out (before the middle, as for a single reader).
    template <class Round>
    bool halves(Round round, std::ptrdiff_t room, Cursor& at, const std::uint8_t* end, std::size_t length) const {
        Cursor a = at;  // a local whose address is never taken: kept in registers
        const std::size_t mid = size / 2;
        const std::size_t midBit = mid * 8;
        // Every symbol takes at least a bit; more than half and a bit of the
        // output is not expected from the second half.
        const std::size_t capacity =
            std::min({length, (size - mid) * 8, length / 2 + length / 8}) + static_cast<std::size_t>(room) + 8;
        const std::unique_ptr<std::uint8_t[]> aside(new std::uint8_t[capacity]);
        const std::uint8_t* const asideEnd = aside.get() + capacity - 8;
        Cursor b;
        b.pos = mid;
        b.out = aside.get();
        struct Mark {
            std::size_t bit;
            std::size_t produced;
        };
        Mark marks[kMarks];
        std::size_t markCount = 0;
        marks[markCount++] = {midBit, 0};
        // Each round uses at most 56 bits; the first reader stops at least 64
        // bits short of the middle.
        auto roundsToMiddle = [midBit](const Cursor& c) {
            return c.bit() + 64 <= midBit ? (midBit - 64 - c.bit()) / 56 + 1 : 0;
        };
        for (;;) {
            std::size_t n = std::min({roundsToMiddle(a), roundsLeft(a, end, room), roundsLeft(b, asideEnd, room)});
            if (n == 0) break;
            bool stopped = false;
            while (n-- > 0) {
                const bool aOn = round(a);
                const bool bOn = round(b);
                if (markCount < kMarks) marks[markCount++] = {b.bit(), static_cast<std::size_t>(b.out - aside.get())};
                if (!aOn || !bOn) {
                    bool ok = true;
                    if (!aOn) a = careful(a, ok);
                    if (!ok) {
                        at = a;
                        return false;
                    }
                    if (!bOn) b = careful(b, ok);
                    stopped = !ok;
                    break;
                }
            }
            if (stopped) break;
        }
        for (std::size_t n; (n = std::min(roundsToMiddle(a), roundsLeft(a, end, room))) > 0;) {
            while (n-- > 0 && round(a)) {}
            bool ok = true;
            if (n != static_cast<std::size_t>(-1)) a = careful(a, ok);
            if (!ok) {
                at = a;
                return false;
            }
        }
        // Symbol by symbol onto a place where the second reader stood.
        std::size_t k = 0;
        for (;;) {
            if (a.out == end) {
                at = a;
                return true;
            }
            const std::size_t here = a.bit();
            while (k < markCount && marks[k].bit < here) ++k;
            if (k == markCount) {
                at = a;
                return true;
            }
            if (marks[k].bit == here) break;
            bool ok = true;
            a = careful(a, ok);
            if (!ok) {
                at = a;
                return false;
            }
        }
        const std::size_t from = marks[k].produced;
        const auto taken =
            std::min(static_cast<std::size_t>(b.out - aside.get()) - from, static_cast<std::size_t>(end - a.out));
        std::memcpy(a.out, aside.get() + from, taken);
        b.out = a.out + taken;
        at = b;
        return true;
    }
};

}  // namespace

DecompressResult decompress(const std::uint8_t* data, std::size_t size, const DecompressOptions& options) {
    DecompressResult result;
    const bool headerOk = size >= kHeaderSize && readU32(data) == kMagic && readU32(data + 4) == kVersion &&
                          static_cast<std::int32_t>(readU32(data + 8)) >= 0 &&
                          static_cast<std::int32_t>(readU32(data + 8)) <= 256;
    if (!headerOk) {
        if (options.strict) {
            result.error = "not a compressed state: header check failed";
        } else if (size > 0) {
            result.bytes.assign(data, data + size);  // stored uncompressed
        }
        return result;
    }
    result.wasCompressed = true;
    const std::size_t symbolCount = readU32(data + 8);
    const std::size_t length = readU32(data + 12);
    const std::size_t tableEnd = kHeaderSize + symbolCount * kTableEntrySize;
    if (size < tableEnd) {
        result.error = "symbol table of " + std::to_string(symbolCount) + " entries runs past the end of the input";
        return result;
    }
    std::vector<TableEntry> table(symbolCount);
    for (std::size_t k = 0; k < symbolCount; ++k) {
        const std::uint8_t* p = data + kHeaderSize + k * kTableEntrySize;
        table[k] = TableEntry{p[0], readU32(p + 1)};
        if (options.strict && k > 0 && table[k].frequency < table[k - 1].frequency) {
            result.error = "symbol frequencies decrease at entry " + std::to_string(k);
            return result;
        }
    }
    const std::size_t limit = std::min(options.maxOutput, kMaxDecompressedSize);
    if (length > limit) {
        result.error =
            "stated length " + std::to_string(length) + " exceeds the limit of " + std::to_string(limit) + " bytes";
        return result;
    }
    if (length == 0) return result;
    if (symbolCount == 0) {
        result.error = "stated length " + std::to_string(length) + " with no symbols";
        return result;
    }
    if (symbolCount == 1) {
        result.bytes.assign(length, table[0].symbol);
        return result;
    }

    const std::vector<Node> nodes = buildTree(table);
    std::uint32_t lookup[kLookupSize];
    const unsigned minDepth = buildLookup(nodes, lookup);
    const std::size_t availableBits = (size - tableEnd) * 8;
    if (length > availableBits / minDepth) {
        result.error =
            "stated length " + std::to_string(length) + " cannot come from " + std::to_string(availableBits) + " bits";
        return result;
    }

    // Room for the fast path's eight-byte stores past the last symbol; taken
    // off again at the end.
    result.bytes.resize(length + 8);
    Cursor c;
    c.out = result.bytes.data();
    std::uint8_t* const end = c.out + length;
    const Code code{data + tableEnd, size - tableEnd, nodes, lookup};
    bool ok = true;
    if (!options.bitByBit) {
        const std::uint8_t* const bits = code.data;
        auto singles = [bits, &lookup](Cursor& at) { return singlesRound(bits, lookup, at); };
        if (length >= kMultiLookupFrom) {
            const std::vector<std::uint64_t> multi = buildMultiLookup(lookup);
            auto many = [bits, table = multi.data()](Cursor& at) { return manyRound(bits, table, at); };
            ok = code.halves(many, 24, c, end, length) && code.rounds(many, 24, c, end);
        } else if (code.size >= kHalvesFrom) {
            ok = code.halves(singles, 5, c, end, length);
        }
        ok = ok && code.rounds(singles, 5, c, end);
    }
    while (ok && c.out != end) ok = code.one(c, options.bitByBit);
    std::uint8_t* const out = c.out;
    if (!ok) {
        const std::size_t produced = static_cast<std::size_t>(out - result.bytes.data());
        result.error =
            "input ends after " + std::to_string(produced) + " of " + std::to_string(length) + " stated bytes";
        result.bytes.clear();
        return result;
    }
    result.bytes.resize(length);
    return result;
}

DecompressResult decompress(const Bytes& data, const DecompressOptions& options) {
    return decompress(data.data(), data.size(), options);
}

Bytes compress(const std::uint8_t* data, std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("compressed state input of 4 GiB or more");
    std::array<std::uint64_t, 256> counts{};
    for (std::size_t k = 0; k < size; ++k) ++counts[data[k]];
    std::vector<TableEntry> table;
    for (unsigned s = 0; s < 256; ++s)
        if (counts[s]) table.push_back({static_cast<std::uint8_t>(s), static_cast<std::uint32_t>(counts[s])});
    std::stable_sort(table.begin(), table.end(),
                     [](const TableEntry& a, const TableEntry& b) { return a.frequency < b.frequency; });

    Bytes out;
    out.reserve(kHeaderSize + table.size() * kTableEntrySize + size / 2);
    writeU32(out, kMagic);
    writeU32(out, kVersion);
    writeU32(out, static_cast<std::uint32_t>(table.size()));
    writeU32(out, static_cast<std::uint32_t>(size));
    for (const TableEntry& e : table) {
        out.push_back(e.symbol);
        writeU32(out, e.frequency);
    }
    if (table.size() < 2) return out;  // a lone symbol needs no bits

    // Codes, first step from the root in bit 0. Huffman depth for fewer than
    // 2^32 symbols stays far below the 56 bits the writer can take at once.
    const std::vector<Node> nodes = buildTree(table);
    std::array<std::uint64_t, 256> code{};
    std::array<unsigned, 256> codeLength{};
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        if (!nodes[n].isLeaf()) continue;
        std::uint64_t bitsFromLeaf = 0;
        unsigned depth = 0;
        for (int c = static_cast<int>(n); nodes[c].parent >= 0; c = nodes[c].parent, ++depth)
            bitsFromLeaf = bitsFromLeaf << 1 | (nodes[nodes[c].parent].second == c ? 1u : 0u);
        if (depth > 56) throw std::length_error("code longer than 56 bits");
        code[nodes[n].symbol] = bitsFromLeaf;
        codeLength[nodes[n].symbol] = depth;
    }
    std::uint64_t pending = 0;
    unsigned pendingBits = 0;
    for (std::size_t k = 0; k < size; ++k) {
        pending |= code[data[k]] << pendingBits;
        pendingBits += codeLength[data[k]];
        while (pendingBits >= 8) {
            out.push_back(static_cast<std::uint8_t>(pending));
            pending >>= 8;
            pendingBits -= 8;
        }
    }
    if (pendingBits > 0) out.push_back(static_cast<std::uint8_t>(pending));
    return out;
}

Bytes compress(const Bytes& data) { return compress(data.data(), data.size()); }

}  // namespace tvr::plr::state
