#include "nodes/node_undo_hooks.h"

namespace tvr::plr::adaptor::cinema4d {

tvr::plr::CUndo* makeCreateNodeRestore(C4DAdaptorInterface*, CC4DNode*) { return nullptr; }

tvr::plr::CUndo* makeNodeDeleteRestore(CC4DNode*) { return nullptr; }

}  // namespace tvr::plr::adaptor::cinema4d
