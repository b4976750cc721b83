#include "platform/local_memory.h"

#include <cstdlib>

#include "platform/error_codes.h"

namespace tvr::platform {

LocalMemory::~LocalMemory() {
    for (auto& b : blocks_) std::free(b.first);
}

void* LocalMemory::alloc(std::size_t bytes, std::uint32_t& error) {
    if (bytes > MaxBlock) {
        error = ErrorNotEnoughMemory;
        return nullptr;
    }
    // Zero-filled always: callers that ask for LMEM_ZEROINIT and those that do not both get it.
    void* block = std::calloc(1, bytes ? bytes : 1);
    if (!block) {
        error = ErrorNotEnoughMemory;
        return nullptr;
    }
    blocks_[block] = bytes;
    return block;
}

std::size_t LocalMemory::size(const void* block, std::uint32_t& error) const {
    auto it = blocks_.find(const_cast<void*>(block));
    if (it == blocks_.end()) {
        error = ErrorInvalidHandle;
        return 0;
    }
    return it->second;
}

void* LocalMemory::free(void* block, std::uint32_t& error) {
    if (!block) return nullptr;
    auto it = blocks_.find(block);
    if (it == blocks_.end()) {
        error = ErrorInvalidHandle;
        return block;
    }
    blocks_.erase(it);
    std::free(block);
    return nullptr;
}

}  // namespace tvr::platform
