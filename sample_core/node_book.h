// The sample core's book of its scene nodes: the name the core gave each node
// and the node the adaptor made for it, and the one tool ("master") that owns
// them. The core gives every node back when it goes.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "core_api/core_node.h"
#include "core_api/master.h"
#include "core_api/node_peer.h"

namespace tvr::plr::core::sample {

// The sample core's one tool: it answers the adaptor's questions and keeps no state.
class SampleMaster final : public CMaster {
public:
    SampleMaster() : CMaster(&kDescriptor) {}
    int message(int code, void* data) override;
    bool query(int code, CoreNode* node) override;

    std::vector<int> messages;  // every code the adaptor sent, in order

private:
    static const CMasterDescriptor kDescriptor;
};

class NodeBook;

// Follows one node the book made: the node leaves the book when the user's
// undo takes its creation back (or when it is deleted), and comes back with
// redo (or the undo of the deletion). A node that left belongs to the
// adaptor's undo step, so the book must not give it back.
class BookPeer final : public CNodePeer {
public:
    BookPeer(NodeBook& book, std::string name) : book_(book), name_(std::move(name)) {}
    void nodeLeaves(CoreNode* node) override;
    void nodeReturns(CoreNode* node) override;

private:
    NodeBook& book_;
    std::string name_;
};

class NodeBook {
public:
    NodeBook() = default;
    NodeBook(const NodeBook&) = delete;
    NodeBook& operator=(const NodeBook&) = delete;
    // Gives every node back to the adaptor.
    ~NodeBook();

    CMaster* master() { return &master_; }
    // Null when the core has no node of that name.
    CoreNode* find(const std::string& name) const;
    // The core's name of a node it holds, or empty.
    std::string nameOf(const CoreNode* node) const;
    // Files a node under `name`; false (and nothing filed) when the name is taken or node is null.
    bool add(const std::string& name, CoreNode* node);
    // Forgets the node without giving it back (it was deleted through the adaptor).
    void forget(const std::string& name);
    // A peer for a node about to be made under `name`; the book keeps it.
    CNodePeer* peerFor(const std::string& name);
    // `base`, or `base_2`, `base_3` ... whichever is free first.
    std::string freeName(const std::string& base) const;
    const std::map<std::string, CoreNode*>& entries() const { return nodes_; }

private:
    SampleMaster master_;
    std::map<std::string, CoreNode*> nodes_;
    std::vector<std::unique_ptr<BookPeer>> peers_;
};

}  // namespace tvr::plr::core::sample
