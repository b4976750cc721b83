#pragma once
// Where host nodes live in memory. A freed node's memory is held back for a
// while instead of being handed to the allocator at once, so a module that
// frees a node twice, or by a pointer it kept, finds a freed node there and
// never another node that the allocator happened to put at the same address.
#include <cstddef>

namespace tvr::plr::embedded::nodememory {

// How many freed nodes are held back before the oldest goes back to the allocator.
constexpr std::size_t kHeldNodes = std::size_t(1) << 15;

void* allocate(std::size_t size);
void release(void* block, std::size_t size);
// p points into the memory of a freed node that is still held back.
bool wasFreed(const void* p);
// Hands every held block back (when no node pointer can be in use any more).
void drain();

}  // namespace tvr::plr::embedded::nodememory
