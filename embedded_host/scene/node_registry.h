#pragma once
// Which nodes exist (by SDK pointer) and which identities links resolve to.
// Identities (markers) are never reused, so a freed node never resolves again
// even when its memory is.
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

  void setLinkable(std::uint64_t marker, HostNode* n) { linkable_[marker] = n; }
  // Forgets the marker only while it still names n.
  void dropLinkable(std::uint64_t marker, const HostNode* n) {
    auto it = linkable_.find(marker);
    if (it != linkable_.end() && it->second == n) linkable_.erase(it);
  }
  HostNode* fromMarker(std::uint64_t marker) const {
    auto it = linkable_.find(marker);
    return it == linkable_.end() ? nullptr : it->second;
  }

 private:
  std::uint64_t lastMarker_ = 0;
  std::unordered_map<const void*, HostNode*> allocated_;
  std::unordered_map<std::uint64_t, HostNode*> linkable_;
};

// The running host's registry (null when no host runs).
NodeRegistry* nodeRegistry();

}  // namespace tvr::plr::embedded
