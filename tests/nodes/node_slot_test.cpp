// The core calls nodes and snapshots by table position: the module's classes
// must fill exactly the slots the shared declarations give, and every
// snapshot kind must be the one the core's declaration names.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "nodes/c4d_node.h"
#include "nodes/helper_snapshot.h"
#include "nodes/lens_snapshot.h"
#include "nodes/mesh_snapshot.h"
#include "nodes/shape_snapshot.h"
#include "nodes/transform_snapshot.h"

namespace tvr::plr::adaptor::cinema4d {
namespace {

#if defined(__GNUC__) && !defined(_WIN32) && (defined(__x86_64__) || defined(__i386__))

template <class MemberPointer>
long slotOf(MemberPointer pointer) {
    static_assert(sizeof(pointer) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &pointer, sizeof words);
    if ((words[0] & 1) == 0) return -1;
    return static_cast<long>((words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

// Each pair: the module's operation and the shared declaration it must fill.
#define EXPECT_SAME_SLOT(Mine, Shared, op) EXPECT_EQ(slotOf(&Mine::op), slotOf(&Shared::op)) << #Mine "::" #op

TEST(NodeSlots, TheNodeFillsTheCoresThirtyFiveSlots) {
    using N = CC4DNode;
    using C = tvr::plr::core::CoreNode;
    EXPECT_SAME_SLOT(N, C, executeExtension);
    EXPECT_SAME_SLOT(N, C, getSupportedExtensions);
    EXPECT_SAME_SLOT(N, C, isExtensionSupported);
    EXPECT_SAME_SLOT(N, C, show);
    EXPECT_SAME_SLOT(N, C, hide);
    EXPECT_SAME_SLOT(N, C, isVisible);
    EXPECT_SAME_SLOT(N, C, select);
    EXPECT_SAME_SLOT(N, C, isReleased);
    EXPECT_SAME_SLOT(N, C, acquireParent);
    EXPECT_SAME_SLOT(N, C, getChildCount);
    EXPECT_SAME_SLOT(N, C, acquireChild);
    EXPECT_SAME_SLOT(N, C, releaseNode);
    EXPECT_SAME_SLOT(N, C, getExtension);
    EXPECT_SAME_SLOT(N, C, exportExtensions);
    EXPECT_SAME_SLOT(N, C, release);
    EXPECT_SAME_SLOT(N, C, reacquire);
    EXPECT_SAME_SLOT(N, C, detach);
    EXPECT_SAME_SLOT(N, C, acquireSnapshot);
    EXPECT_SAME_SLOT(N, C, createHelperSnapshot);
    EXPECT_SAME_SLOT(N, C, acquireMeshSnapshot);
    EXPECT_SAME_SLOT(N, C, acquireLensSnapshot);
    EXPECT_SAME_SLOT(N, C, acquireShape);
    EXPECT_SAME_SLOT(N, C, releaseShape);
    EXPECT_SAME_SLOT(N, C, releaseLensSnapshot);
    EXPECT_SAME_SLOT(N, C, releaseMeshSnapshot);
    EXPECT_SAME_SLOT(N, C, releaseHelperSnapshot);
    EXPECT_SAME_SLOT(N, C, releaseSnapshot);
    EXPECT_SAME_SLOT(N, C, isSameNode);
    EXPECT_SAME_SLOT(N, C, setParent);
    EXPECT_SAME_SLOT(N, C, truncateKeys);
    EXPECT_SAME_SLOT(N, C, setName);
    EXPECT_SAME_SLOT(N, C, getName);
    EXPECT_SAME_SLOT(N, C, deleteNode);
    EXPECT_SAME_SLOT(N, C, cloneNode);
    // The last of the 35 (one more on g++ for the second destructor entry):
    // nothing of the module's own may sit in the primary table before it ends.
    EXPECT_EQ(slotOf(&N::cloneNode), 35);
    // The core reaches the node's fields through the shared base at offset 0.
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::core::CoreNode, N>));
}

TEST(NodeSlots, SnapshotsFillTheirKindsSlots) {
    using T = CC4DNode::CC4DSnapshot;
    using TS = tvr::plr::CTransformSnapshot;
    EXPECT_SAME_SLOT(T, TS, executeExtension);
    EXPECT_SAME_SLOT(T, TS, getSupportedExtensions);
    EXPECT_SAME_SLOT(T, TS, isExtensionSupported);
    EXPECT_SAME_SLOT(T, TS, setLocalMatrix);
    EXPECT_SAME_SLOT(T, TS, getLocalMatrix);
    EXPECT_SAME_SLOT(T, TS, getGlobalMatrix);
    EXPECT_SAME_SLOT(T, TS, setGlobalMatrix);
    EXPECT_SAME_SLOT(T, TS, getTime);

    using L = CC4DNode::CC4DSnapshot_Lens;
    using LS = tvr::plr::CLensSnapshot;
    EXPECT_SAME_SLOT(L, LS, setFov);
    EXPECT_SAME_SLOT(L, LS, getFov);
    EXPECT_SAME_SLOT(L, LS, getFovType);
    EXPECT_SAME_SLOT(L, LS, setFovType);
    EXPECT_SAME_SLOT(L, LS, setLensValue);
    EXPECT_SAME_SLOT(L, LS, getLensValue);
    EXPECT_SAME_SLOT(L, LS, getTime);
    EXPECT_SAME_SLOT(L, LS, getPerspective);

    using S = CC4DNode::CC4DSnapshot_Shape;
    using SS = tvr::plr::CShapeSnapshot;
    EXPECT_SAME_SLOT(S, SS, getShapeKind);
    EXPECT_SAME_SLOT(S, SS, getShapeIndex);
    EXPECT_SAME_SLOT(S, SS, setShapeIndex);
    EXPECT_SAME_SLOT(S, SS, getLength);
    EXPECT_SAME_SLOT(S, SS, getPoint);
    EXPECT_SAME_SLOT(S, SS, getTangent);

    using M = CC4DNode::CC4DSnapshot_Mesh;
    using MS = tvr::plr::CMeshSnapshot;
    EXPECT_SAME_SLOT(M, MS, setMesh);
    EXPECT_SAME_SLOT(M, MS, getMeshValue);
    EXPECT_SAME_SLOT(M, MS, intersectRay);
    EXPECT_SAME_SLOT(M, MS, getMesh);

    using H = CC4DNode::CC4DSnapshot_Helper;
    using HS = tvr::plr::CHelperSnapshot;
    EXPECT_SAME_SLOT(H, HS, setHelperMesh);
    EXPECT_SAME_SLOT(H, HS, setHelperColor);
    EXPECT_SAME_SLOT(H, HS, setWireframeMode);
    EXPECT_SAME_SLOT(H, HS, setBackfaceCulling);
    // The pool's in-use mark is the one the shared snapshot state declares.
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::CSnapshot, T>));
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::CSnapshot, H>));
}

#else
TEST(NodeSlots, ReadOnTheItaniumAbiOnly) { GTEST_SKIP() << "slot offsets are read on the Itanium ABI only"; }
#endif

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d
