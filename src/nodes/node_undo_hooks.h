// Where node creation and deletion become the core's undo steps: the restore
// objects of the undo integration, handed to the adaptor's recordOwnStep.
#pragma once

#include "core_api/cundo.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DAdaptorInterface;
class CC4DNode;

// The step that takes a node's creation back (handed to the adaptor's addUndo).
tvr::plr::CUndo* makeCreateNodeRestore(C4DAdaptorInterface* adaptor, CC4DNode* node);
// The step that takes a node's deletion back; the node lives on inside it.
tvr::plr::CUndo* makeNodeDeleteRestore(CC4DNode* node);
// A node the core releases while undo steps still name it: the steps forget it.
void forgetNodeInRestoreSteps(CC4DNode* node);

}  // namespace tvr::plr::adaptor::cinema4d
