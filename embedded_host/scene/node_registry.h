#pragma once
// Which nodes exist (by SDK pointer) and which identities links resolve to.
// Identities (markers) are never reused, so a freed node never resolves again
// even when its memory is. They are handed out in sequence, so the linkable
// node of each is found by index.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tvr::plr::embedded {

class HostNode;

class NodeRegistry {
 public:
  std::uint64_t newMarker() { return ++lastMarker_; }

  void addAllocated(const void* iface, HostNode* n) { allocated_[iface] = n; }
  void removeAllocated(const void* iface) { allocated_.erase(iface); }
  HostNode* fromPointer(const void* p) const {
    auto it = allocated_.find(p);
    return it == allocated_.end() ? nullptr : it->second;
  }
  std::size_t allocatedCount() const { return allocated_.size(); }
  // Nodes in no list and owned by nobody but their caller (free-standing objects, tags, tracks).
  std::vector<HostNode*> roots() const;

  // Markers this registry handed out only.
  void setLinkable(std::uint64_t marker, HostNode* n) {
    if (marker == 0 || marker > lastMarker_) return;
    if (marker >= linkable_.size()) linkable_.resize(std::max<std::size_t>(std::size_t(lastMarker_) + 1, 2 * linkable_.size()));
    linkable_[std::size_t(marker)] = n;
  }
  // Forgets the marker only while it still names n.
  void dropLinkable(std::uint64_t marker, const HostNode* n) {
    if (marker < linkable_.size() && linkable_[std::size_t(marker)] == n) linkable_[std::size_t(marker)] = nullptr;
  }
  HostNode* fromMarker(std::uint64_t marker) const {
    return marker < linkable_.size() ? linkable_[std::size_t(marker)] : nullptr;
  }

 private:
  std::uint64_t lastMarker_ = 0;
  std::unordered_map<const void*, HostNode*> allocated_;
  std::vector<HostNode*> linkable_;  // by marker; null: not linkable now
};

// The running host's registry (null when no host runs).
NodeRegistry* nodeRegistry();

}  // namespace tvr::plr::embedded
