#include "nodes/transform_snapshot.h"

#include <cmath>

#include "nodes/core_axes.h"
#include "nodes/node_support.h"
#include "nodes/node_tracks.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Matrix4d;

namespace {

// The frame rate tracks are evaluated at: the adaptor's, as a whole number.
LONG trackFps() { return static_cast<LONG>(std::trunc(theAdaptor()->getFrameRate())); }

// The local matrix from the transform tracks; a missing component counts as 0.
Matrix composeFromTracks(const TrackSet& nine, BaseDocument* doc, const BaseTime& time) {
    const LONG fps = trackFps();
    Real v[9] = {};
    for (std::size_t i = 0; i < 9; ++i) {
        if (nine[i]) v[i] = nine[i]->GetValue(doc, time, fps);
    }
    return composeTransform(Vector(v[0], v[1], v[2]), Vector(v[3], v[4], v[5]), Vector(v[6], v[7], v[8]));
}

// Z·m·Z: the third axis negated on both sides.
Matrix4d flipped(const Matrix4d& m) { return axisFlip() * m * axisFlip(); }

bool toHostOrLog(const Matrix4d& m, Matrix& out, const char* operation) {
    if (toHostMatrix(m, out)) return true;
    logLine(std::string(operation) + ": the matrix is not finite; the object keeps its placement",
            tvr::util::Log::Error);
    return false;
}

}  // namespace

Matrix evaluatedLocalMatrix(BaseObject* op, const BaseTime& time) {
    const std::vector<DescID>& ids = nodeTrackIds();
    if (!op->FindCTrack(ids[0])) return op->GetMl();  // no position X track: not animated
    return composeFromTracks(foundTracks(op, ids, 9), GetActiveDocument(), time);
}

std::intptr_t CC4DNode::CC4DSnapshot::executeExtension(int, void*) { return 0; }

std::vector<int>& CC4DNode::CC4DSnapshot::getSupportedExtensions(std::vector<int>& codes) {
    codes.clear();
    return codes;
}

void CC4DNode::CC4DSnapshot::take(const CC4DNode& node, BaseObject* op, double atSeconds) {
    inUse = true;
    object = op;
    time = hostTime(atSeconds);
    seconds = atSeconds;
    objectLink = node.link();
    tracks = node.trackList();
    trackIds = &node.trackIdList();
}

BaseObject* CC4DNode::CC4DSnapshot::resolve() {
    object = resolveObject(objectLink);
    return object;
}

Matrix CC4DNode::CC4DSnapshot::localFromTracks(BaseObject* op) {
    return composeFromTracks(checkedTracks(op, tracks, *trackIds, 9), document, time);
}

void CC4DNode::CC4DSnapshot::keyTransform(BaseObject* op) {
    if (undoReplayInProgress() || tracks.empty()) return;
    cinema4d::keyTransform(op, checkedTracks(op, tracks, *trackIds, 9), time);
}

void CC4DNode::CC4DSnapshot::setLocalMatrix(const Matrix4d& m) {
    if (undoReplayInProgress()) return;
    BaseObject* op = resolve();
    if (!op) return;
    Matrix4d local = flipped(m);
    if (!op->GetUp()) local = unitScale() * local;
    Matrix host;
    if (!toHostOrLog(local, host, "setLocalMatrix")) return;
    op->SetMl(host, true);
    if (theAdaptor()->recording) keyTransform(op);
}

Matrix4d CC4DNode::CC4DSnapshot::getLocalMatrix() {
    BaseObject* op = resolve();
    if (!op) return Matrix4d();
    const Matrix local = tracks.empty() ? op->GetMl() : localFromTracks(op);
    Matrix4d result = flipped(fromHostMatrix(local));
    if (!op->GetUp()) result = unitScale().inverse() * result;
    return result;
}

Matrix4d CC4DNode::CC4DSnapshot::getGlobalMatrix() {
    BaseObject* op = resolve();
    if (!op) return Matrix4d();
    // The object's own tracks are the node's when it has them: the same
    // tracks an id lookup would find, without looking up nine ids.
    Matrix own;
    if (tracks.empty()) {
        own = evaluatedLocalMatrix(op, time);
    } else {
        const TrackSet mine = checkedTracks(op, tracks, *trackIds, 9);
        own = mine[0] ? composeFromTracks(mine, GetActiveDocument(), time) : op->GetMl();
    }
    Matrix4d global = fromHostMatrix(own);
    for (BaseObject* p = op->GetUp(); p; p = p->GetUp())
        global = fromHostMatrix(evaluatedLocalMatrix(p, time)) * global;
    return unitScale().inverse() * flipped(global);
}

void CC4DNode::CC4DSnapshot::setGlobalMatrix(const Matrix4d& m) {
    if (undoReplayInProgress()) return;
    BaseObject* op = resolve();
    if (!op) return;
    Matrix host;
    if (!toHostOrLog(unitScale() * flipped(m), host, "setGlobalMatrix")) return;
    op->SetMg(host, true);
    if (theAdaptor()->recording) keyTransform(op);
}

}  // namespace tvr::plr::adaptor::cinema4d
