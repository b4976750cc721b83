#pragma once

namespace tvr::plr::core {

class CoreNode;

// A core-side object that follows one scene node: it is told when the node
// leaves the scene (undo of its creation, deletion) and when it comes back.
// Virtual table order: destructor, nodeLeaves, nodeReturns. The Windows
// compiler gives the destructor one slot; g++ gives it two, which moves the
// other two along on both sides alike.
class CNodePeer {
public:
    virtual ~CNodePeer() = default;
    virtual void nodeLeaves(CoreNode* node) = 0;
    // Also called once when the adaptor creates a camera or mesh node for
    // this peer, so the peer learns its node.
    virtual void nodeReturns(CoreNode* node) = 0;
};

}  // namespace tvr::plr::core
