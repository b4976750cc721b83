#include "undo/node_restore_objects.h"

#include <unordered_map>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/node_peer.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

void nodeLeaves(CC4DNode* node) {
    if (tvr::plr::core::CNodePeer* peer = node->nodePeer()) peer->nodeLeaves(node);
}

void nodeReturns(CC4DNode* node) {
    if (tvr::plr::core::CNodePeer* peer = node->nodePeer()) peer->nodeReturns(node);
}

C4DAdaptorInterface* adaptor() { return C4DAdaptorInterface::instance(); }

// Every step's node field, by the node it names.
std::unordered_multimap<CC4DNode*, CC4DNode**>& namedNodes() {
    // A static of the module, not a heap object it points to: memory the
    // module still holds when it is unloaded would be lost to the host.
    static std::unordered_multimap<CC4DNode*, CC4DNode**> fields;
    return fields;
}

void remember(CC4DNode** field) {
    if (*field) namedNodes().emplace(*field, field);
}

void forget(CC4DNode** field) {
    if (!*field) return;
    auto range = namedNodes().equal_range(*field);
    for (auto it = range.first; it != range.second; ++it) {
        if (it->second == field) {
            namedNodes().erase(it);
            return;
        }
    }
}

}  // namespace

void forgetRestoredNode(CC4DNode* node) {
    auto range = namedNodes().equal_range(node);
    for (auto it = range.first; it != range.second; ++it) *it->second = nullptr;
    namedNodes().erase(range.first, range.second);
}

CCreateNodeRestoreObj::CCreateNodeRestoreObj(C4DAdaptorInterface* adaptor, CC4DNode* node)
    : adaptor_(adaptor), node_(node) {
    remember(&node_);
}

CCreateNodeRestoreObj::~CCreateNodeRestoreObj() {
    forget(&node_);
    if (undone_ && node_) delete node_;
}

int CCreateNodeRestoreObj::undo(bool) {
    if (!node_) return 0;
    if (C4DAdaptorInterface* a = adaptor()) a->unregisterNode(node_);
    nodeLeaves(node_);
    undone_ = true;
    return 1;
}

int CCreateNodeRestoreObj::redo() {
    if (!node_) return 0;
    if (C4DAdaptorInterface* a = adaptor()) a->registerNode(node_);
    nodeReturns(node_);
    (void)node_->getName();
    undone_ = false;
    return 1;
}

CC4DNodeDeleteRestore::CC4DNodeDeleteRestore(CC4DNode* node) : node_(node) {
    remember(&node_);
    if (node_) nodeLeaves(node_);
}

CC4DNodeDeleteRestore::~CC4DNodeDeleteRestore() {
    forget(&node_);
    if (!deleted_ || !node_) return;
    if (BaseObject* op = node_->object()) {
        op->Remove();
        BaseObject::Free(op);
    }
    node_->release();
}

int CC4DNodeDeleteRestore::undo(bool) {
    if (!node_) return 0;
    deleted_ = false;
    if (C4DAdaptorInterface* a = adaptor()) a->registerNode(node_);
    nodeReturns(node_);
    return 1;
}

int CC4DNodeDeleteRestore::redo() {
    if (!node_) return 0;
    deleted_ = true;
    nodeLeaves(node_);
    if (C4DAdaptorInterface* a = adaptor()) a->unregisterNode(node_);
    return 1;
}

}  // namespace tvr::plr::adaptor::cinema4d
