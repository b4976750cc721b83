// Base64 (standard alphabet, '=' padding, no line breaks) for keeping bytes in text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace tvr::util {

// Leaves elements made without a value unset: a decoder sizes its output and
// writes every byte, so zeroing it first would be a second pass over memory.
template <class T>
struct UnsetAllocator : std::allocator<T> {
    template <class U>
    struct rebind {
        using other = UnsetAllocator<U>;
    };
    UnsetAllocator() = default;
    template <class U>
    explicit UnsetAllocator(const UnsetAllocator<U>& /*other*/) noexcept {}

    template <class U>
    void construct(U* at) noexcept {
        ::new (static_cast<void*>(at)) U;
    }
    template <class U, class... Args>
    void construct(U* at, Args&&... args) {
        ::new (static_cast<void*>(at)) U(std::forward<Args>(args)...);
    }
};

// Bytes; a size given without a value (the sized constructor, resize) leaves
// the new bytes unset for the caller to fill.
class ByteArray : public std::vector<std::uint8_t, UnsetAllocator<std::uint8_t>> {
public:
    using Base = std::vector<std::uint8_t, UnsetAllocator<std::uint8_t>>;
    using Base::Base;
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
