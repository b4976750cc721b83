// The core's state through a real document: tools store their state on their
// nodes' objects, the document is saved, the user changes it, the module is
// reloaded and the file opened; the core gets back the tree it stored and its
// nodes bound to the objects that are still there.
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core_api/core_node.h"
#include "core_api/master.h"
#include "module_host.h"
#include "nodes/c4d_node.h"
#include "state/compressed_state.h"
#include "test_support/no_installation.h"
#include "util/base64.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

using tvr::util::xml::Element;
using tvr::util::xml::Tag;
using tvr::util::xml::TagWithData;

struct ToolPlan {
    std::string name;
    int parent = -1;
    int place = 0;
    bool compressed = false;
    int nodes = 1;
};

// A tool of the test core: stores the state its plan describes.
class TestTool final : public core::CMaster {
public:
    explicit TestTool(std::string name) : CMaster(&descriptor), descriptor{std::move(name)} {}
    int message(int code, void* data) override {
        messages.push_back(code);
        if (code != core::kMasterStoreState || !data || !state) return 0;
        static_cast<Element*>(data)->addChild(*state);
        return 1;
    }
    bool query(int, core::CoreNode*) override { return false; }

    core::CMasterDescriptor descriptor;
    const Element* state = nullptr;  // the "masternode" to store
    std::vector<int> messages;
};

// Takes the state tree and binds every master's nodes while it is handed over.
class TestCore final : public QuietCore {
public:
    explicit TestCore(core::AdaptorInterface* adaptor) : adaptor(adaptor) {}
    void loadState(const Element& state) override {
        if (state.name() != "PLT") return;
        received = state;
        std::vector<const Element*> work{&state};
        while (!work.empty()) {
            const Element* e = work.back();
            work.pop_back();
            for (const auto& child : e->children()) {
                if (child->name() != "PLT_Plugin") continue;
                core::NodeList nodes{reinterpret_cast<core::CoreNode*>(1)};  // overwritten by the sink
                tvr::util::ReturnValue<core::NodeList> sink(&nodes);
                adaptor->acquireNodes(child->childText("name"), *child, &sink);
                bound[child->childText("name")] = nodes;
                work.push_back(child.get());
            }
        }
    }

    core::AdaptorInterface* adaptor;
    Element received;
    std::map<std::string, core::NodeList> bound;
};

Element pluginOf(const ToolPlan& tool) {
    Tag plugin("PLT_Plugin");
    plugin.addChild(TagWithData("name", tool.name));
    plugin.addChild(TagWithData("settings", "speed=" + std::to_string(tool.name.size()) + " <fast> & \"loud\""));
    for (int n = 0; n < tool.nodes; ++n) {
        Tag node("node");
        node.addChild(TagWithData("objectname", tool.name + "_n" + std::to_string(n)));
        plugin.addChild(node);
    }
    return std::move(plugin);
}

Element masterNodeOf(const std::vector<ToolPlan>& tools, const ToolPlan& tool) {
    Tag masterNode("masternode");
    const Element plugin = pluginOf(tool);
    if (tool.compressed) {
        const std::string text = plugin.toString("", "", "");
        const state::Bytes packed =
            state::compress(reinterpret_cast<const std::uint8_t*>(text.c_str()), text.size() + 1);
        Tag compressed("PLT_Plugin");
        compressed.setAttribute("compressed", "1");
        compressed.addChild(tvr::util::xml::Text(tvr::util::Base64::encode(packed.data(), packed.size())));
        masterNode.addChild(compressed);
    } else {
        masterNode.addChild(plugin);
    }
    masterNode.addChild(TagWithData("parent", tool.parent < 0 ? std::string() : tools[std::size_t(tool.parent)].name));
    masterNode.addChild(TagWithData("childindex", std::to_string(tool.place)));
    return std::move(masterNode);
}

class StoredState : public ModuleHost {
protected:
    // First in, last out: no installation for as long as the fixture lives.
    tvr::plr::test::NoInstallation noInstallation;

    void TearDown() override {
        ModuleHost::TearDown();
        std::remove(path.c_str());
    }

    // One file a test: ctest runs the fixture's tests side by side.
    const std::string path =
        ::testing::TempDir() + ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".scene";
};

std::vector<BaseObject*> objectsInOrder(BaseDocument* doc) {
    std::vector<BaseObject*> out;
    std::function<void(BaseObject*)> walk = [&](BaseObject* op) {
        for (; op; op = op->GetNext()) {
            out.push_back(op);
            walk(op->GetDown());
        }
    };
    walk(doc->GetFirstObject());
    return out;
}

