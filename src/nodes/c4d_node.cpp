// The node's life, its queries and its snapshot pools. Edits of the scene
// are in node_edit.cpp, extensions in node_extensions.cpp, tracks in node_tracks.cpp.
#include "nodes/c4d_node.h"

#include "core_api/master.h"
#include "nodes/helper_snapshot.h"
#include "nodes/lens_snapshot.h"
#include "nodes/mesh_snapshot.h"
#include "nodes/node_support.h"
#include "nodes/node_undo_hooks.h"
#include "nodes/shape_snapshot.h"
#include "nodes/transform_snapshot.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::plr::core::CMaster;
using tvr::plr::core::CoreNode;
using tvr::util::Log;

CC4DNode::GroupSelection CC4DNode::groupSelection;
bool CC4DNode::internalMove = false;

const std::vector<DescID>& nodeTrackIds() {
    static const std::vector<DescID> ids = [] {
        std::vector<DescID> list;
        for (LONG vector : {ID_BASEOBJECT_POSITION, ID_BASEOBJECT_ROTATION, ID_BASEOBJECT_SCALE}) {
            for (LONG component : {VECTOR_X, VECTOR_Y, VECTOR_Z})
                list.emplace_back(DescLevel(vector, DTYPE_VECTOR, 0), DescLevel(component, DTYPE_REAL, 0));
        }
        list.emplace_back(DescLevel(CAMERAOBJECT_FOV, DTYPE_REAL, 0));
        list.emplace_back(DescLevel(CAMERAOBJECT_APERTURE, DTYPE_REAL, 0));
        return list;
    }();
    return ids;
}

CC4DNode::CC4DNode(CMaster* master, const std::string& name, CoreNode* parentNode, BaseObject* object, bool reparent)
    : CoreNode(master, name), trackIds(&nodeTrackIds()) {
    // A node made while a step is replayed stays empty: no link, not registered.
    if (undoReplayInProgress()) return;
    released = false;
    recordable = true;
    if (object) {
        // A master without a name still gives the separator: "_name".
        object->SetName(String(master ? master->name() + "_" + name : name));
        if (reparent) {
            BaseObject* parentObject = parentNode ? asC4DNode(parentNode)->object() : nullptr;
            BaseDocument* doc = parentObject ? parentObject->GetDocument() : nullptr;
            if (!doc) doc = documentFor(object);
            if (doc) {
                doc->InsertObject(object, parentObject, nullptr, true);
                doc->AddUndo(UNDO_NEW, object);
            }
        }
    }
    objectLink = BaseLink::Alloc();
    if (objectLink) objectLink->SetLink(object);
    animated = true;
    lensAnimated = true;
    C4DAdaptorInterface* adaptor = theAdaptor();
    adaptor->registerNode(this);
    if (adaptor->recording) ensureTracks();
}

CC4DNode::CC4DNode(CoreNode* parentNode, BaseLink* link) : objectLink(link), trackIds(&nodeTrackIds()) {
    this->parentNode = parentNode;
    recordable = true;
    released = true;
    BaseObject* op = object();
    if (!op) return;
    if (CC4DNode* live = theAdaptor()->findNodeForObject(op)) {
        name = live->name;
        master = live->master;
    } else {
        char buffer[1024];
        op->GetName().GetCString(buffer, sizeof buffer);
        name = buffer;
    }
}

// The node always frees its link: a released node is out of the adaptor's
// list, but nothing else holds the link it was made with.
CC4DNode::~CC4DNode() {
    transformPool.clear();
    sparePool.clear();
    lensPool.clear();
    shapePool.clear();
    if (!released) theAdaptor()->unregisterNode(this);
    forgetNodeInRestoreSteps(this);
    BaseLink::Free(objectLink);
}

BaseObject* CC4DNode::object() const { return resolveObject(objectLink); }

std::vector<int>& CC4DNode::getSupportedExtensions(std::vector<int>& codes) {
    codes = {kBeginGroupSelect, kGroupSelect, kCloneWithChildren, kLensIsNotAnimated,
             kIsNotAnimated,    kMasterQuery, kSetLabel};
    return codes;
}

bool CC4DNode::isVisible() {
    BaseObject* op = object();
    return op && op->GetEditorMode() != MODE_OFF;
}

bool CC4DNode::isReleased() { return released; }

CoreNode* CC4DNode::acquireParent() {
    Log entry("Acquire Parent", Log::Notice);
    BaseObject* op = object();
    BaseObject* up = op ? op->GetUp() : nullptr;
    if (!up) return nullptr;
    BaseLink* link = BaseLink::Alloc();
    if (!link) return nullptr;
    link->SetLink(up);
    return new CC4DNode(this, link);
}

