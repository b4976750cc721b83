// The core calls nodes and snapshots by table position: the module's classes
// must fill exactly the slots the shared declarations give, and every
// snapshot kind must be the one the core's declaration names.
#include <gtest/gtest.h>

#include <type_traits>

#include "nodes/c4d_node.h"
#include "nodes/helper_snapshot.h"
#include "nodes/lens_snapshot.h"
#include "nodes/mesh_snapshot.h"
#include "nodes/shape_snapshot.h"
#include "nodes/transform_snapshot.h"
#include "test_support/core_api_slots.h"

namespace tvr::plr::adaptor::cinema4d {
namespace {

#ifdef PLR_ITANIUM_SLOTS

using namespace tvr::plr::test;  // NOLINT: the slot lists

// Nothing of the module's own may sit in the primary table before the
// shared operations end: the lists pin the last one (cloneNode) too.
TEST(NodeSlots, TheNodeAndItsSnapshotsFillTheCoresSlots) {
    expectNodeSlots<CC4DNode>("node");
    expectTransformSlots<CC4DNode::CC4DSnapshot>("transform");
    expectLensSlots<CC4DNode::CC4DSnapshot_Lens>("lens");
    expectShapeSlots<CC4DNode::CC4DSnapshot_Shape>("shape");
    expectMeshSlots<CC4DNode::CC4DSnapshot_Mesh>("mesh");
    expectHelperSlots<CC4DNode::CC4DSnapshot_Helper>("helper");
    // The core reaches the node's fields through the shared base at offset 0,
    // and the pool's in-use mark is the one the shared snapshot state declares.
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::core::CoreNode, CC4DNode>));
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::CSnapshot, CC4DNode::CC4DSnapshot>));
    EXPECT_TRUE((std::is_base_of_v<tvr::plr::CSnapshot, CC4DNode::CC4DSnapshot_Helper>));
}

#else
TEST(NodeSlots, ReadOnTheItaniumAbiOnly) { GTEST_SKIP() << "slot offsets are read on the Itanium ABI only"; }
#endif

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d
