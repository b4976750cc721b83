// Decodes arbitrary text and checks the result against a plain linear-search
// decoder and against re-encoding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "util/base64.h"

namespace {

const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

tvr::util::ByteArray slowDecode(const std::string& text) {
    tvr::util::ByteArray out;
    if (text.size() % 4 != 0) {
        return out;
    }
    for (std::size_t i = 0; i < text.size(); i += 4) {
        const int count = 3 - (text[i + 3] == '=') - (text[i + 2] == '=');
        int v[4] = {0, 0, 0, 0};
        for (int k = 0; k <= count; ++k) {
            const std::size_t at = kAlphabet.find(text[i + static_cast<std::size_t>(k)]);
            if (at == std::string::npos) {
                return tvr::util::ByteArray();
            }
            v[k] = static_cast<int>(at);
        }
        const std::uint8_t bytes[3] = {static_cast<std::uint8_t>((v[0] << 2) | (v[1] >> 4)),
                                       static_cast<std::uint8_t>((v[1] << 4) | (v[2] >> 2)),
                                       static_cast<std::uint8_t>((v[2] << 6) | v[3])};
        out.insert(out.end(), bytes, bytes + count);
    }
    return out;
}

// The one spelling that encode produces for these bytes: padding only in the
// last group and no bits set below the last byte.
bool isCanonical(const std::string& text, const tvr::util::ByteArray& decoded) {
    if (text.size() != (decoded.size() + 2) / 3 * 4 || text.find('=') < text.size() - 4) {
        return false;
    }
    const std::size_t tail = decoded.size() % 3;
    if (tail == 0) {
        return true;
    }
    const char last = text[text.size() - (tail == 1 ? 3 : 2)];
    const std::size_t value = kAlphabet.find(last);
    return (value & (tail == 1 ? 0x0F : 0x03)) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const tvr::util::ByteArray decoded = tvr::util::Base64::decode(text);
    if (decoded != slowDecode(text)) {
        std::abort();
    }
    if (decoded.empty()) {
        return 0;
    }
    const std::string again = tvr::util::Base64::encode(decoded);
    // Interior padding and unused low bits decode, but encode spells them canonically.
    if (tvr::util::Base64::decode(again) != decoded) {
        std::abort();
    }
    if (isCanonical(text, decoded) != (again == text)) {
        std::abort();
    }
    return 0;
}
