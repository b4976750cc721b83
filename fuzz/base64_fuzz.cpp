// Decodes arbitrary text and checks the result against a plain linear-search
// decoder and against re-encoding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "test_support/base64_reference.h"
#include "util/base64.h"

namespace {

using tvr::util::reference::kAlphabet;

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
    if (decoded != tvr::util::reference::decode(text)) {
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
