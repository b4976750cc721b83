#include "implementations.h"

#include <type_traits>

namespace tvr::plr::test {

// A pure operation added to an interface without a counterpart here makes
// the implementation abstract.
static_assert(!std::is_abstract_v<TestAdaptor>);
static_assert(!std::is_abstract_v<TestNode>);
static_assert(!std::is_abstract_v<TestTransformSnapshot>);
static_assert(!std::is_abstract_v<TestLensSnapshot>);
static_assert(!std::is_abstract_v<TestShapeSnapshot>);
static_assert(!std::is_abstract_v<TestMeshSnapshot>);
static_assert(!std::is_abstract_v<TestHelperSnapshot>);
static_assert(!std::is_abstract_v<TestUndo>);
static_assert(!std::is_abstract_v<TestMaster>);
static_assert(!std::is_abstract_v<TestPeer>);
static_assert(!std::is_abstract_v<TestVisitor>);
static_assert(!std::is_abstract_v<TestCore>);

// The snapshot kinds are reached from a node through both bases.
static_assert(std::is_base_of_v<CoreNode::Snapshot, CTransformSnapshot>);
static_assert(std::is_base_of_v<CSnapshot, CTransformSnapshot>);
static_assert(std::is_base_of_v<CoreNode::Snapshot, CLensSnapshot>);
static_assert(std::is_base_of_v<CoreNode::Snapshot, CShapeSnapshot>);
static_assert(std::is_base_of_v<CoreNode::Snapshot, CMeshSnapshot>);
static_assert(std::is_base_of_v<CoreNode::Snapshot, CHelperSnapshot>);

// attach and detach match the typedefs the loader casts their addresses to.
static_assert(std::is_same_v<core::AttachFn, core::CoreInterface* (*)(core::AdaptorInterface*)>);
static_assert(std::is_same_v<core::DetachFn, void (*)(core::CoreInterface*)>);

}  // namespace tvr::plr::test
