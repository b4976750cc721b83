#include <gtest/gtest.h>

#include "test_support/core_api_implementations.h"

namespace tvr::plr::test {
namespace {

TEST(SharedTypes, NodeAnswersExtensionsThroughBothTables) {
    CMasterDescriptor descriptor{"Rig"};
    TestMaster master(&descriptor);
    TestNode node(&master, "cam");
    // Defaults of the fields the core reads directly.
    EXPECT_TRUE(node.peer == nullptr && node.parentNode == nullptr && node.animated);

    node.supported = {10, 37, 32};
    CoreNode& asNode = node;
    EXPECT_TRUE(asNode.isExtensionSupported(37));
    EXPECT_TRUE(asNode.isExtensionSupported(32));
    EXPECT_FALSE(asNode.isExtensionSupported(12));

    int value = 7;
    node.extensions["peer"] = &value;
    CExtendable& asExtendable = node;
    EXPECT_EQ(asNode.getExtension("peer"), &value);
    EXPECT_EQ(asExtendable.getExtension("peer"), &value);
    EXPECT_EQ(asExtendable.getExtension("other"), nullptr);
    TestVisitor visitor;
    asExtendable.exportExtensions(&visitor);
    asNode.exportExtensions(nullptr);  // no visitor: nothing to hand over
    EXPECT_EQ(visitor.visits, 1);
    EXPECT_EQ(visitor.seen, (ExtensionMap{{"peer", &value}}));

    TestMeshSnapshot snapshot;
    CoreNode::Snapshot& kind = snapshot;
    EXPECT_FALSE(kind.isExtensionSupported(5));
    snapshot.supported = {5};
    EXPECT_TRUE(kind.isExtensionSupported(5));
}

TEST(SharedTypes, NodesAndStepsAreDestroyedThroughTheirTables) {
    int destroyed = 0;
    CUndo* step = new TestUndo(&destroyed);
    step->release();
    EXPECT_EQ(destroyed, 1);

    // A node deleted through its extendable base runs the whole destructor.
    CExtendable* extendable = new TestNode(nullptr, "n", &destroyed);
    delete extendable;
    EXPECT_EQ(destroyed, 2);

    TestNode holder(nullptr, "holder");
    holder.releaseNode(new TestNode(nullptr, "child", &destroyed));
    EXPECT_EQ(destroyed, 3);
}

TEST(SharedTypes, MasterNameIsReadFromTheDescriptorWithoutACall) {
    CMasterDescriptor descriptor{"CameraRig"};
    TestMaster named(&descriptor);
    EXPECT_EQ(TestMaster().name(), "");
    descriptor.name = "Renamed";
    EXPECT_EQ(named.name(), "Renamed");  // read, not copied, by the master
#if defined(__GNUC__) && !defined(_WIN32)
    // The descriptor is the first data member, right after the table pointer.
    const char* base = reinterpret_cast<const char*>(&named);
    EXPECT_EQ(reinterpret_cast<const char*>(&named.descriptor) - base, static_cast<long>(sizeof(void*)));
#endif
}

}  // namespace
}  // namespace tvr::plr::test
