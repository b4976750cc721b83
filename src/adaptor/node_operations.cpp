// The adaptor's node operations: making cameras and meshes for the core,
// finding and listing nodes, and the list of live nodes itself.
#include <algorithm>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/node_peer.h"
#include "host_api/c4d.h"
#include "nodes/c4d_node.h"
#include "nodes/mesh_snapshot.h"
#include "nodes/node_undo_hooks.h"
#include "undo/undo_guard.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

namespace {

void logError(const std::string& text) { Log(Log::Error).write(text, -1); }

// Whether a new object could be put into a document: under the parent node's
// object, or at the top of the active document.
bool hasDocumentFor(core::CoreNode* parent) {
    BaseObject* parentObject = parent ? asC4DNode(parent)->object() : nullptr;
    return (parentObject && parentObject->GetDocument()) || GetActiveDocument();
}

}  // namespace

// The new node follows the core's peer, becomes an undoable step of the open
// bracket, and the host hears of the new object.
static void announceNode(C4DAdaptorInterface* adaptor, CC4DNode* node, core::CNodePeer* peer) {
    if (peer) {
        node->peer = peer;
        peer->nodeReturns(node);
    }
    if (tvr::plr::CUndo* step = makeCreateNodeRestore(adaptor, node)) {
        // The undo manager owns it from here; a refused step is released.
        adaptor->recordOwnStep(step);
    }
}

core::CoreNode* C4DAdaptorInterface::createCamera(core::CMaster* master, const std::string& name,
                                                  core::CoreNode* parent, core::CNodePeer* peer) {
    // A node made during a replay stays empty, and its object would belong to no one.
    if (undoReplayInProgress()) return nullptr;
    if (!hasDocumentFor(parent)) {
        logError("createCamera: no document to put the camera in");
        return nullptr;
    }
    BaseObject* camera = BaseObject::Alloc(Ocamera);
    if (!camera) {
        logError("createCamera: the host made no camera object");
        return nullptr;
    }
    auto* node = new CC4DNode(master, name, parent, camera, true);
    announceNode(this, node, peer);
    camera->Message(MSG_UPDATE);
    EventAdd(EVENT_0);
    return node;
}

core::CoreNode* C4DAdaptorInterface::createMeshNode(core::CMaster* master, const std::string& name,
                                                    core::CoreNode* parent, const tvr::util::CMesh& mesh,
                                                    core::CNodePeer* peer) {
    if (undoReplayInProgress()) return nullptr;
    const std::string fault = meshFault(mesh);
    if (!fault.empty()) {
        logError("createMeshNode refused: " + fault);
        return nullptr;
    }
    if (!hasDocumentFor(parent)) {
        logError("createMeshNode: no document to put the mesh in");
        return nullptr;
    }
    PolygonObject* polygons = PolygonObject::Alloc(0, 0);
    if (!polygons) {
        logError("createMeshNode: the host made no polygon object");
        return nullptr;
    }
    auto* node = new CC4DNode(master, name, parent, polygons, true);
    announceNode(this, node, peer);
    BaseDocument* doc = GetActiveDocument();
    const auto record = [doc, polygons] {
        if (doc) doc->AddUndo(UNDO_CHANGE, polygons);
    };
    record();
    polygons->ClearPart(0, 0);
    record();
    polygons->ClearPart(1, 0);
    record();
    writeMesh(polygons, mesh, false);
    polygons->Message(MSG_UPDATE);
    EventAdd(EVENT_0);
    return node;
}

core::CoreNode* C4DAdaptorInterface::findNode(core::CMaster* master, const std::string& label) {
    for (CC4DNode* node : nodes) {
        if (node->master == master && node->getName() == label) return node;
    }
    return nullptr;
}

void C4DAdaptorInterface::getNodes(tvr::util::ReturnValue<core::NodeList>* sink) {
    core::NodeList list;
    for (CC4DNode* node : nodes) {
        if (!node->isReleased()) list.push_back(node);
    }
    if (sink) sink->set(list);
}

void C4DAdaptorInterface::getMasterNodes(core::CMaster* master, tvr::util::ReturnValue<core::NodeList>* sink) {
    core::NodeList list;
    for (CC4DNode* node : nodes) {
        if (node->master == master) list.push_back(node);
    }
    if (sink) sink->set(list);
}

void C4DAdaptorInterface::registerNode(CC4DNode* node) {
    if (!node) return;
    multiDocumentCheck.beforeRegister(nodes, node);
    nodes.push_back(node);
}

// Searched from the back: nodes tend to go in the reverse order of their making.
void C4DAdaptorInterface::unregisterNode(CC4DNode* node) {
    const auto found = std::find(nodes.rbegin(), nodes.rend(), node);
    if (found != nodes.rend()) nodes.erase(std::next(found).base());
}

CC4DNode* C4DAdaptorInterface::findNodeForObject(BaseObject* object) {
    if (!object) return nullptr;
    for (CC4DNode* node : nodes) {
        if (node->object() == object) return node;
    }
    return nullptr;
}

}  // namespace tvr::plr::adaptor::cinema4d
