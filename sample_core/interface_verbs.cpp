// Verbs for the rest of what the adaptor offers: its identity and reserved
// slots, the operations it leaves undone, node extensions, helpers, lenses,
// mesh writes, taking over objects the user made, aiming a camera, and the
// table of everything the core has called.
#include <algorithm>
#include <cmath>

#include "core_api/csnapshot.h"
#include "sample_core/command_channel.h"
#include "sample_core/coverage.h"
#include "sample_core/rig.h"
#include "sample_core/sample_core.h"
#include "sample_core/verb_support.h"

namespace tvr::plr::core::sample {

namespace {

using util::Matrix4d;
using util::Vec3d;

CommandResult coverage(SampleCore&, const Args& args) {
    if (!args.empty()) return usage("coverage", "(no arguments)");
    std::string text;
    int called = 0;
    const std::vector<CoverageRow> rows = coverageTable();
    for (const CoverageRow& row : rows) {
        text += std::string(row.name) + " " + std::to_string(row.count) + "\n";
        if (row.count > 0) ++called;
    }
    text += std::to_string(called) + " of " + std::to_string(rows.size()) + " operations called";
    return {true, text};
}

CommandResult about(SampleCore& core, const Args& args) {
    if (!args.empty()) return usage("about", "(no arguments)");
    AdaptorInterface& a = *core.adaptor();
    StringList ids;
    util::ReturnValue<StringList> idSink(&ids);
    a.getHostIdentifiers(&idSink);
    util::xml::Element data;
    util::ReturnValue<util::xml::Element> dataSink(&data);
    const int dataAnswer = a.getAdaptorData(&dataSink);
    std::string text = a.getDisplayName() + " (" + a.getAdaptorId() + "), interface " +
                       std::to_string(a.getInterfaceVersion()) + ", host " + a.getHostName() + " " +
                       a.getHostVersion() + "\nhost identifiers:";
    for (const std::string& id : ids) text += " \"" + id + "\"";
    text += "\nadaptor data: " + std::to_string(dataAnswer) + ", " + (data.isEmpty() ? "empty" : data.name());
    return {true, text};
}

// The slots the adaptor keeps for later: they answer neutrally and change nothing.
CommandResult reserved(SampleCore& core, const Args& args) {
    if (!args.empty()) return usage("reserved", "(no arguments)");
    AdaptorInterface& a = *core.adaptor();
    const int query6 = a.reservedQuery6();
    const int query36 = a.reservedQuery36();
    a.reservedNotify25(0);
    a.reservedNotify31();
    a.reservedNotify32();
    a.reservedNotify38(0);
    return {true, "reserved queries answered " + std::to_string(query6) + " and " + std::to_string(query36) +
                      "; four notifications sent"};
}

CommandResult find(SampleCore& core, const Args& args) {
    if (args.empty() || args.size() > 2) return usage("find", "LABEL [TOOL]");
    CMaster* master = core.nodes().master();
    if (args.size() == 2 && !(master = core.tools().find(args[1]))) return commandError("no tool \"" + args[1] + "\"");
    CoreNode* found = core.adaptor()->findNode(master, args[0]);
    if (!found) return {true, "no node labelled \"" + args[0] + "\""};
    for (const auto& entry : core.nodes().entries()) {
        if (on(found).isSameNode(entry.second)) return {true, "\"" + args[0] + "\" is the core's " + entry.first};
    }
    return {true, "\"" + args[0] + "\" is a node the core does not hold"};
}

// Two operations the adaptor leaves undone: it logs that and makes nothing.
CommandResult loose(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("loose", "NAME");
    CoreNode* node = core.adaptor()->createMesh(core.nodes().master(), args[0], cubeMesh());
    if (node) {
        core.nodes().add(core.nodes().freeName(args[0]), node);
        return {true, "mesh " + args[0] + ": object " + label(node)};
    }
    return {true, "the adaptor made no free mesh"};
}

CommandResult merge(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("merge", "FILE");
    core.adaptor()->mergeFromFile(args[0], core.nodes().master());
    return {true, "asked the adaptor to merge " + args[0]};
}

// Counts what a node's extension store holds.
class StoreCounter final : public CExtensionVisitor {
public:
    void visitExtensions(const ExtensionMap& extensions) override { count = extensions.size(); }
    std::size_t count = 0;
};

template <class Calls>
std::string snapshotExtensions(const char* kind, Calls calls) {
    std::vector<int> codes;
    calls.getSupportedExtensions(codes);
    const bool first = calls.isExtensionSupported(0);
    const std::intptr_t answer = calls.executeExtension(0, nullptr);
    return std::string("\n  ") + kind + " snapshot: " + std::to_string(codes.size()) + " extensions, 0 " +
           (first ? "supported" : "not supported") + ", runs as " + std::to_string(answer);
}

CommandResult extensions(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("extensions", "NAME");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    std::vector<int> codes;
    on(node).getSupportedExtensions(codes);
    std::string text = args[0] + " extensions:";
    for (int code : codes) text += " " + std::to_string(code);
    text += std::string("; renaming (32) ") + (on(node).isExtensionSupported(32) ? "supported" : "not supported");
    StoreCounter store;
    on(node).exportExtensions(&store);
    text += "; " + std::to_string(store.count) + " stored, \"sample\" " +
            (on(node).getExtension("sample") ? "present" : "absent");
    const double now = core.adaptor()->getTime();
    if (CTransformSnapshot* s = on(node).acquireSnapshot(now)) {
        text += snapshotExtensions("transform", on(s));
        on(node).releaseSnapshot(s);
    }
    if (CLensSnapshot* s = on(node).acquireLensSnapshot(now)) {
        text += snapshotExtensions("lens", on(s));
        on(node).releaseLensSnapshot(s);
    }
    if (CShapeSnapshot* s = on(node).acquireShape(now)) {
        text += snapshotExtensions("shape", on(s));
        on(node).releaseShape(s);
    }
    if (CMeshSnapshot* s = on(node).acquireMeshSnapshot(now)) {
        text += snapshotExtensions("mesh", on(s));
        on(node).releaseMeshSnapshot(s);
        delete s;
    }
    if (CHelperSnapshot* s = on(node).createHelperSnapshot()) {
        text += snapshotExtensions("helper", on(s));
        on(node).releaseHelperSnapshot(s);
        delete s;
    }
    return {true, text};
}

CommandResult forget(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("forget", "NAME");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    for (const auto& tool : core.tools().all()) {
        if (std::find(tool->nodes.begin(), tool->nodes.end(), node) != tool->nodes.end())
            return commandError(args[0] + " is driven by tool " + tool->toolName() + "; it stays");
    }
    core.nodes().forget(args[0]);
    on(node).destroy();
    return {true, "forgot " + args[0] + " (the object stays)"};
}

CommandResult helper(SampleCore& core, const Args& args) {
    double rgb[3];
    if (args.size() != 4 || !parseNumbers(args, 1, rgb, 3)) return usage("helper", "NAME R G B  (0 to 1)");
    for (double c : rgb)
        if (c < 0 || c > 1) return usage("helper", "NAME R G B  (0 to 1)");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CHelperSnapshot* s = on(node).createHelperSnapshot();
    if (!s) return commandError(args[0] + "'s object is gone");
    HelperCalls helper = on(s);
    helper.setHelperMesh(cubeMesh());
    helper.setHelperColor(static_cast<float>(rgb[0]), static_cast<float>(rgb[1]), static_cast<float>(rgb[2]));
    helper.setWireframeMode(true);
    helper.setBackfaceCulling(false);
    on(node).releaseHelperSnapshot(s);
    delete s;
    return {true, args[0] + " shows the core's cube in wireframe"};
}

CommandResult setname(SampleCore& core, const Args& args) {
    if (args.size() != 2) return usage("setname", "NAME LABEL");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    if (on(node).setName(args[1]) != 0) return commandError("the adaptor refused (the object is gone?)");
    return {true, args[0] + " is now labelled " + label(node)};
}

CommandResult truncate(SampleCore& core, const Args& args) {
    double seconds = 0;
    if (args.size() != 2 || !parseNumber(args[1], seconds)) return usage("truncate", "NAME SECONDS");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    Bracket bracket(core.adaptor(), "truncate");
    if (on(node).truncateKeys(seconds) != 0) return commandError("the adaptor refused (the object is gone?)");
    return {true, args[0] + "'s keys after " + number(seconds) + " s removed"};
}

CommandResult lens(SampleCore& core, const Args& args) {
    double value = 0;
    if (args.empty() || args.size() > 2 || (args.size() == 2 && (!parseNumber(args[1], value) || value <= 0)))
        return usage("lens", "NAME [VALUE]");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CLensSnapshot* s = on(node).acquireLensSnapshot(core.adaptor()->getTime());
    if (!s) return commandError(args[0] + " is not a camera");
    LensCalls lens = on(s);
    if (args.size() == 2) {
        Bracket bracket(core.adaptor(), "lens");
        lens.setFovType(FOV_TYPE_WIDTH);
        lens.setLensValue(value);
    }
    Matrix4d perspective;
    lens.getPerspective(perspective);
    const std::string text = args[0] + " at " + number(lens.getTime()) + " s: lens value " +
                             number(lens.getLensValue()) + ", field of view type " +
                             std::to_string(lens.getFovType()) + "\nperspective\n" + matrixRows(perspective);
    on(node).releaseLensSnapshot(s);
    return {true, text};
}

CommandResult reshape(SampleCore& core, const Args& args) {
    double n = 0;
    const bool cube = args.size() == 2 && args[1] == "cube";
    const bool grid = args.size() == 3 && args[1] == "grid" && parseNumber(args[2], n) && n >= 1 && n <= 1000 &&
                      n == std::floor(n);
    if (!cube && !grid) return usage("reshape", "NAME cube|grid N");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CMeshSnapshot* s = on(node).acquireMeshSnapshot(core.adaptor()->getTime());
    if (!s) return commandError(args[0] + "'s object is gone");
    MeshCalls mesh = on(s);
    {
        Bracket bracket(core.adaptor(), "reshape");
        mesh.setMesh(cube ? cubeMesh() : gridMesh(static_cast<int>(n)));
    }
    const util::CMesh now = mesh.getMeshValue();
    on(node).releaseMeshSnapshot(s);
    delete s;
    return {true, args[0] + " now has " + std::to_string(now.getPointCount()) + " points, " +
                      std::to_string(now.getPolygonCount()) + " triangles"};
}

// Files an object the user put under one of the core's objects as a node of
// the core's own, so that the core can read and move it.
CommandResult take(SampleCore& core, const Args& args) {
    double index = 0;
    if (args.size() < 2 || args.size() > 3 ||
        (args.size() == 3 && (!parseNumber(args[2], index) || index < 0 || index != std::floor(index))))
        return usage("take", "NAME PARENT [INDEX]");
    NodeBook& book = core.nodes();
    if (book.find(args[0])) return commandError("a node named \"" + args[0] + "\" exists already");
    CoreNode* parent = book.find(args[1]);
    if (!parent) return noNode(args[1]);
    if (index >= on(parent).getChildCount()) return commandError(args[1] + " has no child " + number(index));
    CoreNode* child = on(parent).acquireChild(static_cast<std::int32_t>(index));
    if (!child) return commandError(args[1] + "'s child " + number(index) + " is gone");
    for (const auto& entry : book.entries()) {
        if (on(child).isSameNode(entry.second)) {
            on(parent).releaseNode(child);
            return commandError("that object is the core's " + entry.first + " already");
        }
    }
    book.add(args[0], child);
    return {true, "took " + label(child) + " as " + args[0]};
}

CommandResult aim(SampleCore& core, const Args& args) {
    if (args.size() != 2) return usage("aim", "CAMERA TARGET");
    CoreNode* camera = core.nodes().find(args[0]);
    if (!camera) return noNode(args[0]);
    CoreNode* target = core.nodes().find(args[1]);
    if (!target) return noNode(args[1]);
    const double now = core.adaptor()->getTime();
    Vec3d at;
    if (!globalPosition(target, now, at)) return commandError(args[1] + "'s object is gone");
    Bracket bracket(core.adaptor(), "aim");
    if (!aimAt(camera, now, at)) return commandError(args[0] + " stands where " + args[1] + " is, or is gone");
    return {true, args[0] + " looks at " + args[1] + " " + vec(at)};
}

}  // namespace

std::vector<VerbEntry> interfaceVerbs() {
    return {
        {"coverage", "- every adaptor, node and snapshot operation with how often the core called it", &coverage},
        {"about", "- the adaptor's identity, the host's identifiers and the adaptor's data", &about},
        {"reserved", "- calls the adaptor's reserved slots, which answer neutrally", &reserved},
        {"find", "LABEL [TOOL] - asks the adaptor for the node of that label (the core's own tool by default)", &find},
        {"loose", "NAME - asks for a mesh without a node (the adaptor does not make one)", &loose},
        {"merge", "FILE - asks the adaptor to merge a scene file (it does not)", &merge},
        {"extensions", "NAME - the node's extensions and those of each snapshot it gives", &extensions},
        {"forget", "NAME - gives the node back to the adaptor, keeping the object", &forget},
        {"helper", "NAME R G B - shows the core's cube on the object as a coloured wireframe helper", &helper},
        {"setname", "NAME LABEL - relabels the object at once (no undo step)", &setname},
        {"truncate", "NAME SECONDS - removes the object's keys after SECONDS", &truncate},
        {"lens", "NAME [VALUE] - reads or sets a camera's lens value; shows its perspective", &lens},
        {"reshape", "NAME cube|grid N - writes a new mesh into the object", &reshape},
        {"take", "NAME PARENT [INDEX] - makes PARENT's child object (the first by default) the core's node NAME",
         &take},
        {"aim", "CAMERA TARGET - turns the camera to look at the target", &aim},
    };
}

}  // namespace tvr::plr::core::sample
