// Byte classes of the "C" locale as fixed tables (internal to the xml library).
#pragma once

namespace tvr::util::xml {

// Copied as they are by escape: letters, digits, space and punctuation
// (32..126), except '&' and '<'.
constexpr bool isPlain(unsigned char c) { return c >= 32 && c <= 126 && c != '&' && c != '<'; }

// isspace: space, tab, newline, vertical tab, form feed, carriage return.
constexpr bool isSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr bool isHexDigit(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

constexpr unsigned hexValue(unsigned char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

}  // namespace tvr::util::xml
