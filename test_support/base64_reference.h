// Plain base64 encoder and decoder with a linear search per character, shared
// by the unit test and the fuzzer as the comparison for the fast table-driven
// versions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "util/base64.h"

namespace tvr::util::reference {

inline const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

inline std::string encode(const ByteArray& bytes) {
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = bytes.size() - i < 3 ? bytes.size() - i : 3;
        std::uint32_t v = 0;
        for (std::size_t k = 0; k < 3; ++k) v = v << 8 | (k < n ? bytes[i + k] : 0u);
        for (std::size_t k = 0; k < 4; ++k)
            out += k <= n ? kAlphabet[(v >> (18 - 6 * k)) & 63] : '=';
    }
    return out;
}

inline ByteArray decode(const std::string& text) {
    ByteArray out;
    for (std::size_t i = 0; i < text.size() && text.size() % 4 == 0; i += 4) {
        const int count = 3 - (text[i + 3] == '=') - (text[i + 2] == '=');
        int v[4] = {0, 0, 0, 0};
        for (int k = 0; k <= count; ++k) {
            const std::size_t at = kAlphabet.find(text[i + static_cast<std::size_t>(k)]);
            if (at == std::string::npos) return ByteArray();
            v[k] = static_cast<int>(at);
        }
        const std::uint8_t bytes[3] = {static_cast<std::uint8_t>((v[0] << 2) | (v[1] >> 4)),
                                       static_cast<std::uint8_t>((v[1] << 4) | (v[2] >> 2)),
                                       static_cast<std::uint8_t>((v[2] << 6) | v[3])};
        out.insert(out.end(), bytes, bytes + count);
    }
    return out;
}

}  // namespace tvr::util::reference
