// The core calls every shared interface by virtual-table position, so the
// declaration order in the headers is the contract. On the Itanium C++ ABI a
// pointer to a virtual member function holds the byte offset of its table
// entry, which gives each operation's slot without calling it.
//
// Slots are counted as g++ lays them out: a virtual destructor takes two
// entries (complete and deleting), so where the core's list counts the
// destructor once, the operations after it sit one slot further here.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

#include "test_support/core_api_implementations.h"

namespace tvr::plr::test {
namespace {

#if defined(__GNUC__) && !defined(_WIN32) && (defined(__x86_64__) || defined(__i386__))

template <class MemberPointer>
long slotOf(MemberPointer pointer) {
    static_assert(sizeof(pointer) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &pointer, sizeof words);
    if ((words[0] & 1) == 0) return -1;  // not a virtual function
    return static_cast<long>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

// Expects the operations to sit in consecutive slots from `first`.
template <class... MemberPointer>
void expectSlots(const char* table, long first, MemberPointer... operations) {
    const long slots[] = {slotOf(operations)...};
    for (long i = 0; i < static_cast<long>(sizeof...(operations)); ++i)
        EXPECT_EQ(slots[i], first + i) << table << ", operation " << i + 1 << " of the list";
}

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

TEST(SlotOrder, NodeTablesFollowTheCoresList) {
    // The core's list numbers from 1 and counts the destructor (13) once:
    // operations 1-12 are at slot n-1, those from 14 on at slot n. A second
    // base placed first would shift them all.
    using N = CoreNode;
    expectSlots("node", 0, &N::executeExtension, &N::getSupportedExtensions, &N::isExtensionSupported, &N::show,
                &N::hide, &N::isVisible, &N::select, &N::isReleased, &N::acquireParent, &N::getChildCount,
                &N::acquireChild, &N::releaseNode);
    expectSlots("node", 14, &N::getExtension, &N::exportExtensions, &N::release, &N::reacquire, &N::detach,
                &N::acquireSnapshot, &N::createHelperSnapshot, &N::acquireMeshSnapshot, &N::acquireLensSnapshot,
                &N::acquireShape, &N::releaseShape, &N::releaseLensSnapshot, &N::releaseMeshSnapshot,
                &N::releaseHelperSnapshot, &N::releaseSnapshot, &N::isSameNode, &N::setParent, &N::truncateKeys,
                &N::setName, &N::getName, &N::deleteNode, &N::cloneNode);
    // The extendable base keeps its own table: destructor, getExtension,
    // exportExtensions.
    expectSlots("extendable", 2, &CExtendable::getExtension, &CExtendable::exportExtensions);
    expectSlots("visitor", 2, &CExtensionVisitor::visitExtensions);
}

TEST(SlotOrder, SnapshotKindsBeginWithTheExtensionOperations) {
    using S = CoreNode::Snapshot;
    expectSlots("snapshot", 0, &S::executeExtension, &S::getSupportedExtensions, &S::isExtensionSupported);
    using T = CTransformSnapshot;
    expectSlots("transform", 3, &T::setLocalMatrix, &T::getLocalMatrix, &T::getGlobalMatrix, &T::setGlobalMatrix,
                &T::getTime);
    using L = CLensSnapshot;
    expectSlots("lens", 3, &L::setFov, &L::getFov, &L::getFovType, &L::setFovType, &L::setLensValue,
                &L::getLensValue, &L::getTime, &L::getPerspective);
    using Sh = CShapeSnapshot;
    expectSlots("shape", 3, &Sh::getShapeKind, &Sh::getShapeIndex, &Sh::setShapeIndex, &Sh::getLength,
                &Sh::getPoint, &Sh::getTangent);
    // The mesh kind's destructor (6 and 7 here) stands before getMesh.
    using M = CMeshSnapshot;
    expectSlots("mesh", 3, &M::setMesh, &M::getMeshValue, &M::intersectRay);
    expectSlots("mesh", 8, &M::getMesh);
    using H = CHelperSnapshot;
    expectSlots("helper", 3, &H::setHelperMesh, &H::setHelperColor, &H::setWireframeMode, &H::setBackfaceCulling);
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
