// What a node changes in the scene: modes, selection, name, place in the
// hierarchy, deletion and cloning. Each change is preceded by its host undo
// record; none happens while an undo step is being replayed.
#include "core_api/master.h"
#include "nodes/c4d_node.h"
#include "nodes/node_support.h"
#include "nodes/node_undo_hooks.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::plr::core::CoreNode;
using tvr::util::Log;

int CC4DNode::setModes(LONG mode) {
    if (undoReplayInProgress()) return 1;
    BaseObject* op = object();
    if (!op) return 1;
    BaseDocument* doc = documentFor(op);
    addUndo(doc, UNDO_CHANGE, op);
    op->SetEditorMode(mode);
    addUndo(doc, UNDO_CHANGE, op);
    op->SetRenderMode(mode);
    op->Message(MSG_UPDATE);
    EventAdd(EVENT_0);
    return 0;
}

int CC4DNode::show() { return setModes(MODE_ON); }

int CC4DNode::hide() { return setModes(MODE_OFF); }

int CC4DNode::select() {
    if (undoReplayInProgress()) return 1;
    Log entry("Select node", Log::Notice);
    if (BaseDocument* doc = GetActiveDocument()) doc->SetActiveObject(object(), groupSelection.selectionMode);
    EventAdd(EVENT_0);
    return 0;
}

int CC4DNode::setName(const std::string& newName) {
    if (undoReplayInProgress()) return 1;
    BaseObject* op = object();
    if (!op) return 1;
    op->SetName(String(newName));
    return 0;
}

namespace {

bool isWithin(BaseObject* op, BaseObject* ancestor) {
    for (BaseObject* p = op; p; p = p->GetUp()) {
        if (p == ancestor) return true;
    }
    return false;
}

std::string nameOf(CoreNode* node) { return node ? node->name : std::string("(NULL)"); }

}  // namespace

int CC4DNode::setParent(CoreNode* newParent) {
    if (undoReplayInProgress()) return 0;
    BaseObject* op = object();
    if (!op) return 1;
    BaseObject* parentObject = nullptr;
    if (newParent) {
        parentObject = asC4DNode(newParent)->object();
        // Objects of two documents never meet; the core hears only "refused".
        if (parentObject && (!op->GetDocument() || parentObject->GetDocument() != op->GetDocument())) return 1;
    }
    Log entry("Setting parent for " + name, Log::Notice);
    logLine("new parent: " + nameOf(newParent));
    // Refused before anything moves: taken out and not put back, the object
    // would be lost to the user.
    if (newParent && !parentObject) {
        logLine("Invalid parent node");
        return 1;
    }
    if (parentObject && isWithin(parentObject, op)) {
        logLine("Invalid parent node: it lies below the object");
        return 1;
    }

    const Matrix world = op->GetMg();
    internalMove = true;
    BaseDocument* doc = documentFor(op);
    addUndo(doc, UNDO_DELETE, op);
    op->Remove();
    if (doc) {
        doc->InsertObject(op, parentObject, nullptr, true);
        doc->AddUndo(UNDO_NEW, op);
    }
    internalMove = false;
    op->SetMg(world, true);
    return 0;
}

int CC4DNode::deleteNode(bool removeObject) {
    if (undoReplayInProgress()) return 1;
    { Log entry("Snapshot???", Log::Notice); }
    Log entry("Delete C4DNode", Log::Notice);
    BaseObject* op = object();
    if (!op) return 1;
    BaseObject* parent = op->GetUp();
    BaseObject* pred = op->GetPred();
    BaseObject* lastChild = op->GetDownLast();
    C4DAdaptorInterface* adaptor = theAdaptor();
    adaptor->unregisterNode(this);

    const bool recorded = adaptor->isAcceptingUndo();
    if (removeObject) {
        if (BaseDocument* active = GetActiveDocument()) {
            BaseDocument* doc = op->GetDocument() ? op->GetDocument() : active;
            // Every child goes after the same predecessor while walking back,
            // so the children keep their order in the deleted object's place.
            for (BaseObject* child = lastChild; child;) {
                BaseObject* before = child->GetPred();
                internalMove = true;
                doc->AddUndo(UNDO_DELETE, child);
                child->Remove();
                doc->InsertObject(child, parent, pred, true);
                doc->AddUndo(UNDO_NEW, child);
                internalMove = false;
                child = before;
            }
            doc->AddUndo(UNDO_DELETE, op);
        }
        op->Remove();
        EventAdd(EVENT_FORCEREDRAW);
    }

    // Inside an undo bracket the node lives on in the restore step, which
    // frees the object once the deletion can no longer be taken back.
    if (recorded && master) {
        if (tvr::plr::CUndo* step = makeNodeDeleteRestore(this)) {
            adaptor->recordOwnStep(step);
            return 0;
        }
    }
    // Outside a bracket no host undo group is open, so nothing holds the
    // removed object: it is freed rather than left out of every scene.
    if (removeObject && !recorded) BaseObject::Free(op);
    release();
    return 0;
}

CoreNode* CC4DNode::cloneNode(bool withChildren) {
    BaseObject* op = object();
    if (!op) return nullptr;
    CoreNode* parent = nullptr;
    CoreNode* borrowed = nullptr;
    if (BaseObject* up = op->GetUp()) {
        parent = theAdaptor()->findNodeForObject(up);
        if (!parent) parent = borrowed = acquireParent();
    }
    CoreNode* clone = cloneUnder(parent, withChildren);
    delete borrowed;
    return clone;
}

CoreNode* CC4DNode::cloneUnder(CoreNode* parent, bool withChildren) {
    // A clone made during a replay could not be put into the scene.
    if (undoReplayInProgress()) return nullptr;
    BaseObject* op = object();
    if (!op) return nullptr;
    BaseObject* copy = op->GetClone(withChildren ? 0 : COPY_NO_HIERARCHY);
    if (!copy) return nullptr;
    BaseObject* parentObject = parent ? asC4DNode(parent)->object() : nullptr;
    if (!(parentObject && parentObject->GetDocument()) && !GetActiveDocument()) {
        BaseObject::Free(copy);  // no document to put it in
        return nullptr;
    }
    if (!op->GetDocument()) addUndo(GetActiveDocument(), UNDO_NEW, copy);
    return new CC4DNode(master, name + "_clone", parent, copy, true);
}

}  // namespace tvr::plr::adaptor::cinema4d
