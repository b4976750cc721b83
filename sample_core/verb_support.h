// What the verb files share: reading numbers, writing them, the usual
// answers, the shapes the core builds, and the undo bracket around an edit.
#pragma once

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "sample_core/command_channel.h"
#include "util/matrix.h"
#include "util/mesh.h"

namespace tvr::plr::core::sample {

using Args = std::vector<std::string>;

inline bool parseNumber(const std::string& text, double& out) {
    if (text.empty()) return false;
    char* end = nullptr;
    const double v = std::strtod(text.c_str(), &end);
    if (end != text.c_str() + text.size() || !std::isfinite(v)) return false;
    out = v;
    return true;
}

// Numbers from args[first] on; false when one is not a number.
inline bool parseNumbers(const Args& args, std::size_t first, double* out, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!parseNumber(args[first + i], out[i])) return false;
    }
    return true;
}

inline CommandResult usage(const char* verb, const char* arguments) {
    return commandError(std::string("usage: ") + verb + " " + arguments);
}

inline CommandResult noNode(const std::string& name) { return commandError("no node named \"" + name + "\""); }

inline std::string number(double v) {
    if (v == 0.0) v = 0.0;  // no "-0"
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.6g", v);
    return buffer;
}

inline std::string vec(const util::Vec3d& v) {
    return "(" + number(v.x) + ", " + number(v.y) + ", " + number(v.z) + ")";
}

inline std::string matrixRows(const util::Matrix4d& m) {
    std::string text;
    for (int r = 0; r < 4; ++r) {
        text += "  ";
        for (int c = 0; c < 4; ++c) text += (c ? " " : "") + number(m(r, c));
        text += "\n";
    }
    return text;
}

// The object's name in quotes, or "(gone)".
std::string label(CoreNode* node);

// A unit cube around the origin.
util::CMesh cubeMesh();
// n by n unit squares on the ground, two triangles each.
util::CMesh gridMesh(int n);

// The core's undo bracket around one edit; it stays open for the verb's duration.
class Bracket {
public:
    Bracket(AdaptorInterface* adaptor, const std::string& name) : adaptor_(adaptor) { adaptor_->beginUndo(name); }
    ~Bracket() { adaptor_->acceptUndo(); }
    Bracket(const Bracket&) = delete;
    Bracket& operator=(const Bracket&) = delete;

private:
    AdaptorInterface* adaptor_;
};

}  // namespace tvr::plr::core::sample
