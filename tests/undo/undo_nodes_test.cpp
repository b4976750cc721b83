// Nodes the core makes and deletes through the adaptor, taken back and
// reapplied by the user's undo and redo: the host moves the objects, the
// restore steps keep the adaptor's live nodes and the core's peers in step.
#include "undo_fixture.h"

#include "core_api/node_peer.h"
#include "embedded_host/scene/link_impl.h"
#include "embedded_host/scene/node_registry.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

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

// A core step that, while it is replayed, tries to rename a node and to add a step.
class MeddlingStep : public tvr::plr::CUndo {
public:
    MeddlingStep(core::AdaptorInterface* adaptor, core::CoreNode* node) : adaptor_(adaptor), node_(node) {}
    int undo(bool) override {
        renameAnswer = node_->setName("renamed while replayed");
        addAnswer = adaptor_->addUndo(this);
        return 1;
    }
    int redo() override { return undo(true); }
    void release() override {}
    int renameAnswer = -1;
    int addAnswer = -1;

private:
    core::AdaptorInterface* adaptor_;
    core::CoreNode* node_;
};

// Inside its open group the core takes back its last step through the
// adaptor: while that step is replayed it may neither change the scene nor
// add to the list it is replayed from, although the group stands open.
TEST_F(UndoTest, AStepReplayedByTheCoresOwnUndoNeitherRenamesNorAddsSteps) {
    adaptorImpl->beginUndo("make");
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "cam", nullptr, nullptr);
    ASSERT_NE(camera, nullptr);
    BaseObject* object = asC4DNode(camera)->object();
    const std::string name = object->GetName().ToStd();
    MeddlingStep step(adaptorImpl, camera);
    EXPECT_EQ(adaptorImpl->addUndo(&step), 0);
    EXPECT_TRUE(adaptorImpl->undo());
    settle();  // the hidden object's tag notices the undo when the document is evaluated
    EXPECT_NE(step.renameAnswer, 0);
    EXPECT_EQ(step.addAnswer, 1);
    EXPECT_EQ(object->GetName().ToStd(), name);
    EXPECT_EQ(C4DUndoManager::instance()->getDocumentContainer(doc)->steps.size(), 2u);
    adaptorImpl->acceptUndo();
    camera->release();  // the core owns what it made
}

// The core lets go of a node its creation step still names (it binds the
// object to a node of another tool): the user's undo and redo move the object
// and touch no freed node, and the dropped step frees nothing twice.
TEST_F(UndoTest, ANodeTheCoreReleasedIsForgottenByTheStepsThatNameIt) {
    adaptorImpl->beginUndo("make");
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "cam", nullptr, nullptr);
    adaptorImpl->acceptUndo();
    ASSERT_NE(camera, nullptr);
    BaseObject* object = asC4DNode(camera)->object();
    camera->release();

    userUndo();
    EXPECT_EQ(object->GetDocument(), nullptr);
    userRedo();
    EXPECT_EQ(object->GetDocument(), doc);
    EXPECT_EQ(adaptorImpl->findNodeForObject(object), nullptr);

    // Released while undone, then the step is dropped by a new group.
    adaptorImpl->beginUndo("again");
    core::CoreNode* second = adaptorImpl->createCamera(&master, "cam2", nullptr, nullptr);
    adaptorImpl->acceptUndo();
    ASSERT_NE(second, nullptr);
    userUndo();
    second->release();
    core->group("other", {"b"});
    EXPECT_EQ(core->data.names, (std::set<std::string>{"b"}));
}

TEST_F(UndoTest, ACreatedAndThenDeletedNodeFollowsTheUsersUndoAndRedo) {
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

    // Deleted: it comes back with its object on undo and goes again on redo.
    adaptorImpl->beginUndo("delete");
    EXPECT_EQ(camera->deleteNode(true), 0);
    adaptorImpl->acceptUndo();
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves returns leaves ");
    userUndo();
    EXPECT_EQ(object->GetDocument(), doc);
    EXPECT_TRUE(registered(adaptorImpl, camera));
    EXPECT_EQ(adaptorImpl->findNode(&master, camera->getName()), camera);
    EXPECT_EQ(peer.events, "returns leaves returns leaves returns ");
    EXPECT_EQ(host.dump(doc), made);
    userRedo();
    EXPECT_EQ(object->GetDocument(), nullptr);
    EXPECT_FALSE(registered(adaptorImpl, camera));
    EXPECT_EQ(peer.events, "returns leaves returns leaves returns leaves ");
    // The deletion is in force when the module ends: the step frees the object
    // and the node, leaving nothing behind for the host to clean up.
    host.shutdown();
    for (const std::string& line : host.console())
        EXPECT_EQ(line.find("nodes left by modules"), std::string::npos) << line;
}

// A new step ends the redo branch at once: each undone creation step goes
// and takes its node, which gives the host back the node's object link.
TEST_F(UndoTest, ANewStepFreesTheUndoneCreationsAndTheirNodesAtOnce) {
    adaptorImpl->beginUndo("make");
    core::CoreNode* first = adaptorImpl->createCamera(&master, "first", nullptr, nullptr);
    core::CoreNode* second = adaptorImpl->createCamera(&master, "second", nullptr, nullptr);
    adaptorImpl->acceptUndo();
    ASSERT_TRUE(first && second);
    BaseLink* const links[] = {asC4DNode(first)->link(), asC4DNode(second)->link()};
    userUndo();
    EXPECT_FALSE(registered(adaptorImpl, first) || registered(adaptorImpl, second));
    for (BaseLink* link : links) EXPECT_NE(emb::linkOf(link), nullptr) << "kept for redo";
    core->group("other", {"b"});
    for (BaseLink* link : links) EXPECT_EQ(emb::linkOf(link), nullptr) << "freed";
    EXPECT_FALSE(host.redo());
}

TEST_F(UndoTest, NodeStepsOutsideAGroupAreRefusedAndReleased) {
    core::CoreNode* camera = adaptorImpl->createCamera(&master, "loose", nullptr, nullptr);
    ASSERT_NE(camera, nullptr);
    EXPECT_TRUE(registered(adaptorImpl, camera));
    EXPECT_FALSE(C4DUndoManager::instance()->hasDocumentContainer(doc) &&
                 !C4DUndoManager::instance()->getDocumentContainer(doc)->steps.empty());
    BaseObject* const object = asC4DNode(camera)->object();
    EXPECT_EQ(camera->deleteNode(true), 0);
    EXPECT_EQ(containerObject(), nullptr);
    EXPECT_EQ(emb::nodeRegistry()->fromPointer(object), nullptr) << "no undo group holds it, so it is freed";
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
