#include "nodes/helper_snapshot.h"

#include "nodes/mesh_snapshot.h"
#include "nodes/node_support.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

CC4DNode::CC4DSnapshot_Helper::CC4DSnapshot_Helper(BaseLink* nodeLink) {
    Log entry("Creating Snapshot Helper", Log::Notice);
    if (nodeLink) objectLink = nodeLink->GetClone();
}

CC4DNode::CC4DSnapshot_Helper::~CC4DSnapshot_Helper() { BaseLink::Free(objectLink); }

BaseObject* CC4DNode::CC4DSnapshot_Helper::resolve() const { return resolveObject(objectLink); }

std::intptr_t CC4DNode::CC4DSnapshot_Helper::executeExtension(int, void*) { return 0; }

std::vector<int>& CC4DNode::CC4DSnapshot_Helper::getSupportedExtensions(std::vector<int>& codes) {
    codes.clear();
    return codes;
}

void CC4DNode::CC4DSnapshot_Helper::setHelperMesh(const tvr::util::CMesh& mesh) {
    if (undoReplayInProgress()) return;
    Log entry("Set SSh Helper Mesh", Log::Notice);
    if (BaseObject* op = resolve()) writeMesh(op, mesh);
    logLine("Set SSh Helper Mesh done");
}

void CC4DNode::CC4DSnapshot_Helper::setHelperColor(float red, float green, float blue) {
    if (undoReplayInProgress()) return;
    Log entry("Set Helper Color", Log::Notice);
    BaseObject* op = resolve();
    if (!op) return;
    addUndo(documentFor(op), UNDO_CHANGE, op);
    ObjectColorProperties colour;
    colour.usecolor = ID_BASEOBJECT_USECOLOR_ALWAYS;
    colour.color = Vector(red, green, blue);
    colour.xray = false;
    op->SetColorProperties(&colour);
    op->Message(5);
    EventAdd(EVENT_0);
}

void CC4DNode::CC4DSnapshot_Helper::setWireframeMode(bool) {
    Log entry("Set Wireframe Mode (Not implemented)", Log::Notice);
}

void CC4DNode::CC4DSnapshot_Helper::setBackfaceCulling(bool) {
    Log entry("Set BackCull (Not implemented)", Log::Notice);
}

}  // namespace tvr::plr::adaptor::cinema4d
