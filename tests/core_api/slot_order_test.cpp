// The core calls every shared interface by virtual-table position, so the
// declaration order in the headers is the contract (see core_api_slots.h for
// how slots are read and counted).
#include <gtest/gtest.h>

#include "test_support/core_api_implementations.h"
#include "test_support/core_api_slots.h"

namespace tvr::plr::test {
namespace {

#ifdef PLR_ITANIUM_SLOTS

TEST(SlotOrder, AdaptorInterfaceHasItsThirtyNineOperationsInOrder) {
    using A = AdaptorInterface;
    expectSlots("adaptor", 0, &A::getInterfaceVersion, &A::getDisplayName, &A::getAdaptorId, &A::getHostName,
                &A::getHostVersion, &A::getHostIdentifiers, &A::reservedQuery6, &A::createCamera, &A::createMeshNode,
                &A::createMesh, &A::findNode, &A::storeMasterState, &A::loadState, &A::getNodes, &A::getMasterNodes,
                &A::acquireNodes, &A::mergeFromFile, &A::beginUndo, &A::addUndo, &A::acceptUndo, &A::cancelUndo,
                &A::isAcceptingUndo, &A::undo, &A::getTime, &A::setTime, &A::reservedNotify25, &A::getTimeRange,
                &A::setTimeRange, &A::getFrameRate, &A::getFrameDuration, &A::refreshScene, &A::reservedNotify31,
                &A::reservedNotify32, &A::prepareDirectRecording, &A::prepareCacheRecording, &A::stopRecording,
                &A::reservedQuery36, &A::getAdaptorData, &A::reservedNotify38);
}

TEST(SlotOrder, NodeAndSnapshotTablesFollowTheCoresList) {
    expectNodeSlots<CoreNode>("node");
    // The extendable base keeps its own table: destructor, getExtension,
    // exportExtensions.
    expectSlots("extendable", 2, &CExtendable::getExtension, &CExtendable::exportExtensions);
    expectSlots("visitor", 2, &CExtensionVisitor::visitExtensions);
    using S = CoreNode::Snapshot;
    expectSlots("snapshot", 0, &S::executeExtension, &S::getSupportedExtensions, &S::isExtensionSupported);
    expectTransformSlots<CTransformSnapshot>("transform");
    expectLensSlots<CLensSnapshot>("lens");
    expectShapeSlots<CShapeSnapshot>("shape");
    expectMeshSlots<CMeshSnapshot>("mesh");
    expectHelperSlots<CHelperSnapshot>("helper");
}

TEST(SlotOrder, UndoMasterPeerAndCoreObject) {
    expectSlots("undo", 0, &CUndo::undo, &CUndo::redo, &CUndo::release);
    expectSlots("master", 0, &CMaster::message, &CMaster::masterReserved1, &CMaster::query);
    expectSlots("peer", 2, &CNodePeer::nodeLeaves, &CNodePeer::nodeReturns);  // after the destructor
    // The adaptor calls four of the core's slots; reserved ones fill the rest.
    expectSlots("core", 17, &CoreInterface::saveState, &CoreInterface::loadState);
    expectSlots("core", 20, &CoreInterface::showMain);
    expectSlots("core", 40, &CoreInterface::runLoopStep);
}

#else
TEST(SlotOrder, ReadOnTheItaniumAbiOnly) { GTEST_SKIP() << "slot offsets are read on the Itanium ABI only"; }
#endif

}  // namespace
}  // namespace tvr::plr::test
