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
#include <string>
#include <vector>

#include "implementations.h"

namespace tvr::plr::test {
namespace {

#if defined(__GNUC__) && !defined(_WIN32) && (defined(__x86_64__) || defined(__i386__))
#define PLR_ITANIUM_SLOTS 1

template <class MemberPointer>
long slotOf(MemberPointer pointer) {
    static_assert(sizeof(pointer) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &pointer, sizeof words);
    if ((words[0] & 1) == 0) return -1;  // not a virtual function
    return static_cast<long>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

struct Slot {
    const char* name;
    long actual;
    long expected;
};

void expectSlots(const std::vector<Slot>& slots) {
    for (const Slot& slot : slots) EXPECT_EQ(slot.actual, slot.expected) << slot.name;
}

#define PLR_SLOT(Class, op, expected) Slot{#op, slotOf(&Class::op), expected}
#endif

TEST(SlotOrder, AdaptorInterfaceHasItsThirtyNineOperationsInOrder) {
#ifdef PLR_ITANIUM_SLOTS
    using A = core::AdaptorInterface;
    expectSlots({
        PLR_SLOT(A, getInterfaceVersion, 0),   PLR_SLOT(A, getDisplayName, 1),
        PLR_SLOT(A, getAdaptorId, 2),          PLR_SLOT(A, getHostName, 3),
        PLR_SLOT(A, getHostVersion, 4),        PLR_SLOT(A, getHostIdentifiers, 5),
        PLR_SLOT(A, reservedQuery6, 6),        PLR_SLOT(A, createCamera, 7),
        PLR_SLOT(A, createMeshNode, 8),        PLR_SLOT(A, createMesh, 9),
        PLR_SLOT(A, findNode, 10),             PLR_SLOT(A, storeMasterState, 11),
        PLR_SLOT(A, loadState, 12),            PLR_SLOT(A, getNodes, 13),
        PLR_SLOT(A, getMasterNodes, 14),       PLR_SLOT(A, acquireNodes, 15),
        PLR_SLOT(A, mergeFromFile, 16),        PLR_SLOT(A, beginUndo, 17),
        PLR_SLOT(A, addUndo, 18),              PLR_SLOT(A, acceptUndo, 19),
        PLR_SLOT(A, cancelUndo, 20),           PLR_SLOT(A, isAcceptingUndo, 21),
        PLR_SLOT(A, undo, 22),                 PLR_SLOT(A, getTime, 23),
        PLR_SLOT(A, setTime, 24),              PLR_SLOT(A, reservedNotify25, 25),
        PLR_SLOT(A, getTimeRange, 26),         PLR_SLOT(A, setTimeRange, 27),
        PLR_SLOT(A, getFrameRate, 28),         PLR_SLOT(A, getFrameDuration, 29),
        PLR_SLOT(A, refreshScene, 30),         PLR_SLOT(A, reservedNotify31, 31),
        PLR_SLOT(A, reservedNotify32, 32),     PLR_SLOT(A, prepareDirectRecording, 33),
        PLR_SLOT(A, prepareCacheRecording, 34), PLR_SLOT(A, stopRecording, 35),
        PLR_SLOT(A, reservedQuery36, 36),      PLR_SLOT(A, getAdaptorData, 37),
        PLR_SLOT(A, reservedNotify38, 38),
    });
    // The implementation's own operations come after the shared ones.
    EXPECT_EQ(slotOf(&TestAdaptor::reservedNotify38), 38);
#else
    GTEST_SKIP() << "slot offsets are read on the Itanium ABI only";
#endif
}

TEST(SlotOrder, CoreNodePrimaryTableFollowsTheCoresList) {
#ifdef PLR_ITANIUM_SLOTS
    // The core's list numbers from 1 and counts the destructor (13) once:
    // operations 1-12 are at slot n-1, those from 14 on at slot n.
    using N = CoreNode;
    expectSlots({
        PLR_SLOT(N, executeExtension, 0),      PLR_SLOT(N, getSupportedExtensions, 1),
        PLR_SLOT(N, isExtensionSupported, 2),  PLR_SLOT(N, show, 3),
        PLR_SLOT(N, hide, 4),                  PLR_SLOT(N, isVisible, 5),
        PLR_SLOT(N, select, 6),                PLR_SLOT(N, isReleased, 7),
        PLR_SLOT(N, acquireParent, 8),         PLR_SLOT(N, getChildCount, 9),
        PLR_SLOT(N, acquireChild, 10),         PLR_SLOT(N, releaseNode, 11),
        PLR_SLOT(N, getExtension, 14),         PLR_SLOT(N, exportExtensions, 15),
        PLR_SLOT(N, release, 16),              PLR_SLOT(N, reacquire, 17),
        PLR_SLOT(N, detach, 18),               PLR_SLOT(N, acquireSnapshot, 19),
        PLR_SLOT(N, createHelperSnapshot, 20), PLR_SLOT(N, acquireMeshSnapshot, 21),
        PLR_SLOT(N, acquireLensSnapshot, 22),  PLR_SLOT(N, acquireShape, 23),
        PLR_SLOT(N, releaseShape, 24),         PLR_SLOT(N, releaseLensSnapshot, 25),
        PLR_SLOT(N, releaseMeshSnapshot, 26),  PLR_SLOT(N, releaseHelperSnapshot, 27),
        PLR_SLOT(N, releaseSnapshot, 28),      PLR_SLOT(N, isSameNode, 29),
        PLR_SLOT(N, setParent, 30),            PLR_SLOT(N, truncateKeys, 31),
        PLR_SLOT(N, setName, 32),              PLR_SLOT(N, getName, 33),
        PLR_SLOT(N, deleteNode, 34),           PLR_SLOT(N, cloneNode, 35),
    });
    // The extendable base keeps its own table: destructor, getExtension,
    // exportExtensions.
    EXPECT_EQ(slotOf(&CExtendable::getExtension), 2);
    EXPECT_EQ(slotOf(&CExtendable::exportExtensions), 3);
    EXPECT_EQ(slotOf(&CNode::executeExtension), 0);
    EXPECT_EQ(slotOf(&CExtensionVisitor::visitExtensions), 2);
    // CNode must stay the primary base, or the node's table would begin
    // with the extendable one.
    TestNode node(nullptr, "n");
    EXPECT_EQ(static_cast<void*>(static_cast<CNode*>(&node)), static_cast<void*>(&node));
#else
    GTEST_SKIP() << "slot offsets are read on the Itanium ABI only";
#endif
}

TEST(SlotOrder, SnapshotKindsBeginWithTheExtensionOperations) {
#ifdef PLR_ITANIUM_SLOTS
    using S = CoreNode::Snapshot;
    expectSlots({PLR_SLOT(S, executeExtension, 0), PLR_SLOT(S, getSupportedExtensions, 1),
                 PLR_SLOT(S, isExtensionSupported, 2)});
    using T = CTransformSnapshot;
    expectSlots({PLR_SLOT(T, setLocalMatrix, 3), PLR_SLOT(T, getLocalMatrix, 4),
                 PLR_SLOT(T, getGlobalMatrix, 5), PLR_SLOT(T, setGlobalMatrix, 6), PLR_SLOT(T, getTime, 7)});
    using L = CLensSnapshot;
    expectSlots({PLR_SLOT(L, setFov, 3), PLR_SLOT(L, getFov, 4), PLR_SLOT(L, getFovType, 5),
                 PLR_SLOT(L, setFovType, 6), PLR_SLOT(L, setLensValue, 7), PLR_SLOT(L, getLensValue, 8),
                 PLR_SLOT(L, getTime, 9), PLR_SLOT(L, getPerspective, 10)});
    using Sh = CShapeSnapshot;
    expectSlots({PLR_SLOT(Sh, getShapeKind, 3), PLR_SLOT(Sh, getShapeIndex, 4), PLR_SLOT(Sh, setShapeIndex, 5),
                 PLR_SLOT(Sh, getLength, 6), PLR_SLOT(Sh, getPoint, 7), PLR_SLOT(Sh, getTangent, 8)});
    // The mesh kind's destructor (6 and 7 here) stands before getMesh.
    using M = CMeshSnapshot;
    expectSlots({PLR_SLOT(M, setMesh, 3), PLR_SLOT(M, getMeshValue, 4), PLR_SLOT(M, intersectRay, 5),
                 PLR_SLOT(M, getMesh, 8)});
    using H = CHelperSnapshot;
    expectSlots({PLR_SLOT(H, setHelperMesh, 3), PLR_SLOT(H, setHelperColor, 4), PLR_SLOT(H, setWireframeMode, 5),
                 PLR_SLOT(H, setBackfaceCulling, 6)});
#else
    GTEST_SKIP() << "slot offsets are read on the Itanium ABI only";
#endif
}

TEST(SlotOrder, UndoMasterPeerAndCoreObject) {
#ifdef PLR_ITANIUM_SLOTS
    expectSlots({PLR_SLOT(CUndo, undo, 0), PLR_SLOT(CUndo, redo, 1), PLR_SLOT(CUndo, release, 2)});
    expectSlots({PLR_SLOT(CMaster, message, 0), PLR_SLOT(CMaster, masterReserved1, 1),
                 PLR_SLOT(CMaster, query, 2)});
    // The peer's destructor comes first.
    expectSlots({PLR_SLOT(CNodePeer, nodeLeaves, 2), PLR_SLOT(CNodePeer, nodeReturns, 3)});
    using C = core::CoreInterface;
    expectSlots({PLR_SLOT(C, reserved0, 0), PLR_SLOT(C, reserved16, 16), PLR_SLOT(C, saveState, 17),
                 PLR_SLOT(C, loadState, 18), PLR_SLOT(C, reserved19, 19), PLR_SLOT(C, showMain, 20),
                 PLR_SLOT(C, reserved39, 39), PLR_SLOT(C, runLoopStep, 40)});
#else
    GTEST_SKIP() << "slot offsets are read on the Itanium ABI only";
#endif
}

}  // namespace
}  // namespace tvr::plr::test
