#pragma once
// Small objects the host makes by the ten thousand (links, animation keys)
// live in slots of one size carved from large blocks. Making one takes a slot
// from the free stack or the current block instead of a trip through the
// general allocator, the slots of a scene lie close together, and freed slots
// are reused by the next object of the kind. Blocks stay for the life of the
// program, so a late free (a module unloaded after the host) still finds its pool.
// Not thread-safe: the host is driven from one thread.
#include <cstddef>
#include <vector>

namespace tvr::plr::embedded {

class SlotPool {
 public:
  SlotPool(std::size_t slotSize, std::size_t slotsPerBlock);
  SlotPool(const SlotPool&) = delete;
  SlotPool& operator=(const SlotPool&) = delete;

  void* allocate();
  // Back to the free stack. Under the address sanitizer the slot reads as freed memory
  // until it is handed out again.
  void release(void* slot);
  // p is a slot of this pool that is handed out now (any other pointer is only compared, never read).
  bool isLive(const void* p) const;

 private:
  void addBlock();
  // The in-use flag of the slot at p, null when p is no slot of this pool.
  unsigned char* flagOf(const void* p) const;

  const std::size_t slotSize_;
  const std::size_t perBlock_;
  std::vector<char*> blocks_;  // by address; each holds its slots, then one in-use flag per slot
  struct FreeSlot {
    void* slot;
    unsigned char* flag;
  };
  std::vector<FreeSlot> free_;
  char* next_ = nullptr;  // unused rest of the newest block
  char* end_ = nullptr;
  unsigned char* nextFlag_ = nullptr;
};

}  // namespace tvr::plr::embedded
