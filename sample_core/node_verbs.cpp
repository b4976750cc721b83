// Verbs that build and edit the scene through the adaptor's node operations,
// as the core's tools would: every call goes through the adaptor interface,
// a node or a snapshot. Arguments are checked before anything is called, so
// a bad line changes nothing.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "core_api/csnapshot.h"
#include "sample_core/command_channel.h"
#include "sample_core/coverage.h"
#include "sample_core/sample_core.h"
#include "sample_core/verb_support.h"

namespace tvr::plr::core::sample {

namespace {

using util::Matrix4d;
using util::Vec3d;

// ---- Making nodes

CommandResult camera(SampleCore& core, const Args& args) {
    if (args.empty() || args.size() > 2) return usage("camera", "NAME [PARENT]");
    NodeBook& book = core.nodes();
    if (book.find(args[0])) return commandError("a node named \"" + args[0] + "\" exists already");
    CoreNode* parent = nullptr;
    if (args.size() == 2 && !(parent = book.find(args[1]))) return noNode(args[1]);
    Bracket bracket(core.adaptor(), "camera");
    CoreNode* node = core.adaptor()->createCamera(book.master(), args[0], parent, book.peerFor(args[0]));
    if (!node) return commandError("the adaptor made no camera (see its log)");
    book.add(args[0], node);
    return {true, "camera " + args[0] + ": object " + label(node)};
}

CommandResult mesh(SampleCore& core, const Args& args) {
    const auto bad = [] {
        return usage("mesh", "NAME [PARENT] [cube|grid N] [size S]  (N from 1 to 1000, S above 0)");
    };
    if (args.empty()) return bad();
    NodeBook& book = core.nodes();
    if (book.find(args[0])) return commandError("a node named \"" + args[0] + "\" exists already");
    std::size_t i = 1;
    CoreNode* parent = nullptr;
    if (i < args.size() && args[i] != "cube" && args[i] != "grid" && args[i] != "size") {
        if (!(parent = book.find(args[i]))) return noNode(args[i]);
        ++i;
    }
    util::CMesh shape = cubeMesh();
    if (i < args.size() && args[i] == "cube") {
        ++i;
    } else if (i < args.size() && args[i] == "grid") {
        double n = 0;
        if (i + 1 >= args.size() || !parseNumber(args[i + 1], n) || n < 1 || n > 1000 || n != std::floor(n))
            return bad();
        shape = gridMesh(static_cast<int>(n));
        i += 2;
    }
    // Mesh points are in the object's own units, which the core does not scale.
    if (i < args.size() && args[i] == "size") {
        double size = 0;
        if (i + 1 >= args.size() || !parseNumber(args[i + 1], size) || size <= 0 || size > 1e6) return bad();
        for (Vec3d& p : shape.points) p = {p.x * size, p.y * size, p.z * size};
        i += 2;
    }
    if (i != args.size()) return bad();
    Bracket bracket(core.adaptor(), "mesh");
    CoreNode* node = core.adaptor()->createMeshNode(book.master(), args[0], parent, shape, book.peerFor(args[0]));
    if (!node) return commandError("the adaptor made no mesh (see its log)");
    book.add(args[0], node);
    return {true, "mesh " + args[0] + ": object " + label(node) + ", " + std::to_string(shape.getPointCount()) +
                      " points, " + std::to_string(shape.getPolygonCount()) + " triangles"};
}

// ---- Reading the scene

CommandResult nodes(SampleCore& core, const Args& args) {
    if (args.size() > 1) return usage("nodes", "[TOOL]");
    CMaster* master = nullptr;
    if (args.size() == 1) {
        master = args[0] == core.nodes().master()->name() ? core.nodes().master() : core.tools().find(args[0]);
        if (!master) return commandError("no tool \"" + args[0] + "\"");
    }
    NodeList list;
    util::ReturnValue<NodeList> sink(&list);
    if (master) {
        core.adaptor()->getMasterNodes(master, &sink);
    } else {
        core.adaptor()->getNodes(&sink);
    }
    if (list.empty()) return {true, "no nodes"};
    std::string text;
    for (CoreNode* node : list) {
        const std::string master = node->master ? node->master->name() : std::string("-");
        text += label(node) + " master " + (master.empty() ? std::string("(unnamed)") : master) + " deleted " +
                (on(node).isReleased() ? "yes" : "no") + "\n";
    }
    return {true, text};
}

CommandResult children(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("children", "NAME");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    const std::int32_t count = on(node).getChildCount();
    std::string text = args[0] + " has " + std::to_string(count) + (count == 1 ? " child" : " children");
    for (std::int32_t i = 0; i < count; ++i) {
        CoreNode* child = on(node).acquireChild(i);
        if (!child) continue;
        text += (i ? ", " : ": ") + label(child);
        on(node).releaseNode(child);
    }
    return {true, text};
}

CommandResult parent(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("parent", "NAME");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CoreNode* up = on(node).acquireParent();
    if (!up) return {true, args[0] + " is at the top level"};
    const std::string text = "parent of " + args[0] + ": " + label(up);
    on(up).release();
    return {true, text};
}

// ---- Editing

// The nodes named by args[first...], or the error for the first unknown name.
bool lookUp(SampleCore& core, const Args& args, std::size_t first, std::vector<CoreNode*>& out, CommandResult& error) {
    for (std::size_t i = first; i < args.size(); ++i) {
        CoreNode* node = core.nodes().find(args[i]);
        if (!node) {
            error = noNode(args[i]);
            return false;
        }
        out.push_back(node);
    }
    return true;
}

CommandResult select(SampleCore& core, const Args& args) {
    if (args.empty()) return usage("select", "NAME...");
    std::vector<CoreNode*> picked;
    CommandResult error;
    if (!lookUp(core, args, 0, picked, error)) return error;
    // More than one: one group selection, each added to the selection.
    const bool group = picked.size() > 1;
    if (group) on(picked.front()).executeExtension(10, nullptr);
    for (CoreNode* node : picked) on(node).select();
    if (group) on(picked.front()).executeExtension(11, nullptr);
    std::string text = "selected";
    for (std::size_t i = 0; i < args.size(); ++i) text += (i ? ", " : " ") + args[i];
    return {true, text};
}

CommandResult setVisible(SampleCore& core, const Args& args, bool visible) {
    const char* verb = visible ? "show" : "hide";
    if (args.size() != 1) return usage(verb, "NAME");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    Bracket bracket(core.adaptor(), verb);
    if ((visible ? on(node).show() : on(node).hide()) != 0) return commandError("the adaptor refused (the object is gone?)");
    return {true, args[0] + (on(node).isVisible() ? " is visible" : " is hidden")};
}

CommandResult hide(SampleCore& core, const Args& args) { return setVisible(core, args, false); }
CommandResult show(SampleCore& core, const Args& args) { return setVisible(core, args, true); }

CommandResult rename(SampleCore& core, const Args& args) {
    if (args.size() != 2) return usage("rename", "NAME NEW");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    std::string newLabel = args[1];
    on(node).executeExtension(32, &newLabel);  // answers 0 even when it renamed
    return {true, args[0] + " is now labelled " + label(node)};
}

CommandResult reparent(SampleCore& core, const Args& args) {
    if (args.empty() || args.size() > 2) return usage("reparent", "NAME [PARENT]");
    std::vector<CoreNode*> picked;
    CommandResult error;
    if (!lookUp(core, args, 0, picked, error)) return error;
    CoreNode* newParent = picked.size() == 2 ? picked[1] : nullptr;
    Bracket bracket(core.adaptor(), "reparent");
    if (on(picked[0]).setParent(newParent) != 0)
        return commandError("the adaptor refused to move " + args[0] + (newParent ? " under " + args[1] : ""));
    return {true, args[0] + (newParent ? " is now under " + args[1] : " is now at the top level")};
}

CommandResult clone(SampleCore& core, const Args& args) {
    if (args.empty() || args.size() > 2 || (args.size() == 2 && args[1] != "deep"))
        return usage("clone", "NAME [deep]");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    Bracket bracket(core.adaptor(), "clone");
    CoreNode* copy = on(node).cloneNode(args.size() == 2);
    if (!copy) return commandError("the adaptor made no clone (see its log)");
    const std::string name = core.nodes().freeName(copy->name);
    core.nodes().add(name, copy);
    return {true, "clone " + name + ": object " + label(copy)};
}

CommandResult remove(SampleCore& core, const Args& args) {
    if (args.empty() || args.size() > 2 || (args.size() == 2 && args[1] != "keep"))
        return usage("delete", "NAME [keep]  (keep: the object stays, only the node goes)");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    Bracket bracket(core.adaptor(), "delete");
    // The node is the adaptor's from here: it destroys itself or lives on in an undo step.
    if (on(node).deleteNode(args.size() == 1) != 0) return commandError("the adaptor refused (the object is gone?)");
    core.nodes().forget(args[0]);
    return {true, "deleted " + args[0] + (args.size() == 2 ? " (the object stays)" : "")};
}

// Runs `use` on the node's transform snapshot at `seconds` and gives it back.
template <class Use>
void withTransform(CoreNode* node, double seconds, Use use) {
    if (CTransformSnapshot* snapshot = on(node).acquireSnapshot(seconds)) {
        TransformCalls calls = on(snapshot);
        use(calls);
        on(node).releaseSnapshot(snapshot);
    }
}

CommandResult move(SampleCore& core, const Args& args) {
    double xyz[3];
    if (args.size() != 4 || !parseNumbers(args, 1, xyz, 3)) return usage("move", "NAME X Y Z");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    Bracket bracket(core.adaptor(), "move");
    bool moved = false;
    withTransform(node, core.adaptor()->getTime(), [&](TransformCalls& s) {
        Matrix4d m = s.getGlobalMatrix();
        for (int r = 0; r < 3; ++r) m(r, 3) = xyz[r];
        s.setGlobalMatrix(m);
        moved = true;
    });
    if (!moved) return commandError(args[0] + "'s object is gone");
    return {true, args[0] + " moved to " + vec(Vec3d{xyz[0], xyz[1], xyz[2]})};
}

// Heading about y, then pitch about x, then bank about z, in the core's right-handed axes.
Matrix4d rotation(double h, double p, double b) {
    const auto about = [](int axis, double angle) {
        Matrix4d m;
        const int i = (axis + 1) % 3, j = (axis + 2) % 3;
        m(i, i) = std::cos(angle);
        m(j, j) = std::cos(angle);
        m(i, j) = -std::sin(angle);
        m(j, i) = std::sin(angle);
        return m;
    };
    return about(1, h) * about(0, p) * about(2, b);
}

CommandResult rotate(SampleCore& core, const Args& args) {
    double hpb[3];
    if (args.size() != 4 || !parseNumbers(args, 1, hpb, 3)) return usage("rotate", "NAME H P B  (degrees)");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    const double toRadians = 3.141592653589793 / 180.0;
    const Matrix4d r = rotation(hpb[0] * toRadians, hpb[1] * toRadians, hpb[2] * toRadians);
    Bracket bracket(core.adaptor(), "rotate");
    bool turned = false;
    withTransform(node, core.adaptor()->getTime(), [&](TransformCalls& s) {
        Matrix4d m = s.getGlobalMatrix();
        // The new rotation with the axes' old lengths, at the old place.
        for (int c = 0; c < 3; ++c) {
            const double length = std::sqrt(m(0, c) * m(0, c) + m(1, c) * m(1, c) + m(2, c) * m(2, c));
            for (int row = 0; row < 3; ++row) m(row, c) = r(row, c) * length;
        }
        s.setGlobalMatrix(m);
        turned = true;
    });
    if (!turned) return commandError(args[0] + "'s object is gone");
    return {true, args[0] + " turned to " + number(hpb[0]) + " " + number(hpb[1]) + " " + number(hpb[2]) + " degrees"};
}

CommandResult pose(SampleCore& core, const Args& args) {
    double seconds = 0;
    if (args.empty() || args.size() > 2 || (args.size() == 2 && !parseNumber(args[1], seconds)))
        return usage("pose", "NAME [SECONDS]");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    if (args.size() == 1) seconds = core.adaptor()->getTime();
    std::string text;
    withTransform(node, seconds, [&](TransformCalls& s) {
        text = args[0] + " at " + number(s.getTime()) + " s\nlocal\n" + matrixRows(s.getLocalMatrix()) + "global\n" +
               matrixRows(s.getGlobalMatrix());
    });
    if (text.empty()) return commandError(args[0] + "'s object is gone");
    return {true, text};
}

CommandResult fov(SampleCore& core, const Args& args) {
    double degrees = 0;
    if (args.empty() || args.size() > 2 || (args.size() == 2 && !parseNumber(args[1], degrees)))
        return usage("fov", "NAME [DEGREES]");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CLensSnapshot* lens = on(node).acquireLensSnapshot(core.adaptor()->getTime());
    if (!lens) return commandError(args[0] + " is not a camera");
    if (args.size() == 2) {
        Bracket bracket(core.adaptor(), "fov");
        on(lens).setFov(degrees);
    }
    const std::string text =
        args[0] + " field of view " + number(on(lens).getFov()) + " degrees, lens value " + number(on(lens).getLensValue());
    on(node).releaseLensSnapshot(lens);
    return {true, text};
}

CommandResult shape(SampleCore& core, const Args& args) {
    double index = 0;
    if (args.empty() || args.size() > 2 ||
        (args.size() == 2 && (!parseNumber(args[1], index) || index < 0 || index > 1e6 || index != std::floor(index))))
        return usage("shape", "NAME [INDEX]");
    CoreNode* node = core.nodes().find(args[0]);
    if (!node) return noNode(args[0]);
    CShapeSnapshot* s = on(node).acquireShape(core.adaptor()->getTime());
    if (!s) return commandError(args[0] + " has no shape");
    if (args.size() == 2) on(s).setShapeIndex(static_cast<std::int32_t>(index));
    std::string text = args[0] + " length " + number(on(s).getLength()) + ", kind " +
                       std::to_string(on(s).getShapeKind()) + ", index " + std::to_string(on(s).getShapeIndex()) + "\n";
    for (double at : {0.0, 0.5, 1.0})
        text += "  at " + number(at) + ": point " + vec(on(s).getPoint(at)) + " tangent " + vec(on(s).getTangent(at)) + "\n";
    on(node).releaseShape(s);
    return {true, text};
}

// Runs `use` on a mesh snapshot of the node, then gives it back and deletes it.
template <class Use>
CommandResult withMesh(SampleCore& core, const std::string& name, Use use) {
    CoreNode* node = core.nodes().find(name);
    if (!node) return noNode(name);
    CMeshSnapshot* snapshot = on(node).acquireMeshSnapshot(core.adaptor()->getTime());
    if (!snapshot) return commandError(name + "'s object is gone");
    MeshCalls calls = on(snapshot);
    CommandResult result = use(calls);
    on(node).releaseMeshSnapshot(snapshot);
    delete snapshot;
    return result;
}

CommandResult meshinfo(SampleCore& core, const Args& args) {
    if (args.size() != 1) return usage("meshinfo", "NAME");
    return withMesh(core, args[0], [&](MeshCalls& s) {
        util::CMesh m;
        util::ReturnValue<util::CMesh> sink(&m);
        if (!s.getMesh(&sink)) return commandError(args[0] + " holds no mesh");
        std::string text = args[0] + ": " + std::to_string(m.getPointCount()) + " points, " +
                           std::to_string(m.getPolygonCount()) + " triangles, " + std::to_string(m.getUVCount()) +
                           " texture coordinates";
        if (m.getPointCount() > 0) {
            Vec3d lo = m.getPoint(0), hi = lo;
            for (const Vec3d& p : m.points) {
                lo = {std::fmin(lo.x, p.x), std::fmin(lo.y, p.y), std::fmin(lo.z, p.z)};
                hi = {std::fmax(hi.x, p.x), std::fmax(hi.y, p.y), std::fmax(hi.z, p.z)};
            }
            text += "\n  bounds " + vec(lo) + " to " + vec(hi);
        }
        return CommandResult{true, text};
    });
}

CommandResult ray(SampleCore& core, const Args& args) {
    double v[6];
    if (args.size() != 7 || !parseNumbers(args, 1, v, 6)) return usage("ray", "NAME OX OY OZ DX DY DZ");
    if (v[3] == 0 && v[4] == 0 && v[5] == 0) return commandError("the ray needs a direction");
    return withMesh(core, args[0], [&](MeshCalls& s) {
        double distance = 0;
        double hit[3] = {};
        if (!s.intersectRay(v, v + 3, &distance, hit)) return CommandResult{true, "no hit"};
        return CommandResult{true, "hit at distance " + number(distance) + ", point " + vec(Vec3d{hit[0], hit[1], hit[2]})};
    });
}

}  // namespace

std::string label(CoreNode* node) {
    const std::string name = on(node).getName();
    return name.empty() ? std::string("(gone)") : "\"" + name + "\"";
}

util::CMesh cubeMesh() {
    util::CMesh m;
    m.setPointCount(8);
    for (int i = 0; i < 8; ++i) m.setPoint(i, (i & 1) ? 0.5 : -0.5, (i & 2) ? 0.5 : -0.5, (i & 4) ? 0.5 : -0.5);
    static const int faces[6][4] = {{0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 5, 7, 3}};
    m.setPolygonCount(12);
    for (int f = 0; f < 6; ++f) {
        m.setPolygon(2 * f, faces[f][0], faces[f][1], faces[f][2]);
        m.setPolygon(2 * f + 1, faces[f][0], faces[f][2], faces[f][3]);
    }
    return m;
}

util::CMesh gridMesh(int n) {
    util::CMesh m;
    const int side = n + 1;
    m.setPointCount(side * side);
    for (int z = 0; z < side; ++z)
        for (int x = 0; x < side; ++x) m.setPoint(z * side + x, x, 0, z);
    m.setPolygonCount(2 * n * n);
    int t = 0;
    for (int z = 0; z < n; ++z) {
        for (int x = 0; x < n; ++x) {
            const int a = z * side + x;
            m.setPolygon(t++, a, a + 1, a + side + 1);
            m.setPolygon(t++, a, a + side + 1, a + side);
        }
    }
    return m;
}

std::vector<VerbEntry> nodeVerbs() {
    return {
        {"camera", "NAME [PARENT] - makes a camera (under PARENT's object)", &camera},
        {"mesh", "NAME [PARENT] [cube|grid N] [size S] - makes a mesh, a unit cube by default, S object units a unit", &mesh},
        {"nodes", "[TOOL] - lists the adaptor's live nodes (or TOOL's): label, master, deleted", &nodes},
        {"children", "NAME - lists the node's children", &children},
        {"parent", "NAME - names the node's parent", &parent},
        {"select", "NAME... - selects; more than one name selects them as a group", &select},
        {"hide", "NAME - hides the object in editor and render", &hide},
        {"show", "NAME - shows the object in editor and render", &show},
        {"rename", "NAME NEW - relabels the object", &rename},
        {"reparent", "NAME [PARENT] - moves the object under PARENT (or to the top), keeping its place", &reparent},
        {"clone", "NAME [deep] - clones the object (deep: with its children)", &clone},
        {"delete", "NAME [keep] - deletes the node and its object (keep: only the node)", &remove},
        {"move", "NAME X Y Z - puts the object at X Y Z (the core's axes and units)", &move},
        {"rotate", "NAME H P B - turns the object to heading, pitch, bank in degrees", &rotate},
        {"pose", "NAME [SECONDS] - prints the local and global matrix as the core sees them", &pose},
        {"fov", "NAME [DEGREES] - reads or sets a camera's field of view", &fov},
        {"shape", "NAME [INDEX] - length, kind, segment, points and tangents of a spline at 0, 0.5 and 1", &shape},
        {"meshinfo", "NAME - counts and bounds of the object's mesh", &meshinfo},
        {"ray", "NAME OX OY OZ DX DY DZ - casts a ray at the object's mesh", &ray},
    };
}

}  // namespace tvr::plr::core::sample
