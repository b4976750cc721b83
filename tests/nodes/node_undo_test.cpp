// Nodes inside the core's undo brackets: group selection opening its own
// bracket only when none is open, and creation and deletion taken back and
// redone by the user's undo and redo in the host.
#include "embedded_host/runtime/host_context.h"
#include "node_fixture.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

class NodeUndoTest : public NodeTest {
protected:
    // Event-loop cycles until the undo tag has posted and the message was handled.
    void settle() {
        emb::HostContext& c = host.context();
        for (int i = 0; i < 20 && (!c.specialEvents.empty() || c.eventPending); ++i) host.runCycle();
    }
    void userUndo() {
        host.undo();
        settle();
    }
    void userRedo() {
        host.redo();
        settle();
    }
    std::size_t hostGroups(const char* call) { return journal(call).size(); }
    // The top of the document without the undo manager's hidden object.
    std::vector<std::string> sceneTop() {
        std::vector<std::string> names = childNames(nullptr);
        names.erase(std::remove(names.begin(), names.end(), "PLT-UndoContainer [Do not delete]"), names.end());
        return names;
    }
};

TEST_F(NodeUndoTest, GroupSelectionBracketsItselfOnlyWhenNoBracketIsOpen) {
    CC4DNode* a = camera("a");
    CC4DNode* b = camera("b");
    host.journal().clear();
    ASSERT_FALSE(adaptor->isAcceptingUndo());
    EXPECT_EQ(a->executeExtension(CC4DNode::kBeginGroupSelect, nullptr), 1);
    EXPECT_TRUE(adaptor->isAcceptingUndo());
    EXPECT_EQ(b->executeExtension(CC4DNode::kBeginGroupSelect, nullptr), 0);  // keeps the first bracket
    a->select();
    b->select();
    EXPECT_EQ(b->executeExtension(CC4DNode::kGroupSelect, nullptr), 1);
    EXPECT_FALSE(adaptor->isAcceptingUndo());
    EXPECT_EQ(hostGroups("StartUndo"), 1u);
    EXPECT_EQ(hostGroups("EndUndo"), 1u);

    // Inside the caller's bracket the group joins it and leaves it open.
    adaptor->beginUndo("outer");
    a->executeExtension(CC4DNode::kBeginGroupSelect, nullptr);
    b->select();
    a->executeExtension(CC4DNode::kGroupSelect, nullptr);
    EXPECT_TRUE(adaptor->isAcceptingUndo());
    EXPECT_EQ(hostGroups("EndUndo"), 1u);
    EXPECT_EQ(adaptor->acceptUndo(), 0);
    EXPECT_EQ(hostGroups("StartUndo"), 2u);
    EXPECT_EQ(hostGroups("EndUndo"), 2u);
}

TEST_F(NodeUndoTest, CreationAndDeletionFollowTheUsersUndoAndRedo) {
    adaptor->beginUndo("make");
    CC4DNode* rig = camera("rig");
    adaptor->acceptUndo();
    userObject("K2", rig->object());
    userObject("K1", rig->object());
    EXPECT_EQ(childNames(rig->object()), (std::vector<std::string>{"K1", "K2"}));

    adaptor->beginUndo("delete");
    ASSERT_EQ(rig->deleteNode(true), 0);
    adaptor->acceptUndo();
    drop(rig);  // it lives on in the undo step
    EXPECT_EQ(sceneTop(), (std::vector<std::string>{"K1", "K2"}));
    EXPECT_TRUE(liveNodes().empty());

    userUndo();  // the deletion comes back, the node with it
    EXPECT_EQ(sceneTop(), (std::vector<std::string>{"Tool_rig"}));
    ASSERT_EQ(liveNodes().size(), 1u);
    EXPECT_EQ(liveNodes()[0], rig);
    EXPECT_EQ(childNames(rig->object()), (std::vector<std::string>{"K1", "K2"}));

    userUndo();  // and the creation goes
    EXPECT_TRUE(sceneTop().empty());
    EXPECT_TRUE(liveNodes().empty());
    userRedo();
    EXPECT_EQ(liveNodes().size(), 1u);
    EXPECT_EQ(rig->getName(), "Tool_rig");
    keep(rig);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
