// Undo and redo of change records: the live node and its stored copy trade
// states while every node that exists on the live side stays where a plug-in's
// pointer expects it. Nodes are paired by identity (marker); a paired node
// keeps its address and swaps only its contents, so pointers held before an
// undo keep reaching (and writing into) the live scene.
#include <unordered_map>
#include <utility>
#include <vector>

#include "embedded_host/scene/host_node.h"

namespace tvr::plr::embedded {

namespace {

constexpr ListKind kAllLists[] = {ListKind::Tags, ListKind::Tracks, ListKind::Children};

// One side of an exchange: its nodes by identity and the order of every list below the root.
struct Side {
  std::unordered_map<std::uint64_t, HostNode*> nodes;
  // For each owner identity (0 for the root) and list, the identities in order.
  std::unordered_map<std::uint64_t, std::vector<std::vector<std::uint64_t>>> lists;
};

std::size_t slot(ListKind k) { return k == ListKind::Tags ? 0 : (k == ListKind::Tracks ? 1 : 2); }

void record(Side& side, HostNode* owner, std::uint64_t ownerKey, const std::vector<ListKind>& kinds) {
  auto& lists = side.lists[ownerKey];
  lists.resize(3);
  for (ListKind k : kinds)
    for (HostNode* n = owner->ownList(k)->first; n; n = n->next) {
      lists[slot(k)].push_back(n->marker);
      side.nodes[n->marker] = n;
      record(side, n, n->marker, {std::begin(kAllLists), std::end(kAllLists)});
    }
}

void detachAll(const Side& side) {
  for (const auto& e : side.nodes) e.second->unlink();
}

}  // namespace

void HostNode::exchangeWith(HostNode& other, bool withTags, bool withTracks, bool withChildren) {
  std::vector<ListKind> kinds;
  if (withTags) kinds.push_back(ListKind::Tags);
  if (withTracks) kinds.push_back(ListKind::Tracks);
  if (withChildren) kinds.push_back(ListKind::Children);

  Side live, stored;
  record(live, this, 0, kinds);
  record(stored, &other, 0, kinds);
  detachAll(live);
  detachAll(stored);

  swapOwnWith(other);
  // Paired nodes trade contents (selection included: it was part of what the copy recorded).
  for (const auto& e : live.nodes) {
    auto it = stored.nodes.find(e.first);
    if (it == stored.nodes.end()) continue;
    e.second->swapOwnWith(*it->second);
    std::swap(e.second->selected, it->second->selected);
  }
  // The live side takes the stored order, realised by live nodes wherever they exist; the
  // stored side takes the live order, realised by the nodes the live side did not use.
  auto pick = [](const Side& prefer, const Side& fallback, std::uint64_t m) {
    auto it = prefer.nodes.find(m);
    return it != prefer.nodes.end() ? it->second : fallback.nodes.at(m);
  };
  std::vector<HostNode*> nowLive, nowStored;
  auto rebuild = [&](HostNode* root, const Side& order, const Side& prefer, const Side& fallback,
                     std::vector<HostNode*>& out) {
    for (const auto& e : order.lists) {
      HostNode* owner = e.first == 0 ? root : pick(prefer, fallback, e.first);
      for (ListKind k : kAllLists)
        for (std::uint64_t m : e.second[slot(k)]) {
          HostNode* n = pick(prefer, fallback, m);
          n->insertLastInto(owner, k);
          out.push_back(n);
        }
    }
  };
  rebuild(this, stored, live, stored, nowLive);
  rebuild(&other, live, stored, live, nowStored);

  // Unregister what is now stored before registering what is now live, so each shared
  // identity ends up naming the live node.
  for (HostNode* n : nowStored) {
    n->setLinkable(false);
    n->ownership = Ownership::Snapshot;
  }
  for (HostNode* n : nowLive) {
    n->setLinkable(linkable);
    n->ownership = linkable ? Ownership::Tree : Ownership::Snapshot;
  }
}

}  // namespace tvr::plr::embedded
