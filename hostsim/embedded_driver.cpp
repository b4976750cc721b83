#include "hostsim/embedded_driver.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "embedded_host/runtime/host_context.h"
#include "embedded_host/scene/document_node.h"
#include "embedded_host/scene/host_node.h"
#include "hostsim/object_inspection.h"
#include "hostsim/scene_picture.h"
#include "platform/platform.h"

namespace hostsim {

std::string EmbeddedDriver::newDocument() {
    return host_.newDocument() ? "" : "the host made no document";
}

std::string EmbeddedDriver::openDocument(const std::string& file) {
    std::string error;
    if (host_.openDocument(file, &error)) return "";
    return error.empty() ? "cannot open " + file : error;
}

std::string EmbeddedDriver::saveDocument(const std::string& file) {
    if (!host_.activeDocument()) return "no document is open";
    std::string error;
    if (host_.saveDocument(nullptr, file, &error)) return "";
    return error.empty() ? "cannot save " + file : error;
}

std::string EmbeddedDriver::closeDocument() {
    if (!host_.activeDocument()) return "no document is open";
    host_.closeDocument();
    return "";
}

std::string EmbeddedDriver::activateDocument(std::int64_t index) {
    const std::vector<BaseDocument*> docs = host_.documents();
    if (index < 1 || static_cast<std::size_t>(index) > docs.size())
        return "no document " + std::to_string(index) + " (" + std::to_string(docs.size()) + " open)";
    return host_.activateDocumentAt(static_cast<std::size_t>(index - 1)) ? "" : "cannot activate document " +
                                                                                   std::to_string(index);
}

std::string EmbeddedDriver::runCommand(std::int64_t id) {
    return host_.runCommand(static_cast<LONG>(id)) ? "" : "no command plug-in " + std::to_string(id);
}

std::string EmbeddedDriver::run(double seconds) {
    const auto ms = static_cast<std::uint64_t>(std::llround(seconds * 1000.0));
    if (realTime_) {
        host_.runRealTime(ms);
    } else {
        host_.advance(ms);
    }
    return "";
}


std::string EmbeddedDriver::printTree(std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    const std::string tree = host_.tree(doc);
    out << "== tree\n" << tree;
    if (!tree.empty() && tree.back() != '\n') out << "\n";
    return "";
}

std::string EmbeddedDriver::printConsole(std::ostream& out) {
    out << "== console (" << host_.console().size() << " lines)\n";
    for (const std::string& line : host_.console()) out << line << "\n";
    return "";
}

std::string EmbeddedDriver::printJournal(std::ostream& out) {
    out << "== journal (" << host_.journal().size() << " entries)\n";
    for (const tvr::plr::embedded::JournalEntry& e : host_.journal().entries()) out << e.kind << " " << e.text << "\n";
    return "";
}

}  // namespace hostsim

namespace hostsim {

namespace {
// The sample core's own export (not part of the core contract).
using CoreCommandFn = int (*)(const char* line, const char** answer);
}  // namespace

std::string EmbeddedDriver::coreCommand(const std::string& line, std::ostream& out) {
    // The core is whatever library the module loaded under that name.
    tvr::platform::Platform& os = tvr::platform::platform();
    tvr::platform::ModuleHandle core = os.getModuleHandle("core.dll");
    if (!core) return "the core is not loaded (run: command 1023575)";
    auto* fn = reinterpret_cast<CoreCommandFn>(os.getProcAddress(core, "plr_sample_core_command"));
    if (!fn) return "the loaded core has no command channel";
    const char* answer = nullptr;
    const int ok = fn(line.c_str(), &answer);
    const std::string text = answer ? answer : "";
    if (!ok) return text.empty() ? "the core refused the line" : text;
    out << text;
    if (!text.empty() && text.back() != '\n') out << "\n";
    return "";
}

}  // namespace hostsim

