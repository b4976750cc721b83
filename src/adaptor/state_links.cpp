// SEAM: the scene nodes and the undo manager are being built alongside; each
// function here becomes a one-line call into them when they land.
#include "adaptor/state_links.h"

#include <string>

namespace tvr::plr::adaptor::cinema4d {

BaseObject* nodeObject(CC4DNode*) { return nullptr; }
core::CMaster* nodeMaster(CC4DNode*) { return nullptr; }
bool nodeDeleted(CC4DNode*) { return true; }
std::string nodeLabel(CC4DNode*) { return std::string(); }
core::CoreNode* wrapObject(BaseObject*) { return nullptr; }
void prepareNodeRecording(CC4DNode*, BaseDocument*) {}

void undoSetDocumentName(BaseDocument*, const Filename&) {}
void undoDetachContainer(BaseDocument*) {}
void undoAttachContainer(BaseDocument*) {}
void undoRemoveDocument(BaseDocument*) {}
tvr::plr::CUndo* makeSetTimeRestore(double) { return nullptr; }

}  // namespace tvr::plr::adaptor::cinema4d
