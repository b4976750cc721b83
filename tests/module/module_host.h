// The embedded host with the module loaded as the host loads it, the adaptor
// as the core calls it, and a core of the test's own to attach.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/core_interface.h"
#include "embedded_host/runtime/embedded_host.h"
#include "plugin/plugin_main.h"

namespace tvr::plr::adaptor::cinema4d::testing {

namespace emb = tvr::plr::embedded;

// Where the module keeps stored state: on objects and in the world container.
constexpr LONG kStored = 1023579;

inline emb::HostOptions quietHost(LONG apiVersion = 11000) {
    emb::HostOptions options;
    options.apiVersion = apiVersion;
    options.crashHandlers = false;
    return options;
}

// A core that is attached and does nothing; tests override what they watch.
class QuietCore : public core::CoreInterface {
public:
    void saveState(tvr::util::xml::Element&) override {}
    void loadState(const tvr::util::xml::Element&) override {}
    void showMain(int) override {}
    void runLoopStep() override {}
};

class ModuleHost : public ::testing::Test {
protected:
    void SetUp() override { start(); }
    void TearDown() override { stop(); }

    void start() {
        host = std::make_unique<emb::EmbeddedHost>(quietHost());
        ASSERT_TRUE(host->loadModule(&c4d_main, "pelloran"));
        adaptor = C4DAdaptorInterface::instance();
    }
    // The test's core is its own: detached before the module ends.
    void stop() {
        if (adaptor) adaptor->core = nullptr;
        if (host) host->shutdown();
        host.reset();
    }
    // As if the application were started again: the module reloaded, no document open.
    void restart() {
        stop();
        start();
    }

    static std::string storedOn(BaseObject* op) { return op ? op->GetDataInstance()->GetString(kStored).ToStd() : ""; }

    std::unique_ptr<emb::EmbeddedHost> host;
    C4DAdaptorInterface* adaptor = nullptr;
};

}  // namespace tvr::plr::adaptor::cinema4d::testing
