#include "hostsim/object_inspection.h"

#include <cstdio>
#include <sstream>

namespace hostsim {

namespace {

std::string number(double v) {
    if (v == 0.0) v = 0.0;  // no "-0"
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.6g", v);
    return buffer;
}

std::string vec(const Vector& v) { return "(" + number(v.x) + ", " + number(v.y) + ", " + number(v.z) + ")"; }

std::string typeName(LONG type) {
    switch (type) {
    case Opolygon: return "polygon object";
    case Ospline: return "spline object";
    case Ocamera: return "camera";
    case Onull: return "null object";
    default: return "object";
    }
}

std::string modeName(LONG mode) {
    switch (mode) {
    case MODE_ON: return "on";
    case MODE_OFF: return "off";
    default: return "default";
    }
}

std::string trackName(const DescID& id) {
    const char* parameter = nullptr;
    switch (id[0].id) {
    case ID_BASEOBJECT_POSITION: parameter = "position"; break;
    case ID_BASEOBJECT_ROTATION: parameter = "rotation"; break;
    case ID_BASEOBJECT_SCALE: parameter = "scale"; break;
    case CAMERAOBJECT_FOV: return "field of view";
    case CAMERAOBJECT_APERTURE: return "lens value";
    default: break;
    }
    std::string name = parameter ? parameter : "parameter " + std::to_string(id[0].id);
    if (id.GetDepth() > 1) {
        const LONG c = id[1].id;
        name += c == VECTOR_X ? ".x" : c == VECTOR_Y ? ".y" : c == VECTOR_Z ? ".z" : "." + std::to_string(c);
    }
    return name;
}

Real realParameter(BaseObject* op, LONG id) {
    GeData value;
    op->GetParameter(DescID(DescLevel(id, DTYPE_REAL, 0)), value, 0);
    return value.GetReal();
}

}  // namespace

std::string describeObject(BaseObject* op, bool selected) {
    std::ostringstream out;
    out << "type " << op->GetType() << " (" << typeName(op->GetType()) << ")\n";
    out << "name \"" << op->GetName().ToStd() << "\"\n";
    BaseObject* up = op->GetUp();
    out << "parent " << (up ? "\"" + up->GetName().ToStd() + "\"" : std::string("(top level)")) << "\n";
    const Matrix mg = op->GetMg();
    out << "global matrix off " << vec(mg.off) << " v1 " << vec(mg.v1) << " v2 " << vec(mg.v2) << " v3 " << vec(mg.v3)
        << "\n";
    out << "position " << vec(op->GetPos()) << " rotation " << vec(op->GetRot()) << " scale " << vec(op->GetScale())
        << "\n";
    out << "editor " << modeName(op->GetEditorMode()) << ", render " << modeName(op->GetRenderMode()) << ", "
        << (selected ? "selected" : "not selected") << "\n";
    if (op->GetType() == Ocamera) {
        const Real fov = realParameter(op, CAMERAOBJECT_FOV);
        out << "field of view " << number(fov) << " rad (" << number(fov * 180.0 / 3.141592653589793)
            << " degrees), lens value " << number(realParameter(op, CAMERAOBJECT_APERTURE)) << "\n";
    }
    if (op->GetType() == Opolygon) {
        auto* poly = static_cast<PolygonObject*>(op);
        out << poly->GetPointCount() << " points, " << poly->GetPolygonCount() << " polygons\n";
    } else if (op->GetType() == Ospline) {
        out << static_cast<SplineObject*>(op)->GetPointCount() << " points\n";
    }
    out << "tags:";
    int tags = 0;
    for (BaseTag* tag = op->GetFirstTag(); tag; tag = tag->GetNext(), ++tags) {
        out << (tags ? ", " : " ") << tag->GetType();
        if (tag->GetType() == Tuvw) out << " (uvw, " << static_cast<UVWTag*>(tag)->GetDataCount() << " polygons)";
    }
    out << (tags ? "\n" : " none\n");
    out << "tracks:";
    int tracks = 0;
    for (CTrack* track = op->GetFirstCTrack(); track; track = track->GetNext(), ++tracks) {
        CCurve* curve = track->GetCurve(CCURVE_CURVE, false);
        const LONG keys = curve ? curve->GetKeyCount() : 0;
        out << (tracks ? ", " : " ") << trackName(track->GetDescriptionID()) << " " << keys
            << (keys == 1 ? " key" : " keys");
    }
    out << (tracks ? "\n" : " none\n");
    return out.str();
}

}  // namespace hostsim
