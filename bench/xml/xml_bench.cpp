// Reading and writing a state-like XML document of about 36 MB, side by side
// with pugixml and libxml2 on the same text. Rows named "what | library" are
// the references scripts/bench.sh sets against the row "what".
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <pugixml.hpp>
#include <string>

#include "util/xml/reader.h"

using namespace tvr::util::xml;

namespace {

constexpr std::size_t kDocumentBytes = std::size_t{36} << 20;

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

const Element& document() {
    static const Element doc = makeDocument(kDocumentBytes);
    return doc;
}

const std::string& documentText() {
    static const std::string text = document().toString("\n", "\t", "");
    return text;
}

void setBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes));
}

// Each read builds a whole tree and frees it again, as a user of the reader would.
void ownRead(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        Element doc;
        if (parse(text, doc) != kReadOk) state.SkipWithError("document did not read back");
        benchmark::DoNotOptimize(&doc);
    }
    setBytes(state, text.size());
}

void pugixmlRead(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        pugi::xml_document doc;
        if (!doc.load_buffer(text.data(), text.size())) state.SkipWithError("pugixml refused the document");
        benchmark::DoNotOptimize(&doc);
    }
    setBytes(state, text.size());
}

void libxml2Read(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                      XML_PARSE_NONET | XML_PARSE_HUGE);
        if (!doc) state.SkipWithError("libxml2 refused the document");
        xmlFreeDoc(doc);
    }
    setBytes(state, text.size());
}

void ownWrite(benchmark::State& state) {
    const Element& doc = document();
    std::size_t size = 0;
    for (auto _ : state) {
        std::string text = doc.toString("\n", "\t", "");
        size = text.size();
        benchmark::DoNotOptimize(text.data());
    }
    setBytes(state, size);
}

// The same into a string kept from run to run, cleared but never freed: the
// writer's own cost without the system's for fresh memory (a 36 MB string is
// mapped anew each time it is made, and first touching its pages can cost more
// than writing it).
void ownWriteKept(benchmark::State& state) {
    const Element& doc = document();
    std::string text;
    for (auto _ : state) {
        text.clear();
        doc.appendTo(text, "\n", "\t", "");
        benchmark::DoNotOptimize(text.data());
    }
    setBytes(state, text.size());
}

struct StringWriter : pugi::xml_writer {
    std::string out;
    void write(const void* data, std::size_t size) override {
        out.append(static_cast<const char*>(data), size);
    }
};

void pugixmlWrite(benchmark::State& state) {
    pugi::xml_document doc;
    doc.load_buffer(documentText().data(), documentText().size());
    std::size_t size = 0;
    for (auto _ : state) {
        StringWriter writer;
        doc.save(writer, "\t", pugi::format_indent | pugi::format_no_declaration);
        size = writer.out.size();
        benchmark::DoNotOptimize(writer.out.data());
    }
    setBytes(state, size);
}

void pugixmlWriteKept(benchmark::State& state) {
    pugi::xml_document doc;
    doc.load_buffer(documentText().data(), documentText().size());
    StringWriter writer;
    for (auto _ : state) {
        writer.out.clear();
        doc.save(writer, "\t", pugi::format_indent | pugi::format_no_declaration);
        benchmark::DoNotOptimize(writer.out.data());
    }
    setBytes(state, writer.out.size());
}

void libxml2Write(benchmark::State& state) {
    const std::string& text = documentText();
    xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                  XML_PARSE_NONET | XML_PARSE_HUGE);
    std::size_t size = 0;
    for (auto _ : state) {
        xmlChar* out = nullptr;
        int length = 0;
        xmlDocDumpMemory(doc, &out, &length);
        size = static_cast<std::size_t>(length);
        benchmark::DoNotOptimize(out);
        xmlFree(out);
    }
    xmlFreeDoc(doc);
    setBytes(state, size);
}

}  // namespace

int main(int argc, char** argv) {
    using benchmark::RegisterBenchmark;
    const auto ms = benchmark::kMillisecond;
    RegisterBenchmark("xml read 36 MB", ownRead)->Unit(ms);
    RegisterBenchmark("xml read 36 MB | pugixml", pugixmlRead)->Unit(ms);
    RegisterBenchmark("xml read 36 MB | libxml2", libxml2Read)->Unit(ms);
    RegisterBenchmark("xml write 36 MB", ownWrite)->Unit(ms);
    RegisterBenchmark("xml write 36 MB | pugixml", pugixmlWrite)->Unit(ms);
    RegisterBenchmark("xml write 36 MB | libxml2", libxml2Write)->Unit(ms);
    RegisterBenchmark("xml write 36 MB into a kept string", ownWriteKept)->Unit(ms);
    RegisterBenchmark("xml write 36 MB into a kept string | pugixml", pugixmlWriteKept)->Unit(ms);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    xmlCleanupParser();
    return 0;
}
