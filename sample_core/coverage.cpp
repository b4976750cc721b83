#include "sample_core/coverage.h"

#include <array>

namespace tvr::plr::core::sample {

namespace {

constexpr std::array<const char*, kAdaptorSlots> kAdaptorNames = {
    "adaptor.getInterfaceVersion", "adaptor.getDisplayName", "adaptor.getAdaptorId", "adaptor.getHostName", "adaptor.getHostVersion",
    "adaptor.getHostIdentifiers", "adaptor.reservedQuery6", "adaptor.createCamera", "adaptor.createMeshNode", "adaptor.createMesh",
    "adaptor.findNode", "adaptor.storeMasterState", "adaptor.loadState", "adaptor.getNodes", "adaptor.getMasterNodes",
    "adaptor.acquireNodes", "adaptor.mergeFromFile", "adaptor.beginUndo", "adaptor.addUndo", "adaptor.acceptUndo",
    "adaptor.cancelUndo", "adaptor.isAcceptingUndo", "adaptor.undo", "adaptor.getTime", "adaptor.setTime",
    "adaptor.reservedNotify25", "adaptor.getTimeRange", "adaptor.setTimeRange", "adaptor.getFrameRate", "adaptor.getFrameDuration",
    "adaptor.refreshScene", "adaptor.reservedNotify31", "adaptor.reservedNotify32", "adaptor.prepareDirectRecording", "adaptor.prepareCacheRecording",
    "adaptor.stopRecording", "adaptor.reservedQuery36", "adaptor.getAdaptorData", "adaptor.reservedNotify38",
};

constexpr std::array<const char*, kNodeSlots> kNodeNames = {
    "node.executeExtension", "node.getSupportedExtensions", "node.isExtensionSupported", "node.show", "node.hide",
    "node.isVisible", "node.select", "node.isReleased", "node.acquireParent", "node.getChildCount",
    "node.acquireChild", "node.releaseNode", "node.~CoreNode", "node.getExtension", "node.exportExtensions",
    "node.release", "node.reacquire", "node.detach", "node.acquireSnapshot", "node.createHelperSnapshot",
    "node.acquireMeshSnapshot", "node.acquireLensSnapshot", "node.acquireShape", "node.releaseShape", "node.releaseLensSnapshot",
    "node.releaseMeshSnapshot", "node.releaseHelperSnapshot", "node.releaseSnapshot", "node.isSameNode", "node.setParent",
    "node.truncateKeys", "node.setName", "node.getName", "node.deleteNode", "node.cloneNode",
};

// Each kind's three extension operations, then its own, in the order of the
// counting classes.
constexpr std::array<const char*, kSnapshotRows> kSnapshotNames = {
    "transform.executeExtension", "transform.getSupportedExtensions", "transform.isExtensionSupported",
    "transform.setLocalMatrix", "transform.getLocalMatrix", "transform.getGlobalMatrix",
    "transform.setGlobalMatrix", "transform.getTime",
    "lens.executeExtension", "lens.getSupportedExtensions", "lens.isExtensionSupported",
    "lens.setFov", "lens.getFov", "lens.getFovType", "lens.setFovType", "lens.setLensValue",
    "lens.getLensValue", "lens.getTime", "lens.getPerspective",
    "shape.executeExtension", "shape.getSupportedExtensions", "shape.isExtensionSupported",
    "shape.getShapeKind", "shape.getShapeIndex", "shape.setShapeIndex", "shape.getLength",
    "shape.getPoint", "shape.getTangent",
    "mesh.executeExtension", "mesh.getSupportedExtensions", "mesh.isExtensionSupported",
    "mesh.setMesh", "mesh.getMeshValue", "mesh.intersectRay", "mesh.getMesh",
    "helper.executeExtension", "helper.getSupportedExtensions", "helper.isExtensionSupported",
    "helper.setHelperMesh", "helper.setHelperColor", "helper.setWireframeMode", "helper.setBackfaceCulling",
};

struct Counts {
    std::array<std::int64_t, kAdaptorSlots> adaptor{};
    std::array<std::int64_t, kNodeSlots> node{};
    std::array<std::int64_t, kSnapshotRows> snapshot{};
};

Counts& counts() {
    static Counts c;
    return c;
}

}  // namespace

void countAdaptorSlot(int slot) { ++counts().adaptor.at(static_cast<std::size_t>(slot)); }
void countNodeOp(NodeOp op) { ++counts().node.at(static_cast<std::size_t>(op)); }
void countSnapshotOp(int row) { ++counts().snapshot.at(static_cast<std::size_t>(row)); }

std::vector<CoverageRow> coverageTable() {
    std::vector<CoverageRow> rows;
    rows.reserve(kAdaptorSlots + kNodeSlots + kSnapshotRows);
    for (std::size_t i = 0; i < kAdaptorNames.size(); ++i) rows.push_back({kAdaptorNames[i], counts().adaptor[i]});
    for (std::size_t i = 0; i < kNodeNames.size(); ++i) rows.push_back({kNodeNames[i], counts().node[i]});
    for (std::size_t i = 0; i < kSnapshotNames.size(); ++i) rows.push_back({kSnapshotNames[i], counts().snapshot[i]});
    return rows;
}

}  // namespace tvr::plr::core::sample
