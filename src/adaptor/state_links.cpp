#include "adaptor/state_links.h"

#include <new>
#include <string>

#include "nodes/c4d_node.h"

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

// SEAM: the undo manager is being built alongside; each function below
// becomes a one-line call into it when it lands.

void undoSetDocumentName(BaseDocument*, const Filename&) {}
void undoDetachContainer(BaseDocument*) {}
void undoAttachContainer(BaseDocument*) {}
void undoRemoveDocument(BaseDocument*) {}
tvr::plr::CUndo* makeSetTimeRestore(double) { return nullptr; }

}  // namespace tvr::plr::adaptor::cinema4d
