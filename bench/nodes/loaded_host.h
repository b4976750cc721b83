// The module loaded into a quiet embedded host with one document, and a
// master for the nodes the benchmarks make: shared by the node benchmarks.
#pragma once

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/master.h"
#include "embedded_host/runtime/embedded_host.h"
#include "plugin/plugin_main.h"

namespace tvr::plr::bench {

namespace core = tvr::plr::core;
namespace emb = tvr::plr::embedded;
using tvr::plr::adaptor::cinema4d::C4DAdaptorInterface;

class BenchMaster : public core::CMaster {
public:
    BenchMaster() : CMaster(&descriptor_) {}
    int message(int, void*) override { return 0; }
    bool query(int, core::CoreNode*) override { return true; }

private:
    core::CMasterDescriptor descriptor_{"Bench"};
};

struct LoadedHost {
    LoadedHost() : host(options()) {
        host.loadModule(&c4d_main, "pelloran");
        doc = host.newDocument("bench");
        adaptor = C4DAdaptorInterface::instance();
    }
    ~LoadedHost() { host.shutdown(); }
    static emb::HostOptions options() {
        emb::HostOptions o;
        o.crashHandlers = false;
        return o;
    }
    emb::EmbeddedHost host;
    BaseDocument* doc = nullptr;
    C4DAdaptorInterface* adaptor = nullptr;
    BenchMaster master;
};

inline BaseObject* addObject(BaseDocument* doc, BaseObject* parent) {
    BaseObject* op = BaseObject::Alloc(Onull);
    doc->InsertObject(op, parent, nullptr);
    return op;
}

}  // namespace tvr::plr::bench
