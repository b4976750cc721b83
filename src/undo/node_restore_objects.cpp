#include "undo/node_restore_objects.h"

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

}  // namespace

CCreateNodeRestoreObj::~CCreateNodeRestoreObj() {
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
    if (node_) nodeLeaves(node_);
}

CC4DNodeDeleteRestore::~CC4DNodeDeleteRestore() {
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
