#include "adaptor/multi_document_check.h"

#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

const char* const MultiDocumentCheck::kWarning =
    "Pelloran has been detected running on multiple documents. This is currently not supported, but may work as "
    "long as the following restrictions are applied:\n\n"
    "  * Do not perform ANY operations on a tool which is not part of the current document.\n"
    "  * Do not group tools which are part of different documents - keep them separated!\n\n"
    " Should you perform a cross-document operation, please be careful using undo as it might cause undesired "
    "behaviour.";

bool MultiDocumentCheck::otherDocumentIn(const std::vector<CC4DNode*>& nodes, BaseDocument* document) {
    bool loose = false;
    for (CC4DNode* n : nodes) {
        BaseObject* op = n ? n->object() : nullptr;
        if (!op) continue;  // a dead link never comes back
        BaseDocument* d = op->GetDocument();
        if (!d) {
            loose = true;  // out of the scene now, but it may be put back anywhere
        } else if (d != document) {
            return true;
        }
    }
    known_ = document;
    unsure_ = loose;
    return false;
}

void MultiDocumentCheck::beforeRegister(const std::vector<CC4DNode*>& nodes, CC4DNode* node) {
    if (!pending_) return;  // shown once; nothing to watch any more
    BaseObject* op = node ? node->object() : nullptr;
    BaseDocument* document = op ? op->GetDocument() : nullptr;
    if (node && node->master && document) {
        // Objects never move between documents, so while every node was in
        // `known_`, a node of that document cannot meet another one.
        if ((unsure_ || document != known_) && otherDocumentIn(nodes, document)) {
            pending_ = false;
            MessageDialog(String(kWarning));
        }
    }
    // Whatever is registered now must be seen by the next comparison.
    if (op && document != known_) unsure_ = true;
}

}  // namespace tvr::plr::adaptor::cinema4d
