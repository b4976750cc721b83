#include "adaptor/state_links.h"

#include <new>
#include <string>

#include "nodes/c4d_node.h"
#include "undo/c4d_undo_manager.h"
#include "undo/set_time_restore_obj.h"

namespace tvr::plr::adaptor::cinema4d {

BaseObject* nodeObject(CC4DNode* node) { return node ? node->object() : nullptr; }
core::CMaster* nodeMaster(CC4DNode* node) { return node ? node->master : nullptr; }
bool nodeDeleted(CC4DNode* node) { return !node || node->isReleased(); }
std::string nodeLabel(CC4DNode* node) { return node ? node->getName() : std::string(); }

core::CoreNode* wrapObject(BaseObject* object) {
    BaseLink* link = BaseLink::Alloc();
    if (!link) return nullptr;
    link->SetLink(object);
    CC4DNode* node = new (std::nothrow) CC4DNode(nullptr, link);
    if (!node) BaseLink::Free(link);
    return node;
}

void prepareNodeRecording(CC4DNode* node, BaseDocument* doc) {
    if (node) node->prepareRecording(doc);
}

// The manager names the active document's record, whichever document is given.
void undoSetDocumentName(BaseDocument*, const Filename& name) {
    if (C4DUndoManager* manager = C4DUndoManager::instance()) manager->setDocumentName(name.GetString());
}
void undoDetachContainer(BaseDocument* doc) {
    if (C4DUndoManager* manager = C4DUndoManager::instance()) manager->detachContainerObject(doc);
}
void undoAttachContainer(BaseDocument* doc) {
    if (C4DUndoManager* manager = C4DUndoManager::instance()) manager->attachContainerObject(doc);
}
void undoRemoveDocument(BaseDocument* doc) {
    if (C4DUndoManager* manager = C4DUndoManager::instance()) manager->removeDocument(doc);
}
tvr::plr::CUndo* makeSetTimeRestore(double seconds) { return new (std::nothrow) CSetTimeRestoreObj(seconds); }

}  // namespace tvr::plr::adaptor::cinema4d