TEST_F(StoredState, RandomScenesSurviveSaveCloseAndOpenWithTheUsersChanges) {
    std::mt19937 rng(2026);
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        // Tools nested at random, places shuffled among siblings.
        std::vector<ToolPlan> tools(std::size_t(2 + rng() % 7));
        std::map<int, std::vector<int>> byParent;
        for (std::size_t i = 0; i < tools.size(); ++i) {
            tools[i].name = "t" + std::to_string(i);
            tools[i].parent = i == 0 || rng() % 3 == 0 ? -1 : int(rng() % i);
            tools[i].compressed = rng() % 2 == 0;
            tools[i].nodes = 1 + int(rng() % 3);
            byParent[tools[i].parent].push_back(int(i));
        }
        for (auto& [parent, kids] : byParent) {
            std::shuffle(kids.begin(), kids.end(), rng);
            for (std::size_t k = 0; k < kids.size(); ++k) tools[std::size_t(kids[k])].place = int(k);
        }

        BaseDocument* doc = host->newDocument();
        std::vector<std::unique_ptr<TestTool>> masters;
        std::vector<core::CoreNode*> made;
        std::vector<Element> states;
        states.reserve(tools.size());
        for (const ToolPlan& t : tools) states.push_back(masterNodeOf(tools, t));
        for (std::size_t i = 0; i < tools.size(); ++i) {
            masters.push_back(std::make_unique<TestTool>(tools[i].name));
            masters.back()->state = &states[i];
            for (int n = 0; n < tools[i].nodes; ++n) {
                made.push_back(adaptor->createCamera(masters.back().get(), "n" + std::to_string(n), nullptr, nullptr));
                ASSERT_NE(made.back(), nullptr);
            }
        }
        std::vector<std::size_t> order(tools.size());
        std::iota(order.begin(), order.end(), std::size_t(0));
        std::shuffle(order.begin(), order.end(), rng);
        for (std::size_t i : order) adaptor->storeMasterState(masters[i].get());
        for (const auto& m : masters) EXPECT_EQ(m->messages, std::vector<int>{core::kMasterStoreState});

        // The user moves, renames and deletes objects; a deleted first node
        // takes its tool's own state with it. Moves go under the first
        // object while it lives (it is never read once freed).
        std::vector<BaseObject*> all = objectsInOrder(doc);
        bool firstGone = false;
        for (BaseObject* op : all) {
            const std::string name = op->GetName().ToStd();
            const unsigned dice = rng() % 10;
            if (dice == 0) {
                firstGone |= op == all.front();
                BaseObject::Free(op);
            } else if (dice == 1) {
                op->SetName(String(name + " renamed"));
            } else if (dice == 2 && op != all.front() && !firstGone) {
                op->Remove();
                doc->InsertObject(op, all.front(), nullptr);
            }
        }
        // Saved with a core attached: the texts go into the file and leave the live objects.
        TestCore saver(adaptor);
        adaptor->core = &saver;
        ASSERT_TRUE(host->saveDocument(nullptr, path));
        std::size_t carrying = 0;
        for (BaseObject* op : objectsInOrder(doc)) carrying += !storedOn(op).empty();
        EXPECT_EQ(carrying, 0u);

        // The module and the host start again; the file is the first document.
        for (core::CoreNode* node : made) node->release();  // the core lets go of what it made
        made.clear();
        restart();
        TestCore core(adaptor);
        adaptor->core = &core;
        ASSERT_NE(host->openDocument(path), nullptr);

        // The expected tree: tools whose state carrier survived, in the order
        // their carriers now stand in the document, children by place.
        std::vector<int> met;
        std::map<std::string, int> byLabel;
        for (std::size_t i = 0; i < tools.size(); ++i) byLabel[tools[i].name + "_n0"] = int(i);
        std::vector<std::string> saved;  // the labels as saved, in document order
        for (BaseObject* op : objectsInOrder(host->activeDocument())) {
            std::string name = op->GetName().ToStd();
            const std::size_t renamed = name.find(" renamed");
            if (renamed != std::string::npos) name.resize(renamed);
            saved.push_back(name);
            if (byLabel.count(name)) met.push_back(byLabel[name]);
        }
        std::set<int> present(met.begin(), met.end());
        std::function<Element(int)> build = [&](int i) {
            Element e = pluginOf(tools[std::size_t(i)]);
            std::vector<int> kids;
            for (std::size_t k = 0; k < tools.size(); ++k)
                if (tools[k].parent == i && present.count(int(k))) kids.push_back(int(k));
            std::sort(kids.begin(), kids.end(),
                      [&](int a, int b) { return tools[std::size_t(a)].place < tools[std::size_t(b)].place; });
            for (int k : kids) e.addChild(build(k));
            return e;
        };
        Tag expected("PLT");
        for (int i : met)
            if (tools[std::size_t(i)].parent < 0 || !present.count(tools[std::size_t(i)].parent))
                expected.addChild(build(i));
        EXPECT_EQ(core.received, expected) << core.received.toString("\n", " ", "") << "\n"
                                           << expected.toString("\n", " ", "");

        // Every saved node whose object is still there is bound to it.
        for (int i : met) {
            const ToolPlan& t = tools[std::size_t(i)];
            const core::NodeList& nodes = core.bound[t.name];
            ASSERT_EQ(nodes.size(), std::size_t(t.nodes));
            for (int n = 0; n < t.nodes; ++n) {
                const std::string label = t.name + "_n" + std::to_string(n);
                const bool exists = std::find(saved.begin(), saved.end(), label) != saved.end();
                ASSERT_EQ(nodes[std::size_t(n)] != nullptr, exists) << label;
                if (!exists) continue;
                std::string name = nodes[std::size_t(n)]->getName();
                EXPECT_EQ(name.substr(0, label.size()), label);
                nodes[std::size_t(n)]->release();
            }
        }
        // What was handed over is consumed; nothing else carries state.
        for (BaseObject* op : objectsInOrder(host->activeDocument()))
            EXPECT_EQ(storedOn(op), "") << op->GetName().ToStd();
        adaptor->core = nullptr;
        host->closeDocument();
    }
}

