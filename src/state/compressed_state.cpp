#include "state/compressed_state.h"

#include <algorithm>
#include <array>
#include <limits>
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
// and the bits it took, or the inner node reached after all of them. An entry
// holds the bits taken in its low byte, 1 in the next for a leaf, and the
// symbol or node index in the high half.
constexpr unsigned kLookupBits = 11;
constexpr std::size_t kLookupSize = std::size_t{1} << kLookupBits;
constexpr std::uint32_t kLeaf = 0x100;

std::uint32_t lookupBitsOf(std::uint32_t entry) { return entry & 0xFF; }
std::uint32_t lookupValueOf(std::uint32_t entry) { return entry >> 16; }

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
                    table[child.code] = static_cast<std::uint32_t>(c.symbol) << 16 | kLeaf | depth;
                } else if (depth == kLookupBits) {
                    table[child.code] = static_cast<std::uint32_t>(child.node) << 16 | kLookupBits;
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
// stands for a code longer than the single-symbol lookup.
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
            symbols |= std::uint64_t{lookupValueOf(e)} << (16 + 8 * count++);
            used += lookupBitsOf(e);
        }
        table[i] = symbols | count << 8 | used;
    }
    return table;
}

// Bits of the input, lowest bit of each byte first.
class BitReader {
public:
    BitReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    // Whole-word refill: possible while eight bytes remain. Leaves at least 56
    // bits. Bits above the counted ones are the next bytes at their own
    // places, so or-ing them in again later changes nothing.
    bool canRefillWhole() const { return pos_ + 8 <= size_; }
    void refillWhole() {
        buffer_ |= util::loadLittleEndian64(data_ + pos_) << count_;
        pos_ += (63 - count_) >> 3;
        count_ |= 56;
    }
    void refill() {
        if (canRefillWhole()) {
            refillWhole();
        } else {
            while (count_ <= 56 && pos_ < size_) {
                buffer_ |= static_cast<std::uint64_t>(data_[pos_++]) << count_;
                count_ += 8;
            }
        }
    }
    unsigned count() const { return count_; }
    std::uint64_t peek() const { return buffer_; }

    // Symbols through the multi-symbol lookup, four lookups from each whole-word
    // refill, while eight input bytes and 24 output places remain (each entry
    // is stored as eight bytes, so `out` needs two places of room past `end`).
    // Stops early in front of a long code. Answers the new `out`.
    std::uint8_t* decodeMany(const std::uint64_t* multi, std::uint8_t* out, const std::uint8_t* end) {
        // Locals, so that the loop keeps them in registers.
        std::uint64_t buffer = buffer_;
        unsigned count = count_;
        std::size_t pos = pos_;
        while (end - out >= 24 && pos + 8 <= size_) {
            buffer |= util::loadLittleEndian64(data_ + pos) << count;
            pos += (63 - count) >> 3;
            count |= 56;
            for (int k = 0; k < 4; ++k) {
                const std::uint64_t e = multi[buffer & (kMultiSize - 1)];
                const unsigned n = (e >> 8) & 0xFF;
                if (n == 0) goto done;
                const std::uint64_t symbols = e >> 16;
                std::memcpy(out, &symbols, 8);
                out += n;
                // The shift takes the low six bits alone: the bits used.
                buffer >>= (e & 63);
                count -= static_cast<unsigned>(e & 63);
            }
        }
    done:
        buffer_ = buffer;
        count_ = count;
        pos_ = pos;
        return out;
    }

    void consume(unsigned n) {
        buffer_ >>= n;
        count_ -= n;
    }

    // Symbols through the single-symbol lookup, five from each whole-word
    // refill, while eight input bytes and five output places remain. Stops
    // early in front of a long code. Answers the new `out`.
    std::uint8_t* decodeSingles(const std::uint32_t* lookup, std::uint8_t* out, const std::uint8_t* end) {
        std::uint64_t buffer = buffer_;
        unsigned count = count_;
        std::size_t pos = pos_;
        while (end - out >= 5 && pos + 8 <= size_) {
            buffer |= util::loadLittleEndian64(data_ + pos) << count;
            pos += (63 - count) >> 3;
            count |= 56;
            for (int k = 0; k < 5; ++k) {
                const std::uint32_t e = lookup[buffer & (kLookupSize - 1)];
                if (!(e & kLeaf)) goto done;
                *out++ = static_cast<std::uint8_t>(lookupValueOf(e));
                buffer >>= lookupBitsOf(e);
                count -= lookupBitsOf(e);
            }
        }
    done:
        buffer_ = buffer;
        count_ = count;
        pos_ = pos;
        return out;
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
    std::size_t pos_ = 0;
    std::uint64_t buffer_ = 0;
    unsigned count_ = 0;
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
        return static_cast<int>(lookupValueOf(entry));
    }
    // A code longer than the lookup, or the last few bits of the input.
    if (!(entry & kLeaf) && bits.count() >= kLookupBits) {
        node = static_cast<int>(lookupValueOf(entry));
        bits.consume(kLookupBits);
    }
    return walk(nodes, node, bits);
}

// Output at least this long is worth building the multi-symbol lookup for.
constexpr std::size_t kMultiLookupFrom = 64 << 10;

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
    std::uint8_t* out = result.bytes.data();
    std::uint8_t* const end = out + length;
    BitReader bits(data + tableEnd, size - tableEnd);
    bool ok = true;
    // One careful symbol, for long codes and the last few bytes of input.
    auto one = [&]() {
        const int symbol =
            options.bitByBit ? walk(nodes, static_cast<int>(nodes.size()) - 1, bits) : decodeOne(nodes, lookup, bits);
        ok = symbol >= 0;
        if (ok) *out++ = static_cast<std::uint8_t>(symbol);
    };
    if (!options.bitByBit) {
        if (length >= kMultiLookupFrom) {
            const std::vector<std::uint64_t> multi = buildMultiLookup(lookup);
            for (;;) {
                out = bits.decodeMany(multi.data(), out, end);
                if (end - out < 24 || !bits.canRefillWhole()) break;
                one();
                if (!ok) break;
            }
        }
        while (ok) {
            out = bits.decodeSingles(lookup, out, end);
            if (end - out < 5 || !bits.canRefillWhole()) break;
            one();
        }
    }
    while (ok && out != end) one();
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
