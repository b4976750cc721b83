// LocalAlloc / LocalSize / LocalFree for the emulated platforms: zero-filled blocks that
// know their size; unknown handles fail instead of corrupting the heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "platform/platform.h"

namespace tvr::platform {

class PLR_PLATFORM_EXPORT LocalMemory {
public:
    LocalMemory() = default;
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;
    ~LocalMemory();

    // Null (with the error) when the request cannot be met.
    void* alloc(std::size_t bytes, std::uint32_t& error);
    // 0 (with the error) for an unknown handle.
    std::size_t size(const void* block, std::uint32_t& error) const;
    // Null on success (a null block included); the block itself when it is unknown.
    void* free(void* block, std::uint32_t& error);
    std::size_t liveBlocks() const { return blocks_.size(); }

    // Larger requests fail as out of memory rather than reaching the allocator.
    static constexpr std::size_t MaxBlock = std::size_t{1} << 30;

private:
    std::unordered_map<void*, std::size_t> blocks_;
};

}  // namespace tvr::platform
