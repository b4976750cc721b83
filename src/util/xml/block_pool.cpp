#include "util/xml/block_pool.h"

#include <mutex>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define PLR_XML_PLAIN_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLR_XML_PLAIN_HEAP 1
#endif
#endif

namespace tvr::util::xml {

#ifdef PLR_XML_PLAIN_HEAP

// Under the address checker every piece has its own allocation, so that a
// use after free is still caught.
void* takeBlock(std::size_t size) { return ::operator new(size); }
void giveBlock(void* block, std::size_t) noexcept { ::operator delete(block); }

#else

namespace {

constexpr std::size_t kGrain = 16;
constexpr std::size_t kClasses = kLargestPooledBlock / kGrain;
constexpr std::size_t kChunkBytes = std::size_t{1} << 16;

struct FreeBlock {
    FreeBlock* next;
};

// One list per size class: sizes 1..16 share class 0, 17..32 class 1, and so on.
thread_local FreeBlock* freeBlocks[kClasses] = {};

std::size_t classOf(std::size_t size) { return (size - 1) / kGrain; }

// Every chunk stays listed here, so that it stays reachable.
std::mutex chunkLock;
std::vector<void*>* chunks = nullptr;

FreeBlock* refill(std::size_t sizeClass) {
    void* chunk = ::operator new(kChunkBytes);
    {
        std::lock_guard<std::mutex> hold(chunkLock);
        if (!chunks) chunks = new std::vector<void*>();
        chunks->push_back(chunk);
    }
    // Linked back to front, so that blocks are handed out in address order.
    const std::size_t size = (sizeClass + 1) * kGrain;
    char* base = static_cast<char*>(chunk);
    FreeBlock* head = nullptr;
    for (std::size_t k = kChunkBytes / size; k-- > 0;) {
        auto* block = reinterpret_cast<FreeBlock*>(base + k * size);
        block->next = head;
        head = block;
    }
    return head;
}

}  // namespace

void* takeBlock(std::size_t size) {
    if (size == 0) size = 1;
    if (size > kLargestPooledBlock) return ::operator new(size);
    FreeBlock*& head = freeBlocks[classOf(size)];
    if (!head) head = refill(classOf(size));
    FreeBlock* block = head;
    head = block->next;
    return block;
}

void giveBlock(void* block, std::size_t size) noexcept {
    if (!block) return;
    if (size == 0) size = 1;
    if (size > kLargestPooledBlock) {
        ::operator delete(block);
        return;
    }
    auto* b = static_cast<FreeBlock*>(block);
    FreeBlock*& head = freeBlocks[classOf(size)];
    b->next = head;
    head = b;
}

#endif

}  // namespace tvr::util::xml
