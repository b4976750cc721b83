// Memory for the parts of an element tree. A document of a few megabytes
// holds a million elements, each with its child list and attributes; taking
// every piece from the general heap and giving it back costs more than
// reading the text. Small blocks come from large chunks, sorted into sizes,
// and go back to a free list of the thread that frees them for the next
// piece made there. Chunks are kept for the life of the process.
#pragma once

#include <cstddef>
#include <new>

// Under the address checker nothing is pooled or kept: every piece of memory
// is a heap allocation of its own, so that a use after free is still caught.
#if defined(__SANITIZE_ADDRESS__)
#define PLR_XML_PLAIN_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLR_XML_PLAIN_HEAP 1
#endif
#endif

namespace tvr::util::xml {

// Blocks up to this size are pooled; larger ones come from the heap.
constexpr std::size_t kLargestPooledBlock = 512;

void* takeBlock(std::size_t size);
// A block from takeBlock, free again; `size` as it was asked for.
void giveBlock(void* block, std::size_t size) noexcept;

// A standard allocator over the pool, for the containers of an element.
template <class T>
struct BlockAllocator {
    using value_type = T;
    BlockAllocator() = default;
    template <class U>
    BlockAllocator(const BlockAllocator<U>&) noexcept {}  // NOLINT: converting, as allocators must

    T* allocate(std::size_t n) {
        if (n > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        return static_cast<T*>(takeBlock(n * sizeof(T)));
    }
    void deallocate(T* p, std::size_t n) noexcept { giveBlock(p, n * sizeof(T)); }

    template <class U>
    bool operator==(const BlockAllocator<U>&) const noexcept {
        return true;
    }
    template <class U>
    bool operator!=(const BlockAllocator<U>&) const noexcept {
        return false;
    }
};

}  // namespace tvr::util::xml
