// The plain decoder for compressed state: the tree built by inserting into one
// array and renumbering, then one bit at a time from the root. The fast decoder
// must give the same bytes and stop at the same place.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "state/compressed_state.h"

namespace tvr::plr::state::reference {

struct Node {
    int first = -1;
    int second = -1;
    std::uint64_t weight = 0;
    int symbol = -1;
};

inline std::uint32_t u32(const std::uint8_t* p) {
    return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 | std::uint32_t{p[3]} << 24;
}

// Each pair of neighbours i, i+1 gets an inner node, inserted after every node
// of equal or smaller weight that follows them; the root ends up last.
inline std::vector<Node> tree(const std::vector<std::pair<std::uint8_t, std::uint32_t>>& table) {
    std::vector<Node> nodes;
    for (const auto& [symbol, frequency] : table) nodes.push_back({-1, -1, frequency, symbol});
    for (std::size_t i = 0; i + 1 < nodes.size(); i += 2) {
        const std::uint64_t w = nodes[i].weight + nodes[i + 1].weight;
        std::size_t j = i + 2;
        while (j < nodes.size() && nodes[j].weight <= w) ++j;
        for (std::size_t k = 0; k < i; ++k) {
            if (nodes[k].first >= static_cast<int>(j)) ++nodes[k].first;
            if (nodes[k].second >= static_cast<int>(j)) ++nodes[k].second;
        }
        nodes.insert(nodes.begin() + static_cast<std::ptrdiff_t>(j),
                     Node{static_cast<int>(i), static_cast<int>(i + 1), w, -1});
    }
    return nodes;
}

struct Decoded {
    Bytes bytes;
    std::string error;  // the decoder's wording for a stream that runs out
};

// Decodes input whose header passed the check and whose table is complete,
// with two symbols or more.
inline Decoded decode(const Bytes& in) {
    const std::size_t count = u32(in.data() + 8);
    const std::size_t length = u32(in.data() + 12);
    std::vector<std::pair<std::uint8_t, std::uint32_t>> table;
    for (std::size_t k = 0; k < count; ++k) table.emplace_back(in[16 + 5 * k], u32(in.data() + 17 + 5 * k));
    const std::vector<Node> nodes = tree(table);
    const int root = static_cast<int>(nodes.size()) - 1;
    unsigned minDepth = 1000;
    std::vector<std::pair<int, unsigned>> work{{root, 0u}};
    while (!work.empty()) {
        const auto [n, depth] = work.back();
        work.pop_back();
        if (nodes[n].first < 0) {
            minDepth = std::min(minDepth, depth);
        } else {
            work.emplace_back(nodes[n].first, depth + 1);
            work.emplace_back(nodes[n].second, depth + 1);
        }
    }
    const std::size_t start = 16 + 5 * count;
    const std::size_t bits = (in.size() - start) * 8;
    Decoded out;
    if (length > bits / minDepth) {
        out.error = "stated length " + std::to_string(length) + " cannot come from " + std::to_string(bits) + " bits";
        return out;
    }
    std::size_t bit = 0;
    while (out.bytes.size() < length) {
        int n = root;
        while (nodes[n].first >= 0 && bit < bits) {
            n = (in[start + bit / 8] >> (bit % 8)) & 1 ? nodes[n].second : nodes[n].first;
            ++bit;
        }
        if (nodes[n].first >= 0) {
            out.error = "input ends after " + std::to_string(out.bytes.size()) + " of " + std::to_string(length) +
                        " stated bytes";
            out.bytes.clear();
            return out;
        }
        out.bytes.push_back(static_cast<std::uint8_t>(nodes[n].symbol));
    }
    return out;
}

}  // namespace tvr::plr::state::reference
