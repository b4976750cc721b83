// Loading the core's state from a large document: every object carries a
// stored text, one master in ten objects, a fifth of the masters compressed;
// the core binds every master's nodes while it is handed the tree.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "core_api/core_node.h"
#include "embedded_host/runtime/embedded_host.h"
#include "plugin/plugin_main.h"
#include "state/compressed_state.h"
#include "util/base64.h"
#include "util/log.h"

namespace {

namespace emb = tvr::plr::embedded;
using tvr::plr::adaptor::cinema4d::C4DAdaptorInterface;
using tvr::util::xml::Element;
using tvr::util::xml::Tag;
using tvr::util::xml::TagWithData;

constexpr int kNodesPerMaster = 10;

class BindingCore final : public tvr::plr::core::CoreInterface {
public:
    explicit BindingCore(tvr::plr::core::AdaptorInterface* adaptor) : adaptor(adaptor) {}
    void saveState(Element&) override {}
    void loadState(const Element& state) override {
        bound = 0;
        std::vector<const Element*> work{&state};
        while (!work.empty()) {
            const Element* e = work.back();
            work.pop_back();
            for (const auto& child : e->children()) {
                if (child->name() != "PLT_Plugin") continue;
                tvr::plr::core::NodeList nodes;
                tvr::util::ReturnValue<tvr::plr::core::NodeList> sink(&nodes);
                adaptor->acquireNodes(child->childText("name"), *child, &sink);
                for (tvr::plr::core::CoreNode* node : nodes)
                    if (node) {
                        ++bound;
                        node->release();
                    }
                work.push_back(child.get());
            }
        }
    }
    void showMain(int) override {}
    void runLoopStep() override {}

    tvr::plr::core::AdaptorInterface* adaptor;
    long bound = 0;
};

std::string masterText(int m, int n) {
    const std::string name = "tool" + std::to_string(m);
    Tag tag("PLT_tag");
    tag.addChild(TagWithData("name", name));
    tag.addChild(TagWithData("objectname", name + "_" + std::to_string(n)));
    if (n != 0) return tag.toString("", "", "");
    Tag plugin("PLT_Plugin");
    plugin.addChild(TagWithData("name", name));
    plugin.addChild(TagWithData("settings", "gait=walk speed=1.25 stride=0.8 loop=yes"));
    for (int k = 0; k < kNodesPerMaster; ++k) {
        Tag node("node");
        node.addChild(TagWithData("objectname", name + "_" + std::to_string(k)));
        plugin.addChild(node);
    }
    Tag masterNode("masternode");
    if (m % 5 == 0) {
        const std::string text = plugin.toString("", "", "");
        const auto packed = tvr::plr::state::compress(reinterpret_cast<const std::uint8_t*>(text.c_str()), text.size() + 1);
        Tag compressed("PLT_Plugin");
        compressed.setAttribute("compressed", "1");
        compressed.addChild(tvr::util::xml::Text(tvr::util::Base64::encode(packed.data(), packed.size())));
        masterNode.addChild(compressed);
    } else {
        masterNode.addChild(plugin);
    }
    // Every fourth master nests under the one before it.
    masterNode.addChild(TagWithData("parent", m % 4 == 3 ? "tool" + std::to_string(m - 1) : std::string()));
    masterNode.addChild(TagWithData("childindex", std::to_string(m % 7)));
    tag.addChild(masterNode);
    return tag.toString("", "", "");
}

void LoadStateAndBindEveryMaster(benchmark::State& state) {
    const int masters = static_cast<int>(state.range(0));
    emb::HostOptions options;
    options.crashHandlers = false;
    emb::EmbeddedHost host(options);
    host.loadModule(&c4d_main, "pelloran");
    tvr::util::Log::instance()->setLevel(tvr::util::Log::Error);  // the tree itself is not written out
    BaseDocument* doc = host.newDocument();
    std::vector<BaseObject*> objects;
    std::vector<String> texts;
    for (int m = 0; m < masters; ++m)
        for (int n = 0; n < kNodesPerMaster; ++n) {
            BaseObject* op = BaseObject::Alloc(Onull);
            op->SetName(String("tool" + std::to_string(m) + "_" + std::to_string(n)));
            doc->InsertObject(op, nullptr, nullptr);
            objects.push_back(op);
            texts.push_back(String(masterText(m, n)));
        }
    C4DAdaptorInterface* adaptor = C4DAdaptorInterface::instance();
    BindingCore core(adaptor);
    adaptor->core = &core;
    for (auto _ : state) {
        state.PauseTiming();
        for (std::size_t i = 0; i < objects.size(); ++i) objects[i]->GetDataInstance()->SetString(1023579, texts[i]);
        state.ResumeTiming();
        benchmark::DoNotOptimize(adaptor->loadState());
    }
    if (core.bound != long(masters) * kNodesPerMaster) state.SkipWithError("not every node was bound");
    state.counters["objects"] = double(objects.size());
    state.counters["bound"] = double(core.bound);
    adaptor->core = nullptr;
    host.shutdown();
}
BENCHMARK(LoadStateAndBindEveryMaster)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
