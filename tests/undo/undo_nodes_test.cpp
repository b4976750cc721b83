// Nodes the core makes and deletes through the adaptor, taken back and
// reapplied by the user's undo and redo: the host moves the objects, the
// restore steps keep the adaptor's live nodes and the core's peers in step.
#include "undo_fixture.h"

#include "core_api/master.h"
#include "core_api/node_peer.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

class Master : public core::CMaster {
public:
    Master() : CMaster(&kDescriptor) {}
    int message(int, void*) override { return 0; }
    bool query(int, core::CoreNode*) override { return true; }
    static inline const core::CMasterDescriptor kDescriptor{"Tool"};
};

class Peer : public core::CNodePeer {
public:
    void nodeLeaves(core::CoreNode*) override { events += "leaves "; }
    void nodeReturns(core::CoreNode*) override { events += "returns "; }
    std::string events;
};

bool registered(C4DAdaptorInterface* adaptor, core::CoreNode* node) {
    int n = 0;
    for (CC4DNode* live : adaptor->nodes) n += live == node;
    return n == 1;
}

TEST_F(UndoTest, ACreatedCameraLeavesWithTheUsersUndoAndComesBackWithRedo) {
    Master master;
    Peer peer;
    adaptorImpl->beginUndo("make");
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "cam", nullptr, &peer);
    core->edit(1, "a");
    adaptorImpl->acceptUndo();
    ASSERT_NE(camera, nullptr);
    BaseObject* object = asC4DNode(camera)->object();
    EXPECT_EQ(peer.events, "returns ");
    const std::string made = host.dump(doc);

    userUndo();
    EXPECT_EQ(object->GetDocument(), nullptr);
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves ");
    EXPECT_EQ(core->data, CoreData());
    userRedo();
    EXPECT_EQ(object->GetDocument(), doc);
    EXPECT_TRUE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves returns ");
    EXPECT_EQ(host.dump(doc), made);

    // Undone, then dropped by a new step: the step takes the node with it.
    userUndo();
    core->group("other", {"b"});
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_FALSE(host.redo());
}

TEST_F(UndoTest, ADeletedNodeComesBackWithItsObjectAndGoesAgainWithRedo) {
    Master master;
    Peer peer;
    adaptorImpl->beginUndo("make");
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "cam", nullptr, &peer);
    adaptorImpl->acceptUndo();
    BaseObject* object = asC4DNode(camera)->object();
    const std::string before = host.dump(doc);

    adaptorImpl->beginUndo("delete");
    EXPECT_EQ(camera->deleteNode(true), 0);
    adaptorImpl->acceptUndo();
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves ");

    userUndo();
    EXPECT_EQ(object->GetDocument(), doc);
    EXPECT_TRUE(registered(adaptorImpl, camera));
    EXPECT_EQ(adaptorImpl->findNode(&master, camera->getName()), camera);
    EXPECT_EQ(peer.events, "returns leaves returns ");
    EXPECT_EQ(host.dump(doc), before);
    userRedo();
    EXPECT_EQ(object->GetDocument(), nullptr);
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves returns leaves ");
    // The deletion is in force when the module ends: the step frees the object
    // and the node, leaving nothing behind for the host to clean up.
    host.shutdown();
    for (const std::string& line : host.console()) EXPECT_EQ(line.find("nodes left by modules"), std::string::npos) << line;
}

TEST_F(UndoTest, NodeStepsOutsideAGroupAreRefusedAndReleased) {
    Master master;
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "loose", nullptr, nullptr);
    ASSERT_NE(camera, nullptr);
    EXPECT_TRUE(registered(adaptorImpl, camera));
    EXPECT_FALSE(C4DUndoManager::instance()->hasDocumentContainer(doc) &&
                 !C4DUndoManager::instance()->getDocumentContainer(doc)->steps.empty());
    EXPECT_EQ(camera->deleteNode(true), 0);
    EXPECT_EQ(containerObject(), nullptr);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
