#include "embedded_host/scene/slot_pool.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define PLR_SLOT_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLR_SLOT_POISON 1
#endif
#endif
#ifdef PLR_SLOT_POISON
#include <sanitizer/asan_interface.h>
#endif

namespace tvr::plr::embedded {

namespace {
constexpr std::size_t kAlign = alignof(std::max_align_t);
}

SlotPool::SlotPool(std::size_t slotSize, std::size_t slotsPerBlock)
    : slotSize_((std::max<std::size_t>(slotSize, 1) + kAlign - 1) / kAlign * kAlign),
      perBlock_(std::max<std::size_t>(slotsPerBlock, 1)) {}

void SlotPool::addBlock() {
  char* block = static_cast<char*>(::operator new(slotSize_ * perBlock_ + perBlock_));
  std::fill(block + slotSize_ * perBlock_, block + slotSize_ * perBlock_ + perBlock_, 0);
  blocks_.insert(std::upper_bound(blocks_.begin(), blocks_.end(), block, std::less<char*>()), block);
  next_ = block;
  end_ = block + slotSize_ * perBlock_;
  nextFlag_ = reinterpret_cast<unsigned char*>(end_);
}

void* SlotPool::allocate() {
  void* slot;
  unsigned char* flag;
  if (!free_.empty()) {
    slot = free_.back().slot;
    flag = free_.back().flag;
    free_.pop_back();
  } else {
    if (next_ == end_) addBlock();
    slot = next_;
    flag = nextFlag_++;
    next_ += slotSize_;
  }
#ifdef PLR_SLOT_POISON
  ASAN_UNPOISON_MEMORY_REGION(slot, slotSize_);
#endif
  *flag = 1;
  return slot;
}

void SlotPool::release(void* slot) {
  unsigned char* flag = flagOf(slot);
  if (!flag || !*flag) return;  // not ours, or free already
  *flag = 0;
#ifdef PLR_SLOT_POISON
  ASAN_POISON_MEMORY_REGION(slot, slotSize_);
#endif
  free_.push_back({slot, flag});
}

bool SlotPool::isLive(const void* p) const {
  const unsigned char* flag = flagOf(p);
  return flag && *flag;
}

unsigned char* SlotPool::flagOf(const void* p) const {
  const auto a = reinterpret_cast<std::uintptr_t>(p);
  auto it = std::upper_bound(blocks_.begin(), blocks_.end(), a,
                             [](std::uintptr_t v, char* b) { return v < reinterpret_cast<std::uintptr_t>(b); });
  if (it == blocks_.begin()) return nullptr;
  char* block = *--it;
  const std::uintptr_t offset = a - reinterpret_cast<std::uintptr_t>(block);
  if (offset >= slotSize_ * perBlock_ || offset % slotSize_ != 0) return nullptr;
  return reinterpret_cast<unsigned char*>(block + slotSize_ * perBlock_ + offset / slotSize_);
}

}  // namespace tvr::plr::embedded
