// The steps that take back the adaptor's own node creation and deletion. They
// are mirror images: undoing a creation does what redoing a deletion does.
// The host's own records (new, delete) move the object; these steps keep the
// adaptor's list of live nodes and the node's core-side peer in step with it.
#pragma once

#include "core_api/cundo.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DAdaptorInterface;
class CC4DNode;

// The core may release a node while steps still name it (it rebinds the
// object to another node, say); the node's end clears it from those steps,
// which then do nothing for it instead of reaching freed memory.
void forgetRestoredNode(CC4DNode* node);

class CCreateNodeRestoreObj : public tvr::plr::CUndo {
public:
    CCreateNodeRestoreObj(C4DAdaptorInterface* adaptor, CC4DNode* node);
    // A creation that can no longer be redone takes its node with it.
    ~CCreateNodeRestoreObj() override;

    int undo(bool full) override;
    int redo() override;

    bool isUndone() const { return undone_; }

private:
    [[maybe_unused]] C4DAdaptorInterface* adaptor_;  // kept, never read: every call goes to the live adaptor
    CC4DNode* node_;
    bool undone_ = false;
};

class CC4DNodeDeleteRestore : public tvr::plr::CUndo {
public:
    explicit CC4DNodeDeleteRestore(CC4DNode* node);
    // A deletion that can no longer be undone frees the object and the node.
    ~CC4DNodeDeleteRestore() override;

    int undo(bool full) override;
    int redo() override;

    bool isDeleted() const { return deleted_; }

private:
    CC4DNode* node_;
    bool deleted_ = true;
};

}  // namespace tvr::plr::adaptor::cinema4d
