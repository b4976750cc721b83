// The module loaded into the embedded host with one document, a master the
// way the core has one, and the adaptor as the core calls it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/csnapshot.h"
#include "core_api/master.h"
#include "core_api/node_peer.h"
#include "embedded_host/runtime/embedded_host.h"
#include "embedded_host/scene/host_node.h"
#include "nodes/c4d_node.h"
#include "plugin/plugin_main.h"
#include "test_support/host_fixture.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d::testing {

namespace core = tvr::plr::core;
namespace emb = tvr::plr::embedded;

class TestMaster : public core::CMaster {
public:
    explicit TestMaster(const core::CMasterDescriptor* descriptor) : CMaster(descriptor) {}
    int message(int code, void*) override {
        messages.push_back(code);
        return 0;
    }
    bool query(int code, core::CoreNode* node) override {
        queries.push_back(code);
        asked = node;
        return answer;
    }
    std::vector<int> messages;
    std::vector<int> queries;
    core::CoreNode* asked = nullptr;
    bool answer = true;
};

class TestPeer : public core::CNodePeer {
public:
    void nodeLeaves(core::CoreNode* node) override { events.push_back({"leaves", node}); }
    void nodeReturns(core::CoreNode* node) override { events.push_back({"returns", node}); }
    std::vector<std::pair<std::string, core::CoreNode*>> events;
};

class NodeTest : public ::testing::Test {
protected:
    NodeTest() : host(emb::testing::quietOptions()) {
        EXPECT_TRUE(host.loadModule(&c4d_main, "pelloran"));
        doc = host.newDocument("scene");
        adaptor = C4DAdaptorInterface::instance();
        CC4DNode::groupSelection = CC4DNode::GroupSelection();
        host.journal().clear();
    }
    ~NodeTest() override {
        for (auto it = owned.rbegin(); it != owned.rend(); ++it) delete *it;
        host.shutdown();
    }

    // Nodes the test holds as the core would; deleted at the end unless dropped.
    CC4DNode* keep(core::CoreNode* node) {
        if (node) owned.push_back(node);
        return static_cast<CC4DNode*>(node);
    }
    // A node that destroyed itself (deleteNode) is no longer ours.
    void drop(core::CoreNode* node) { owned.erase(std::remove(owned.begin(), owned.end(), node), owned.end()); }

    CC4DNode* camera(const std::string& name, core::CoreNode* parent = nullptr) {
        return keep(adaptor->createCamera(&master, name, parent, nullptr));
    }
    CC4DNode* mesh(const std::string& name, const tvr::util::CMesh& m, core::CoreNode* parent = nullptr) {
        return keep(adaptor->createMeshNode(&master, name, parent, m, nullptr));
    }
    // A plain object the user made, at the top or under parent.
    BaseObject* userObject(const char* name, BaseObject* parent = nullptr, LONG type = Onull,
                           BaseDocument* in = nullptr) {
        BaseObject* op = BaseObject::Alloc(type);
        op->SetName(name);
        (in ? in : doc)->InsertObject(op, parent, nullptr);
        return op;
    }
    // A node over an existing object, as the core gets one from stored state.
    CC4DNode* wrap(BaseObject* op, const std::string& name) {
        return keep(new CC4DNode(&master, name, nullptr, op, false));
    }

    static bool nodeSelected(BaseObject* op) {
        const emb::HostNode* n = emb::nodeOf(op);
        return n && n->selected;
    }

    std::vector<std::string> childNames(BaseObject* op) {
        std::vector<std::string> out;
        for (BaseObject* c = op ? op->GetDown() : doc->GetFirstObject(); c; c = c->GetNext())
            out.push_back(c->GetName().ToStd());
        return out;
    }

    // Journal lines of one kind since the last clear.
    std::vector<std::string> journal(const std::string& kind) {
        std::vector<std::string> out;
        for (const auto& e : host.journal().find(kind)) out.push_back(e.text);
        return out;
    }

    std::vector<core::CoreNode*> liveNodes() {
        core::NodeList list;
        tvr::util::ReturnValue<core::NodeList> sink(&list);
        adaptor->getNodes(&sink);
        return list;
    }

    // Log text written from here on.
    std::size_t logMark() const { return tvr::util::Log::contents().size(); }
    std::string logSince(std::size_t mark) const { return tvr::util::Log::contents().substr(mark); }

    emb::EmbeddedHost host;
    BaseDocument* doc = nullptr;
    C4DAdaptorInterface* adaptor = nullptr;
    core::CMasterDescriptor descriptor{"Tool"};
    TestMaster master{&descriptor};
    std::vector<core::CoreNode*> owned;
};

}  // namespace tvr::plr::adaptor::cinema4d::testing
