// Verbs for the core's tools, their state in the document, time and recording.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "core_api/csnapshot.h"
#include "sample_core/command_channel.h"
#include "sample_core/coverage.h"
#include "sample_core/rig.h"
#include "sample_core/sample_core.h"

namespace tvr::plr::core::sample {

namespace {

std::string number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

bool readSeconds(const std::string& word, double& value) {
    char* end = nullptr;
    value = std::strtod(word.c_str(), &end);
    return !word.empty() && end && *end == '\0' && std::isfinite(value);
}

CommandResult makeTool(SampleCore& core, const std::vector<std::string>& args) {
    if (args.empty() || args.size() > 2) return commandError("usage: tool NAME [PARENT]");
    std::string error;
    Tool* tool = core.tools().add(args[0], args.size() > 1 ? args[1] : std::string(), error);
    if (!tool) return commandError(error);
    return {true, "tool " + tool->toolName() + (tool->parent.empty() ? "" : " under " + tool->parent) + ", place " +
                      std::to_string(tool->place)};
}

CommandResult bind(SampleCore& core, const std::vector<std::string>& args) {
    if (args.size() != 2) return commandError("usage: bind TOOL NODE");
    Tool* tool = core.tools().find(args[0]);
    if (!tool) return commandError("no tool \"" + args[0] + "\"");
    const std::string error = core.tools().bind(*tool, args[1]);
    if (!error.empty()) return commandError(error);
    return {true, "bound " + args[1] + " to " + tool->toolName() + ": object \"" + on(tool->nodes.back()).getName() + "\""};
}

CommandResult store(SampleCore& core, const std::vector<std::string>& args) {
    if (args.size() > 1) return commandError("usage: store [TOOL]");
    if (args.empty()) {
        core.tools().storeAll();
        return {true, "stored " + std::to_string(core.tools().all().size()) + " tools"};
    }
    Tool* tool = core.tools().find(args[0]);
    if (!tool) return commandError("no tool \"" + args[0] + "\"");
    core.adaptor()->storeMasterState(tool);
    return {true, "stored " + tool->toolName()};
}

CommandResult load(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: load");
    const bool allDriven = core.adaptor()->loadState();
    return {true, std::string("loaded; ") + (allDriven ? "every stored object is driven" : "some stored objects are not driven")};
}

CommandResult showState(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: state");
    core.tools().purge();
    std::string text = core.tools().describe();
    if (!text.empty() && text.back() == '\n') text.pop_back();
    return {true, text};
}

std::string timeText(AdaptorInterface& adaptor) {
    const double seconds = adaptor.getTime();
    return "time " + number(seconds) + " s (frame " + number(std::floor(seconds * adaptor.getFrameRate() + 1e-9)) + ")";
}

CommandResult time(SampleCore& core, const std::vector<std::string>& args) {
    if (args.size() > 1) return commandError("usage: time [SECONDS]");
    if (!args.empty()) {
        double seconds = 0;
        if (!readSeconds(args[0], seconds)) return commandError("not a time in seconds: " + args[0]);
        core.adaptor()->setTime(seconds);
    }
    return {true, timeText(*core.adaptor())};
}

CommandResult range(SampleCore& core, const std::vector<std::string>& args) {
    std::pair<double, double> bounds{0, 0};
    if (args.size() != 2 || !readSeconds(args[0], bounds.first) || !readSeconds(args[1], bounds.second))
        return commandError("usage: range START END (seconds)");
    if (bounds.second < bounds.first) return commandError("the range ends before it starts");
    core.adaptor()->setTimeRange(bounds);
    const auto now = core.adaptor()->getTimeRange();
    return {true, "range " + number(now.first) + " s to " + number(now.second) + " s"};
}

CommandResult fps(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: fps");
    return {true, number(core.adaptor()->getFrameRate()) + " frames a second, a frame lasts " +
                      number(core.adaptor()->getFrameDuration()) + " s"};
}

CommandResult refresh(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: refresh");
    core.adaptor()->refreshScene();
    return {true, "refreshed"};
}

bool isCamera(CoreNode* node, double seconds) {
    CLensSnapshot* lens = on(node).acquireLensSnapshot(seconds);
    if (lens) on(node).releaseLensSnapshot(lens);
    return lens != nullptr;
}

// One frame along a path: the tool's cameras look at its first other node,
// which rides the path with the others. Answers the rider's place.
util::Vec3d followPath(Tool& tool, CoreNode* path, double t, double offset) {
    util::Vec3d at;
    if (!pathPoint(path, t, offset, at)) return at;
    std::vector<CoreNode*> cameras;
    for (CoreNode* node : tool.nodes) {
        if (node == path) continue;
        if (isCamera(node, t)) {
            cameras.push_back(node);
        } else {
            placeAt(node, t, at);
        }
    }
    for (CoreNode* camera : cameras) aimAt(camera, t, at);
    return at;
}

// A direct recording: the tool's nodes move along x, one step a frame, or
// along a path; each position is keyed while the adaptor records.
CommandResult record(SampleCore& core, const std::vector<std::string>& args) {
    double seconds = 0;
    const bool along = args.size() == 4 && args[2] == "along";
    if ((args.size() != 2 && !along) || !readSeconds(args[1], seconds) || seconds <= 0)
        return commandError("usage: record TOOL SECONDS [along PATH] (more than 0 seconds)");
    Tool* tool = core.tools().find(args[0]);
    if (!tool) return commandError("no tool \"" + args[0] + "\"");
    if (tool->nodes.empty()) return commandError("tool " + tool->toolName() + " has no nodes to record");
    CoreNode* route = along ? core.nodes().find(args[3]) : nullptr;
    if (along && !route) return commandError("no node named \"" + args[3] + "\"");
    util::Vec3d probe;
    if (along && !pathPoint(route, core.adaptor()->getTime(), 0, probe))
        return commandError(args[3] + " is not a spline");
    AdaptorInterface& adaptor = *core.adaptor();
    const double rate = adaptor.getFrameRate();
    if (rate <= 0) return commandError("there is no document to record in");

    adaptor.beginUndo("Record " + tool->toolName());
    MasterList masters{tool};
    util::ReturnValue<MasterList> sink(&masters);
    adaptor.prepareDirectRecording(&sink);
    if (std::find(masters.begin(), masters.end(), tool) == masters.end()) {
        adaptor.stopRecording();
        adaptor.acceptUndo();
        return commandError("tool " + tool->toolName() + " has nodes in another document; not recorded");
    }
    const double start = adaptor.getTime();
    const int frames = static_cast<int>(std::lround(seconds * rate));
    std::string path;
    for (int frame = 0; frame <= frames; ++frame) {
        const double t = start + frame / rate;
        adaptor.setTime(t);
        if (route) {
            const util::Vec3d at = followPath(*tool, route, t, frames > 0 ? double(frame) / frames : 1.0);
            path += std::string(path.empty() ? "" : " ") + std::to_string(frame) + ":" + number(at.x);
            continue;
        }
        for (CoreNode* node : tool->nodes) {
            CTransformSnapshot* snapshot = on(node).acquireSnapshot(t);
            if (!snapshot) continue;
            util::Matrix4d m = on(snapshot).getLocalMatrix();
            if (frame > 0) m(0, 3) += 1.0;
            on(snapshot).setLocalMatrix(m);
            if (node == tool->nodes.front()) path += (path.empty() ? "" : " ") + std::to_string(frame) + ":" + number(m(0, 3));
            on(node).releaseSnapshot(snapshot);
        }
    }
    adaptor.stopRecording();
    adaptor.acceptUndo();
    const std::string take = number(start) + "-" + number(start + frames / rate) + " s, " +
                             std::to_string(frames + 1) + " frames";
    tool->takes.push_back(take);
    tool->path = path;
    return {true, "recorded " + tool->toolName() + ": " + take};
}

CommandResult cache(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: cache");
    core.adaptor()->prepareCacheRecording(nullptr);
    return {true, "cache recording prepared"};
}

CommandResult stop(SampleCore& core, const std::vector<std::string>& args) {
    if (!args.empty()) return commandError("usage: stop");
    core.adaptor()->stopRecording();
    return {true, "recording stopped"};
}

}  // namespace

std::vector<VerbEntry> stateVerbs() {
    return {
        {"tool", "NAME [PARENT] - makes a tool, last among its parent's tools", &makeTool},
        {"bind", "TOOL NODE - makes the node the tool's (its object is renamed after the tool)", &bind},
        {"store", "[TOOL] - stores one tool's state (or every tool's) on its objects", &store},
        {"load", "- asks the adaptor for the document's stored state and rebuilds the tools", &load},
        {"state", "- lists the tools, their nodes and takes", &showState},
        {"time", "[SECONDS] - sets the document's time, then shows it", &time},
        {"range", "START END - sets the document's time range in seconds", &range},
        {"fps", "- shows the frame rate", &fps},
        {"refresh", "- re-evaluates and redraws the scene", &refresh},
        {"record", "TOOL SECONDS [along PATH] - records the tool's nodes moving (along x, or along the spline PATH with its cameras looking at the rider), frame by frame, from the current time", &record},
        {"cache", "- prepares a cache recording", &cache},
        {"stop", "- stops recording", &stop},
    };
}

}  // namespace tvr::plr::core::sample