std::int32_t CC4DNode::getChildCount() {
    Log entry("Get Children", Log::Notice);
    BaseObject* op = object();
    if (!op) return 0;
    std::int32_t count = 0;
    for (BaseObject* child = op->GetDown(); child; child = child->GetNext()) ++count;
    return count;
}

CoreNode* CC4DNode::acquireChild(std::int32_t index) {
    Log entry("Acquire Child", Log::Notice);
    BaseObject* op = object();
    if (!op || index < 0) return nullptr;
    BaseObject* child = op->GetDown();
    for (std::int32_t i = 0; child && i < index; ++i) child = child->GetNext();
    if (!child) return nullptr;
    BaseLink* link = BaseLink::Alloc();
    if (!link) return nullptr;
    link->SetLink(child);
    return new CC4DNode(this, link);
}

void CC4DNode::releaseNode(CoreNode* node) { delete node; }

void CC4DNode::release() { delete this; }

CoreNode* CC4DNode::reacquire(CMaster* newMaster, const std::string& newName) {
    if (!released) return nullptr;
    BaseObject* op = object();
    if (!op || theAdaptor()->findNodeForObject(op)) return nullptr;
    return new CC4DNode(newMaster, newName, nullptr, op, false);
}

void CC4DNode::detach() {
    if (released) return;
    released = true;
    theAdaptor()->unregisterNode(this);
    master = nullptr;
    parentNode = nullptr;
}

bool CC4DNode::isSameNode(CoreNode* other) {
    if (!other) return false;
    return object() == asC4DNode(other)->object();
}

std::string CC4DNode::getName() {
    BaseObject* op = object();
    return op ? op->GetName().ToStd() : std::string();
}

// ---- Snapshots

namespace {

// The last free snapshot of a pool, or a new one appended to it.
template <class Snapshot, class Make>
Snapshot* takeFromPool(std::vector<std::unique_ptr<Snapshot>>& pool, Make make) {
    for (auto it = pool.rbegin(); it != pool.rend(); ++it) {
        if (!(*it)->inUse) return it->get();
    }
    pool.push_back(make());
    return pool.back().get();
}

template <class Snapshot>
void putBack(Snapshot* snapshot) {
    if (snapshot) snapshot->inUse = false;
}

}  // namespace

tvr::plr::CTransformSnapshot* CC4DNode::acquireSnapshot(double seconds) {
    BaseObject* op = object();
    if (!op) return nullptr;
    CC4DSnapshot* snapshot = takeFromPool(transformPool, [] { return std::make_unique<CC4DSnapshot>(); });
    snapshot->take(*this, op, seconds);
    return snapshot;
}

tvr::plr::CLensSnapshot* CC4DNode::acquireLensSnapshot(double seconds) {
    BaseObject* op = object();
    if (!op || op->GetType() != Ocamera) return nullptr;
    CC4DSnapshot_Lens* snapshot = takeFromPool(lensPool, [] { return std::make_unique<CC4DSnapshot_Lens>(); });
    snapshot->take(*this, op, seconds);
    return snapshot;
}

tvr::plr::CShapeSnapshot* CC4DNode::acquireShape(double seconds) {
    Log entry("acquireShape", Log::Notice);
    CC4DSnapshot_Shape* snapshot =
        takeFromPool(shapePool, [this] { return std::make_unique<CC4DSnapshot_Shape>(this); });
    snapshot->inUse = true;
    snapshot->seconds = seconds;
    return snapshot;
}

tvr::plr::CHelperSnapshot* CC4DNode::createHelperSnapshot() {
    if (!object()) return nullptr;
    return new CC4DSnapshot_Helper(objectLink);
}

tvr::plr::CMeshSnapshot* CC4DNode::acquireMeshSnapshot(double seconds) {
    if (!object()) return nullptr;
    auto* snapshot = new CC4DSnapshot_Mesh(objectLink, seconds);
    if (!snapshot->holdsObject()) {
        delete snapshot;
        return nullptr;
    }
    return snapshot;
}

void CC4DNode::releaseShape(tvr::plr::CShapeSnapshot* snapshot) { putBack(snapshot); }
void CC4DNode::releaseLensSnapshot(tvr::plr::CLensSnapshot* snapshot) { putBack(snapshot); }
// Mesh and helper snapshots are not pooled: the core deletes them when done.
void CC4DNode::releaseMeshSnapshot(tvr::plr::CMeshSnapshot* snapshot) { putBack(snapshot); }
void CC4DNode::releaseHelperSnapshot(tvr::plr::CHelperSnapshot* snapshot) { putBack(snapshot); }
void CC4DNode::releaseSnapshot(tvr::plr::CTransformSnapshot* snapshot) { putBack(snapshot); }

}  // namespace tvr::plr::adaptor::cinema4d