namespace hostsim {

namespace {
std::string writeFile(const std::string& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (!out) return "cannot write " + file;
    out << text;
    out.close();
    return out ? "" : "cannot write " + file;
}
}  // namespace

std::string EmbeddedDriver::drawView(const std::string& file, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    if (std::string error = writeFile(file, drawScene(doc)); !error.empty()) return error;
    out << "wrote " << file << "\n";
    return "";
}

std::string EmbeddedDriver::drawCurves(const std::string& object, const std::string& file, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    BaseObject* op = findObjectByName(doc, object);
    if (!op) return "no object named \"" + object + "\"";
    std::string error;
    const std::string picture = hostsim::drawCurves(doc, op, error);
    if (picture.empty()) return error;
    if (error = writeFile(file, picture); !error.empty()) return error;
    out << "wrote " << file << "\n";
    return "";
}

std::string EmbeddedDriver::inspect(const std::string& object, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    BaseObject* op = findObjectByName(doc, object);
    if (!op) return "no object named \"" + object + "\"";
    const tvr::plr::embedded::HostNode* node = tvr::plr::embedded::nodeOf(op);
    out << "== inspect " << object << "\n" << describeObject(op, node && node->selected);
    return "";
}

std::string EmbeddedDriver::documentInfo(std::int64_t type, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    if (!host_.tellDocument(doc, static_cast<LONG>(type))) return "the active document is not the host's";
    out << "document event " << type << " sent\n";
    return "";
}

std::string EmbeddedDriver::play(double from, double to, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    const LONG fps = doc->GetFps();
    if (fps <= 0) return "the document has no frame rate";
    const auto first = static_cast<std::int64_t>(std::llround(from * fps));
    const auto last = static_cast<std::int64_t>(std::llround(to * fps));
    const std::int64_t step = last >= first ? 1 : -1;
    for (std::int64_t frame = first;; frame += step) {
        doc->SetTime(BaseTime(static_cast<LReal>(frame), static_cast<LReal>(fps)));
        host_.context().eventPending = true;  // what the host's time slider posts
        host_.runCycle();
        if (frame == last) break;
    }
    out << "played frames " << first << " to " << last << "\n";
    return "";
}

}  // namespace hostsim

namespace hostsim {

std::string EmbeddedDriver::drawSpline(const std::string& words, std::ostream& out) {
    BaseDocument* doc = host_.activeDocument();
    if (!doc) return "no document is open";
    std::istringstream in(words);
    std::string name, parentName;
    in >> name >> parentName;
    std::vector<Real> numbers;
    std::string word;
    while (in >> word) {
        char* end = nullptr;
        const double v = std::strtod(word.c_str(), &end);
        if (end != word.c_str() + word.size() || !std::isfinite(v)) return "not a number: " + word;
        numbers.push_back(static_cast<Real>(v));
    }
    if (parentName.empty() || numbers.size() < 6 || numbers.size() % 3 != 0)
        return "usage: spline NAME PARENT X Y Z X Y Z... (two points or more)";
    BaseObject* parent = nullptr;
    if (parentName != "-" && !(parent = findObjectByName(doc, parentName)))
        return "no object named \"" + parentName + "\"";
    const LONG count = static_cast<LONG>(numbers.size() / 3);
    SplineObject* spline = SplineObject::Alloc(count);
    if (!spline) return "the host made no spline";
    Vector* points = spline->GetPointW();
    for (LONG i = 0; i < count; ++i) points[i] = Vector(numbers[3 * i], numbers[3 * i + 1], numbers[3 * i + 2]);
    spline->SetName(name);
    doc->StartUndo();
    doc->InsertObject(spline, parent, nullptr);
    doc->AddUndo(UNDO_NEW, spline);
    doc->EndUndo();
    spline->Message(MSG_UPDATE);
    EventAdd();
    host_.runCycle();
    out << "drew spline " << name << " through " << count << " points\n";
    return "";
}

}  // namespace hostsim
