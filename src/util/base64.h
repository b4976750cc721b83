// Base64 (standard alphabet, '=' padding, no line breaks) for keeping bytes in text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tvr::util {

class ByteArray : public std::vector<std::uint8_t> {
public:
    using std::vector<std::uint8_t>::vector;
    ByteArray() = default;
    ByteArray(const void* data, std::size_t length);
    explicit ByteArray(const std::string& text) : ByteArray(text.data(), text.size()) {}

    // Copies every byte when `capacity` holds them all; otherwise copies nothing
    // and answers false.
    bool copyTo(void* buffer, std::size_t capacity) const;
};

class Base64 {
public:
    static std::string encode(const ByteArray& bytes);
    static std::string encode(const void* data, std::size_t length);

    // Empty on any error: a length that is not a multiple of 4, a character
    // outside the alphabet (whitespace and line breaks included), or '=' where a
    // group still needs bits. Each group of four stands alone, so a padded group
    // may also appear before the last one.
    static ByteArray decode(const std::string& text);
    static ByteArray decode(const char* text, std::size_t length);
};

}  // namespace tvr::util
