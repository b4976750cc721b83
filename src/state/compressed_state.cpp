#include "state/compressed_state.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <utility>

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

// The tree both sides agree on. The table is taken in its stored order: each
// pair of neighbours i, i+1 gets an inner node, inserted after every node of
// equal or smaller weight that follows them. The root ends up last.
std::vector<Node> buildTree(const std::vector<TableEntry>& table) {
    std::vector<Node> nodes;
    nodes.reserve(table.size() * 2);
    for (const TableEntry& e : table) {
        Node leaf;
        leaf.weight = e.frequency;
        leaf.symbol = e.symbol;
        nodes.push_back(leaf);
    }
    for (std::size_t i = 0; i + 1 < nodes.size(); i += 2) {
        const std::uint64_t w = nodes[i].weight + nodes[i + 1].weight;
        std::size_t j = i + 2;
        while (j < nodes.size() && nodes[j].weight <= w) ++j;
        // Only nodes already paired can refer to positions at or after j.
        const int shiftFrom = static_cast<int>(j);
        for (std::size_t k = 0; k < i; ++k) {
            Node& n = nodes[k];
            if (n.first >= shiftFrom) ++n.first;
            if (n.second >= shiftFrom) ++n.second;
            if (n.parent >= shiftFrom) ++n.parent;
        }
        Node inner;
        inner.first = static_cast<int>(i);
        inner.second = static_cast<int>(i + 1);
        inner.weight = w;
        nodes.insert(nodes.begin() + static_cast<std::ptrdiff_t>(j), inner);
        nodes[i].parent = nodes[i + 1].parent = static_cast<int>(j);
    }
    return nodes;
}

unsigned minLeafDepth(const std::vector<Node>& nodes) {
    unsigned best = std::numeric_limits<unsigned>::max();
    std::vector<std::pair<int, unsigned>> work{{static_cast<int>(nodes.size()) - 1, 0u}};
    while (!work.empty()) {
        auto [n, depth] = work.back();
        work.pop_back();
        if (nodes[n].isLeaf()) {
            best = std::min(best, depth);
        } else {
            work.emplace_back(nodes[n].first, depth + 1);
            work.emplace_back(nodes[n].second, depth + 1);
        }
    }
    return best;
}

// Lookup over the next kLookupBits bits: either the leaf reached within them
// and the bits it took, or the inner node reached after all of them.
constexpr unsigned kLookupBits = 11;
constexpr std::size_t kLookupSize = std::size_t{1} << kLookupBits;

struct Lookup {
    std::uint16_t value;  // symbol for a leaf, node index otherwise
    std::uint8_t bits;
    std::uint8_t leaf;
};

std::vector<Lookup> buildLookup(const std::vector<Node>& nodes) {
    std::vector<Lookup> table(kLookupSize);
    struct Item {
        int node;
        unsigned depth;
        std::uint32_t code;
    };
    std::vector<Item> work{{static_cast<int>(nodes.size()) - 1, 0, 0}};
    while (!work.empty()) {
        const Item item = work.back();
        work.pop_back();
        const Node& n = nodes[item.node];
        if (n.isLeaf()) {
            const Lookup entry{static_cast<std::uint16_t>(n.symbol),
                               static_cast<std::uint8_t>(item.depth), 1};
            for (std::size_t p = item.code; p < kLookupSize; p += std::size_t{1} << item.depth)
                table[p] = entry;
        } else if (item.depth == kLookupBits) {
            table[item.code] = Lookup{static_cast<std::uint16_t>(item.node),
                                      static_cast<std::uint8_t>(kLookupBits), 0};
        } else {
            work.push_back({n.first, item.depth + 1, item.code});
            work.push_back({n.second, item.depth + 1, item.code | (1u << item.depth)});
        }
    }
    return table;
}

// Bits of the input, lowest bit of each byte first.
class BitReader {
public:
    BitReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    void refill() {
        if (pos_ + 8 <= size_) {
            std::uint64_t word = 0;
            for (int k = 0; k < 8; ++k) word |= static_cast<std::uint64_t>(data_[pos_ + k]) << (8 * k);
            // Bits above the counted bytes are the next bytes at their own
            // places, so or-ing them in again later changes nothing.
            buffer_ |= word << count_;
            const unsigned take = (63 - count_) >> 3;
            pos_ += take;
            count_ += take * 8;
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
    std::size_t pos_ = 0;
    std::uint64_t buffer_ = 0;
    unsigned count_ = 0;
};

// Walks from `node` to a leaf one bit at a time; -1 when the bits run out.
int walk(const std::vector<Node>& nodes, int node, BitReader& bits) {
    while (!nodes[node].isLeaf()) {
        const int bit = bits.next();
        if (bit < 0) return -1;
        node = bit ? nodes[node].second : nodes[node].first;
    }
    return nodes[node].symbol;
}

}  // namespace

DecompressResult decompress(const std::uint8_t* data, std::size_t size,
                            const DecompressOptions& options) {
    DecompressResult result;
    const bool headerOk = size >= kHeaderSize && readU32(data) == kMagic &&
                          readU32(data + 4) == kVersion &&
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
        result.error = "symbol table of " + std::to_string(symbolCount) +
                       " entries runs past the end of the input";
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
        result.error = "stated length " + std::to_string(length) + " exceeds the limit of " +
                       std::to_string(limit) + " bytes";
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
    const std::size_t availableBits = (size - tableEnd) * 8;
    if (length > availableBits / minLeafDepth(nodes)) {
        result.error = "stated length " + std::to_string(length) + " cannot come from " +
                       std::to_string(availableBits) + " bits";
        return result;
    }

    result.bytes.resize(length);
    std::uint8_t* out = result.bytes.data();
    BitReader bits(data + tableEnd, size - tableEnd);
    const int root = static_cast<int>(nodes.size()) - 1;

    // The lookup takes up to kLookupBits at once; bitByBit walks the tree alone.
    const std::vector<Lookup> lookup = options.bitByBit ? std::vector<Lookup>() : buildLookup(nodes);
    for (std::size_t produced = 0; produced < length; ++produced) {
        int node = root;
        if (!lookup.empty()) {
            if (bits.count() < kLookupBits) bits.refill();
            const Lookup entry = lookup[bits.peek() & (kLookupSize - 1)];
            if (entry.leaf && entry.bits <= bits.count()) {
                out[produced] = static_cast<std::uint8_t>(entry.value);
                bits.consume(entry.bits);
                continue;
            }
            // A code longer than the lookup, or the last few bits of the input.
            if (!entry.leaf && bits.count() >= kLookupBits) {
                node = entry.value;
                bits.consume(kLookupBits);
            }
        }
        const int symbol = walk(nodes, node, bits);
        if (symbol < 0) {
            result.error = "input ends after " + std::to_string(produced) + " of " + std::to_string(length) +
                           " stated bytes";
            result.bytes.clear();
            return result;
        }
        out[produced] = static_cast<std::uint8_t>(symbol);
    }
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
    std::stable_sort(table.begin(), table.end(), [](const TableEntry& a, const TableEntry& b) {
        return a.frequency < b.frequency;
    });

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
