// A host with the module loaded and a stand-in core that keeps its own data
// (a counter and a set of names) and hands one undo step per edit to the
// adaptor, as a core does. Everything reaches the module through the host's
// entry point and the adaptor interface; undo and redo come from the host.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/cundo.h"
#include "core_api/master.h"
#include "embedded_host/runtime/embedded_host.h"
#include "embedded_host/runtime/host_context.h"
#include "plugin/plugin_main.h"
#include "test_support/host_fixture.h"
#include "undo/c4d_undo_manager.h"
#include "undo/undo_ids.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d::testing {

namespace emb = tvr::plr::embedded;

struct CoreData {
    long long counter = 0;
    std::set<std::string> names;
    bool operator==(const CoreData& o) const { return counter == o.counter && names == o.names; }
};

inline std::string describe(const CoreData& d) {
    std::string s = "counter " + std::to_string(d.counter) + ", names {";
    for (const std::string& n : d.names) s += " " + n;
    return s + " }";
}

// One edit of the stand-in core: adds delta to the counter and the name to the set.
class DataStep : public tvr::plr::CUndo {
public:
    DataStep(CoreData& data, long long delta, std::string name, std::vector<std::string>* calls)
        : data_(data), delta_(delta), name_(std::move(name)), calls_(calls) {
        apply();
    }
    int undo(bool full) override {
        data_.counter -= delta_;
        data_.names.erase(name_);
        if (calls_) calls_->push_back(std::string(full ? "undo " : "light undo ") + name_);
        return 1;
    }
    int redo() override {
        apply();
        if (calls_) calls_->push_back("redo " + name_);
        return 1;
    }
    // The core owns its steps; nothing in the adaptor may release them.
    void release() override { ADD_FAILURE() << "the adaptor released a core step"; }

private:
    void apply() {
        data_.counter += delta_;
        data_.names.insert(name_);
    }
    CoreData& data_;
    long long delta_;
    std::string name_;
    std::vector<std::string>* calls_;
};

class StandInCore {
public:
    explicit StandInCore(core::AdaptorInterface* adaptor) : adaptor(adaptor) {}

    // One edit as its own step inside whatever group is open.
    int edit(long long delta, const std::string& name) {
        steps_.push_back(std::make_unique<DataStep>(data, delta, name, &calls));
        return adaptor->addUndo(steps_.back().get());
    }
    // A whole group of edits.
    void group(const std::string& groupName, std::initializer_list<const char*> names) {
        adaptor->beginUndo(groupName);
        for (const char* n : names) edit(1, n);
        adaptor->acceptUndo();
    }

    core::AdaptorInterface* adaptor;
    CoreData data;
    std::vector<std::string> calls;

private:
    std::vector<std::unique_ptr<DataStep>> steps_;
};

// A tool of the core: the nodes it makes are named "Tool_<label>".
class ToolMaster : public core::CMaster {
public:
    ToolMaster() : CMaster(&kDescriptor) {}
    int message(int, void*) override { return 0; }
    bool query(int, core::CoreNode*) override { return true; }
    static inline const core::CMasterDescriptor kDescriptor{"Tool"};
};

// Runs event-loop cycles until nothing is pending: the tag has posted and the
// message has been handled. False when the loop does not come to rest.
inline bool settle(emb::EmbeddedHost& host) {
    emb::HostContext& c = host.context();
    for (int i = 0; i < 20; ++i) {
        if (c.specialEvents.empty() && !c.eventPending) return true;
        host.runCycle();
    }
    return false;
}

class UndoTest : public ::testing::Test {
protected:
    UndoTest() : host(emb::testing::quietOptions()) {
        EXPECT_TRUE(host.loadModule(&c4d_main, "pelloran"));
        doc = host.newDocument("scene");
        adaptorImpl = C4DAdaptorInterface::instance();
        core = std::make_unique<StandInCore>(adaptorImpl);
    }
    ~UndoTest() override {
        host.shutdown();
        core.reset();
    }

    void settle() { EXPECT_TRUE(testing::settle(host)) << "the event loop does not come to rest"; }
    void userUndo() {
        host.undo();
        settle();
    }
    void userRedo() {
        host.redo();
        settle();
    }

    BaseObject* containerObject(BaseDocument* d = nullptr) {
        for (BaseObject* op = (d ? d : doc)->GetFirstObject(); op; op = op->GetNext())
            if (op->GetName().ToStd() == kContainerObjectName) return op;
        return nullptr;
    }
    LONG containerNumber(BaseDocument* d = nullptr) {
        BaseObject* op = containerObject(d);
        return op ? op->GetDataInstance()->GetLong(kContainerPositionKey, -1) : -1;
    }
    LONG tagNumber(BaseDocument* d = nullptr) {
        BaseObject* op = containerObject(d);
        BaseTag* tag = op ? op->GetFirstTag() : nullptr;
        return tag ? tag->GetDataInstance()->GetLong(kTagPositionKey, -1) : -1;
    }
    std::uint32_t position() {
        documentUndoContainer* record = C4DUndoManager::instance()->getDocumentContainer(nullptr);
        return record ? record->position : 0;
    }
    // The log written since `from` (a size of Log::contents()).
    static std::string logSince(std::size_t from) { return tvr::util::Log::contents().substr(from); }

    emb::EmbeddedHost host;
    BaseDocument* doc = nullptr;
    C4DAdaptorInterface* adaptorImpl = nullptr;
    std::unique_ptr<StandInCore> core;
    ToolMaster master;
};

}  // namespace tvr::plr::adaptor::cinema4d::testing
