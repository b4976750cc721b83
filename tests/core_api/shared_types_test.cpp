#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "implementations.h"

namespace tvr::plr::test {
namespace {

TEST(SharedTypes, NodeFieldsStartAsTheCoreExpects) {
    core::CMasterDescriptor descriptor{"Rig"};
    TestMaster master(&descriptor);
    TestNode node(&master, "cam");
    EXPECT_EQ(node.name, "cam");
    EXPECT_EQ(node.master, &master);
    EXPECT_EQ(node.peer, nullptr);
    EXPECT_EQ(node.parentNode, nullptr);
    EXPECT_TRUE(node.animated);
    EXPECT_TRUE(node.extensions.empty());
}

TEST(SharedTypes, ExtensionSupportIsAnsweredFromTheSupportedList) {
    TestNode node(nullptr, "n");
    node.supported = {10, 11, 37, 18, 17, 31, 32};
    CoreNode& base = node;
    EXPECT_TRUE(base.isExtensionSupported(37));
    EXPECT_TRUE(base.isExtensionSupported(32));
    EXPECT_FALSE(base.isExtensionSupported(12));

    TestMeshSnapshot snapshot;
    CoreNode::Snapshot& kind = snapshot;
    EXPECT_FALSE(kind.isExtensionSupported(0));
    snapshot.supported = {5};
    EXPECT_TRUE(kind.isExtensionSupported(5));
    EXPECT_FALSE(snapshot.inUse);
}

TEST(SharedTypes, ExtensionStoreIsReachedThroughBothTables) {
    TestNode node(nullptr, "n");
    int value = 7;
    node.extensions["peer"] = &value;

    // Through the node's own table and through the extendable base.
    CoreNode& asNode = node;
    CExtendable& asExtendable = node;
    EXPECT_EQ(asNode.getExtension("peer"), &value);
    EXPECT_EQ(asExtendable.getExtension("peer"), &value);
    EXPECT_EQ(asExtendable.getExtension("other"), nullptr);

    TestVisitor visitor;
    asExtendable.exportExtensions(&visitor);
    asNode.exportExtensions(nullptr);  // no visitor: nothing to hand over
    EXPECT_EQ(visitor.visits, 1);
    ASSERT_EQ(visitor.seen.size(), 1u);
    EXPECT_EQ(visitor.seen.at("peer"), &value);
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
    holder.releaseNode(nullptr);
    EXPECT_EQ(destroyed, 3);
}

TEST(SharedTypes, MasterNameComesFromTheDescriptorWithoutACall) {
    core::CMasterDescriptor descriptor{"CameraRig"};
    TestMaster named(&descriptor);
    TestMaster unnamed;
    EXPECT_EQ(named.name(), "CameraRig");
    EXPECT_EQ(unnamed.name(), "");
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
