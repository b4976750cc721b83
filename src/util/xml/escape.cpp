// Reading character references (writing them is in writer.cpp). Classification
// uses fixed tables, the same as the "C" locale, so the result never depends
// on the process's locale.
#include <cstring>

#include "util/xml/char_class.h"
#include "util/xml/element.h"

namespace tvr::util::xml {

void appendUnescaped(std::string& out, const char* data, std::size_t size) {
    std::size_t i = 0;
    while (i < size) {
        const void* found = std::memchr(data + i, '&', size - i);
        if (!found) {
            out.append(data + i, size - i);
            return;
        }
        const std::size_t amp = static_cast<std::size_t>(static_cast<const char*>(found) - data);
        out.append(data + i, amp - i);
        i = amp;
        if (i + 1 >= size || data[i + 1] != '#') {
            out += '&';
            ++i;
            continue;
        }
        i += 2;
        const bool hex = i < size && data[i] == 'x';
        if (hex) ++i;
        // The run is of hex digits in both modes; decimal conversion then stops
        // at its first non-decimal digit. Only the low byte of the number is
        // kept, and a run that holds no number gives the byte 0.
        const std::size_t start = i;
        while (i < size && isHexDigit(static_cast<unsigned char>(data[i]))) ++i;
        unsigned value = 0;
        for (std::size_t k = start; k < i; ++k) {
            const unsigned char c = static_cast<unsigned char>(data[k]);
            if (hex) {
                value = (value * 16 + hexValue(c)) & 0xFFu;
            } else {
                if (c < '0' || c > '9') break;
                value = (value * 10 + (c - '0')) & 0xFFu;
            }
        }
        out += static_cast<char>(value);
        // One byte after the digits is skipped unseen; it should be the ';'.
        if (i < size) ++i;
    }
}

std::string unescape(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    appendUnescaped(out, text.data(), text.size());
    return out;
}

}  // namespace tvr::util::xml
