#include "embedded_host/scene/node_memory.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define PLR_NODE_POISON 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLR_NODE_POISON 1
#endif
#endif
#ifdef PLR_NODE_POISON
#include <sanitizer/asan_interface.h>
#endif

namespace tvr::plr::embedded::nodememory {

namespace {

// Held blocks by address (for "does p point into one") and in the order they were freed.
struct Held {
  std::mutex lock;
  std::map<std::uintptr_t, std::size_t> blocks;
  std::deque<std::uintptr_t> order;

  void giveBackOldest() {
    const std::uintptr_t a = order.front();
    order.pop_front();
    auto it = blocks.find(a);
    if (it == blocks.end()) return;
#ifdef PLR_NODE_POISON
    ASAN_UNPOISON_MEMORY_REGION(reinterpret_cast<void*>(a), it->second);
#endif
    blocks.erase(it);
    ::operator delete(reinterpret_cast<void*>(a));
  }

  ~Held() {
    while (!order.empty()) giveBackOldest();
  }
};

Held& held() {
  static Held h;
  return h;
}

}  // namespace

void* allocate(std::size_t size) { return ::operator new(size); }

void release(void* block, std::size_t size) {
  if (!block) return;
  Held& h = held();
  std::lock_guard<std::mutex> guard(h.lock);
  const auto a = reinterpret_cast<std::uintptr_t>(block);
  h.blocks[a] = size;
  h.order.push_back(a);
#ifdef PLR_NODE_POISON
  // Reading a freed node stays an error the sanitizer reports.
  ASAN_POISON_MEMORY_REGION(block, size);
#endif
  if (h.order.size() > kHeldNodes) h.giveBackOldest();
}

bool wasFreed(const void* p) {
  Held& h = held();
  std::lock_guard<std::mutex> guard(h.lock);
  const auto a = reinterpret_cast<std::uintptr_t>(p);
  auto it = h.blocks.upper_bound(a);
  if (it == h.blocks.begin()) return false;
  --it;
  return a < it->first + it->second;
}

void drain() {
  Held& h = held();
  std::lock_guard<std::mutex> guard(h.lock);
  while (!h.order.empty()) h.giveBackOldest();
}

}  // namespace tvr::plr::embedded::nodememory