// The core loads again while one node of its tool still lives: the live
// node's object is not gathered (its text stays), the released one's text is
// consumed, and the core's later binding finds the live object by searching
// the document.
TEST_F(StoredState, LoadingWhileANodeLivesLeavesItsObjectToTheDocumentSearch) {
    host->newDocument();
    ToolPlan plan{"A"};
    plan.nodes = 2;
    const Element masterNode = masterNodeOf({plan}, plan);
    TestTool tool("A");
    tool.state = &masterNode;
    core::CoreNode* live = adaptor->createCamera(&tool, "n0", nullptr, nullptr);
    core::CoreNode* released = adaptor->createCamera(&tool, "n1", nullptr, nullptr);
    BaseObject* releasedObject = static_cast<CC4DNode*>(released)->object();
    adaptor->storeMasterState(&tool);
    released->release();

    TestCore core(adaptor);
    adaptor->core = &core;
    adaptor->loadState();
    EXPECT_EQ(core.received, Tag("PLT")) << core.received.toString("", "", "");
    EXPECT_EQ(storedOn(releasedObject), "");
    EXPECT_NE(storedOn(static_cast<CC4DNode*>(live)->object()), "");

    core::NodeList bound;
    tvr::util::ReturnValue<core::NodeList> sink(&bound);
    adaptor->acquireNodes("A", pluginOf(plan), &sink);
    ASSERT_EQ(bound.size(), 2u);
    ASSERT_NE(bound[0], nullptr);
    EXPECT_TRUE(bound[0]->isSameNode(live));
    EXPECT_EQ(bound[1], nullptr) << "its text was consumed";
    bound[0]->release();
    live->release();
}

// Saving one document takes the texts off its own objects only.
TEST_F(StoredState, SavingClearsTheTextsOfTheSavedDocumentAlone) {
    ToolPlan plan{"A"};
    const Element masterNode = masterNodeOf({plan}, plan);
    TestTool tool("A");
    tool.state = &masterNode;
    std::vector<core::CoreNode*> made;
    for (const char* name : {"first", "second"}) {
        host->newDocument(name);
        made.push_back(adaptor->createCamera(&tool, name, nullptr, nullptr));
        adaptor->storeMasterState(&tool);
    }
    TestCore saver(adaptor);
    adaptor->core = &saver;
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    EXPECT_NE(storedOn(static_cast<CC4DNode*>(made[0])->object()), "");
    EXPECT_EQ(storedOn(static_cast<CC4DNode*>(made[1])->object()), "");
    for (core::CoreNode* node : made) node->release();
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
