#include "nodes/lens_snapshot.h"

#include "nodes/node_support.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

namespace {
constexpr double kDegreesToRadians = 0.017453292519943295;
constexpr std::size_t kFovTrack = 9;
constexpr std::size_t kLensValueTrack = 10;

DescID realParameter(LONG id) { return DescID(DescLevel(id, DTYPE_REAL, 0)); }

Real readReal(BaseObject* op, LONG id) {
    GeData value;
    if (!op || !op->GetParameter(realParameter(id), value, 0)) return 0;
    return value.GetReal();
}
}  // namespace

std::intptr_t CC4DNode::CC4DSnapshot_Lens::executeExtension(int, void*) { return 0; }

std::vector<int>& CC4DNode::CC4DSnapshot_Lens::getSupportedExtensions(std::vector<int>& codes) {
    codes.clear();
    return codes;
}

void CC4DNode::CC4DSnapshot_Lens::take(const CC4DNode& node, BaseObject* op, double atSeconds) {
    inUse = true;
    object = op;
    objectLink = node.link();
    time = hostTime(atSeconds);
    seconds = atSeconds;
    if (!node.trackList().empty()) tracks = node.trackList();
}

BaseObject* CC4DNode::CC4DSnapshot_Lens::resolve() {
    object = resolveObject(objectLink);
    return object;
}

// While recording, a key on the parameter's track; without a recording, or
// when the track is gone, the parameter itself, so no write is lost.
void CC4DNode::CC4DSnapshot_Lens::write(LONG parameter, std::size_t trackIndex, Real value) {
    if (undoReplayInProgress()) return;
    BaseObject* op = resolve();
    if (!op) return;
    if (theAdaptor()->recording && trackIndex < tracks.size()) {
        CTrack* track = op->FindCTrack(nodeTrackIds()[trackIndex]);
        CCurve* curve = track ? track->GetCurve(CCURVE_CURVE, true) : nullptr;
        if (curve) {
            CKey* key = curve->AddKey(time);
            if (key) {
                key->SetInterpolation(curve, CINTERPOLATION_LINEAR);
                key->SetValue(curve, value);
            }
            return;
        }
    }
    op->SetParameter(realParameter(parameter), GeData(value), 0);
}

void CC4DNode::CC4DSnapshot_Lens::setFov(double degrees) {
    write(CAMERAOBJECT_FOV, kFovTrack, static_cast<Real>(degrees * kDegreesToRadians));
}

double CC4DNode::CC4DSnapshot_Lens::getFov() {
    Log entry("Get FOV", Log::Notice);
    const Real radians = readReal(resolve(), CAMERAOBJECT_FOV);
    return static_cast<Real>(static_cast<double>(radians) * 180.0 / 3.141592653589793);
}

std::int32_t CC4DNode::CC4DSnapshot_Lens::getFovType() {
    Log entry("Get FOV = FOV_TYPE_WIDTH (diff. types not implemented)", Log::Notice);
    return tvr::plr::FOV_TYPE_WIDTH;
}

void CC4DNode::CC4DSnapshot_Lens::setFovType(std::int32_t) { Log entry("set FOV type not implemented", Log::Notice); }

void CC4DNode::CC4DSnapshot_Lens::setLensValue(double value) {
    write(CAMERAOBJECT_APERTURE, kLensValueTrack, static_cast<Real>(value));
}

double CC4DNode::CC4DSnapshot_Lens::getLensValue() { return readReal(resolve(), CAMERAOBJECT_APERTURE); }

tvr::util::Matrix4d& CC4DNode::CC4DSnapshot_Lens::getPerspective(tvr::util::Matrix4d& result) {
    result = tvr::util::Matrix4d();
    Log entry("Get Perspective (Not implemented)", Log::Notice);
    return result;
}

}  // namespace tvr::plr::adaptor::cinema4d
