#include "nodes/node_undo_hooks.h"

#include <new>

#include "undo/node_restore_objects.h"

namespace tvr::plr::adaptor::cinema4d {

tvr::plr::CUndo* makeCreateNodeRestore(C4DAdaptorInterface* adaptor, CC4DNode* node) {
    return new (std::nothrow) CCreateNodeRestoreObj(adaptor, node);
}

tvr::plr::CUndo* makeNodeDeleteRestore(CC4DNode* node) { return new (std::nothrow) CC4DNodeDeleteRestore(node); }

void forgetNodeInRestoreSteps(CC4DNode* node) { forgetRestoredNode(node); }

}  // namespace tvr::plr::adaptor::cinema4d
