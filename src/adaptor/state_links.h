// What storing, loading and binding state need from the scene nodes and the
// undo manager, in one place: each is a short call into those subsystems.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr {
class CUndo;
}
namespace tvr::plr::core {
class CMaster;
class CoreNode;
}  // namespace tvr::plr::core

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode;

// The node's object, or null when it is gone.
BaseObject* nodeObject(CC4DNode* node);
core::CMaster* nodeMaster(CC4DNode* node);
// The node's own answer to whether it was deleted.
bool nodeDeleted(CC4DNode* node);
// The node's label: its object's name.
std::string nodeLabel(CC4DNode* node);
// A node over an existing object through a new link, as the core binds
// saved nodes; the core owns it.
core::CoreNode* wrapObject(BaseObject* object);
// The node's preparation for a direct recording in `doc`.
void prepareNodeRecording(CC4DNode* node, BaseDocument* doc);

// The undo manager's part around saving and closing documents.
void undoSetDocumentName(BaseDocument* doc, const Filename& name);
void undoDetachContainer(BaseDocument* doc);
void undoAttachContainer(BaseDocument* doc);
void undoRemoveDocument(BaseDocument* doc);
// An undo step that sets the active document's time back to `seconds`; null
// when none can be made.
tvr::plr::CUndo* makeSetTimeRestore(double seconds);

}  // namespace tvr::plr::adaptor::cinema4d
