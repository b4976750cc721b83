// Write and read speed of state-document-like XML, 1 KiB to 16 MiB.
#include <benchmark/benchmark.h>

#include <string>

#include "util/xml/reader.h"

using namespace tvr::util::xml;

namespace {

// A master with nodes, transforms and a few escaped characters, repeated
// until the indented text reaches `bytes`.
Element makeDocument(std::size_t bytes) {
    Tag root("PLT");
    std::size_t written = 0;
    for (int m = 0; written < bytes; ++m) {
        Tag master("masternode");
        Element* plugin = master.addChild(Tag("PLT_Plugin"));
        plugin->setAttribute("version", "3");
        plugin->addChild(TagWithData("name", "Camera rig " + std::to_string(m)));
        master.addChild(TagWithData("parent", m % 3 ? "Camera rig 0" : ""));
        master.addChild(Tag("childindex"))->addChild(Text(std::to_string(m)));
        for (int n = 0; n < 4; ++n) {
            Element* node = master.addChild(Tag("node"));
            node->setAttribute("id", std::to_string(m * 4 + n));
            node->setAttribute("kind", "camera");
            node->addChild(TagWithData("objectname", "Object <" + std::to_string(n) + "> & co"));
            node->addChild(TagWithData(
                "matrix", "1 0 0 0 0 0.7071067 -0.7071067 0 0 0.7071067 0.7071067 0 12.5 -3.25 400 1"));
        }
        written += master.toString("\n", "\t", "\t").size() + 1;
        root.appendChild(std::move(master));
    }
    return root;
}

void BM_XmlWrite(benchmark::State& state) {
    const Element doc = makeDocument(static_cast<std::size_t>(state.range(0)));
    std::size_t size = 0;
    for (auto _ : state) {
        std::string text = doc.toString("\n", "\t", "");
        size = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
}

void BM_XmlRead(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<std::size_t>(state.range(0))).toString("\n", "\t", "");
    for (auto _ : state) {
        Element doc;
        if (parse(text, doc) != kReadOk) state.SkipWithError("document did not read back");
        benchmark::DoNotOptimize(&doc);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

}  // namespace

BENCHMARK(BM_XmlWrite)->RangeMultiplier(8)->Range(1 << 10, 1 << 24)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_XmlRead)->RangeMultiplier(8)->Range(1 << 10, 1 << 24)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
