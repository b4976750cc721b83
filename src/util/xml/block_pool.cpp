#include "util/xml/block_pool.h"

#include <mutex>
#include <vector>

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

// Per size class (sizes 1..16 share class 0, 17..32 class 1, and so on):
// blocks given back, and the part of the newest chunk not yet handed out.
// Blocks are cut from a chunk only when asked for, so a chunk's memory is
// first touched by the piece that uses it.
struct SizeClass {
    FreeBlock* free;
    char* next;
    char* end;
};
thread_local SizeClass classes[kClasses] = {};

std::size_t classOf(std::size_t size) { return (size - 1) / kGrain; }

// Every chunk stays listed here, so that it stays reachable.
std::mutex chunkLock;
std::vector<void*>* chunks = nullptr;

void* newChunk() {
    void* chunk = ::operator new(kChunkBytes);
    std::lock_guard<std::mutex> hold(chunkLock);
    if (!chunks) chunks = new std::vector<void*>();
    chunks->push_back(chunk);
    return chunk;
}

}  // namespace

void* takeBlock(std::size_t size) {
    if (size == 0) size = 1;
    if (size > kLargestPooledBlock) return ::operator new(size);
    const std::size_t k = classOf(size);
    SizeClass& c = classes[k];
    if (FreeBlock* block = c.free) {
        c.free = block->next;
        return block;
    }
    const std::size_t blockSize = (k + 1) * kGrain;
    if (static_cast<std::size_t>(c.end - c.next) < blockSize) {
        c.next = static_cast<char*>(newChunk());
        c.end = c.next + kChunkBytes;
    }
    void* block = c.next;
    c.next += blockSize;
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
    SizeClass& c = classes[classOf(size)];
    b->next = c.free;
    c.free = b;
}

#endif

}  // namespace tvr::util::xml
