#include "hostsim/scene_picture.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <vector>

#include "hostsim/svg_text.h"

namespace hostsim {

namespace {

constexpr double kMargin = 40.0;
// A picture of a million polygons helps nobody and weighs megabytes.
constexpr LONG kMaxDrawnPolygons = 20000;

void eachObject(BaseObject* op, const std::function<void(BaseObject*)>& visit) {
    for (; op; op = op->GetNext()) {
        visit(op);
        eachObject(op->GetDown(), visit);
    }
}

const char* kindOf(BaseObject* op) {
    switch (op->GetType()) {
    case Ocamera: return "camera";
    case Opolygon: return "mesh";
    case Ospline: return "spline";
    case Onull: return "null";
    default: return "object";
    }
}

double fovOf(BaseObject* camera) {
    const double fov = camera->GetDataInstance()->GetReal(CAMERAOBJECT_FOV);
    // A lens the host would not accept is drawn with the default one.
    return std::isfinite(fov) && fov > 1e-4 && fov < 3.1 ? fov : double(CAMERAOBJECT_FOV_DEFAULT);
}

// Every point of the scene in world space: origins, mesh and spline points.
std::vector<Vector> worldPoints(BaseDocument* doc) {
    std::vector<Vector> points;
    eachObject(doc->GetFirstObject(), [&](BaseObject* op) {
        const Matrix mg = op->GetMg();
        points.push_back(mg.off);
        if (op->GetType() == Opolygon || op->GetType() == Ospline) {
            const auto* pointObject = static_cast<PointObject*>(op);
            const Vector* p = pointObject->GetPointR();
            for (LONG i = 0; p && i < pointObject->GetPointCount(); ++i) points.push_back(mg * p[i]);
        }
    });
    return points;
}

class Projector {
public:
    // From a camera: a pinhole whose horizontal angle is the camera's field of view.
    static Projector fromCamera(BaseObject* camera) {
        Projector p;
        p.perspective_ = true;
        p.toCamera_ = !camera->GetMg();
        p.focal_ = (kPictureWidth / 2.0) / std::tan(fovOf(camera) / 2.0);
        return p;
    }

    // From the front, looking along +Z, fitted to the points given.
    static Projector front(const std::vector<Vector>& points) {
        Projector p;
        double minX = 0, maxX = 0, minY = 0, maxY = 0;
        bool any = false;
        for (const Vector& v : points) {
            if (!std::isfinite(v.x) || !std::isfinite(v.y)) continue;
            if (!any) {
                minX = maxX = v.x;
                minY = maxY = v.y;
                any = true;
            }
            minX = std::min(minX, double(v.x));
            maxX = std::max(maxX, double(v.x));
            minY = std::min(minY, double(v.y));
            maxY = std::max(maxY, double(v.y));
        }
        const double dx = maxX - minX, dy = maxY - minY;
        const double sx = dx > 1e-9 ? (kPictureWidth - 2 * kMargin) / dx : std::numeric_limits<double>::infinity();
        const double sy = dy > 1e-9 ? (kPictureHeight - 2 * kMargin) / dy : std::numeric_limits<double>::infinity();
        p.scale_ = std::min(sx, sy);
        if (!std::isfinite(p.scale_)) p.scale_ = 1.0;
        p.centerX_ = (minX + maxX) / 2;
        p.centerY_ = (minY + maxY) / 2;
        return p;
    }

    // False for a point behind the camera (or not a number).
    bool project(const Vector& world, double& x, double& y) const {
        if (perspective_) {
            const Vector c = toCamera_ * world;
            if (!(c.z > 1e-4)) return false;
            x = kPictureWidth / 2.0 + focal_ * c.x / c.z;
            y = kPictureHeight / 2.0 - focal_ * c.y / c.z;
        } else {
            x = kPictureWidth / 2.0 + scale_ * (world.x - centerX_);
            y = kPictureHeight / 2.0 - scale_ * (world.y - centerY_);
        }
        return std::isfinite(x) && std::isfinite(y);
    }

private:
    bool perspective_ = false;
    Matrix toCamera_;
    double focal_ = 1.0;
    double scale_ = 1.0, centerX_ = 0.0, centerY_ = 0.0;
};

class Painter {
public:
    Painter(const Projector& projector, std::ostream& out) : projector_(projector), out_(out) {}

    void line(const Vector& a, const Vector& b) {
        double x1, y1, x2, y2;
        // An edge with an end behind the camera is left out rather than clipped.
        if (!projector_.project(a, x1, y1) || !projector_.project(b, x2, y2)) return;
        out_ << "<line x1=\"" << svg::num(x1) << "\" y1=\"" << svg::num(y1) << "\" x2=\"" << svg::num(x2)
             << "\" y2=\"" << svg::num(y2) << "\"/>\n";
    }

private:
    const Projector& projector_;
    std::ostream& out_;
};

void drawMesh(PolygonObject* mesh, const Matrix& mg, Painter& paint) {
    const Vector* p = mesh->GetPointR();
    const CPolygon* polys = mesh->GetPolygonR();
    const LONG points = mesh->GetPointCount();
    if (!p || !polys) return;
    const LONG count = std::min(mesh->GetPolygonCount(), kMaxDrawnPolygons);
    const auto at = [&](LONG i) { return mg * p[i]; };
    for (LONG i = 0; i < count; ++i) {
        const CPolygon& q = polys[i];
        const LONG corners[4] = {q.a, q.b, q.c, q.d};
        const int n = q.c == q.d ? 3 : 4;
        bool valid = true;
        for (int k = 0; k < n; ++k) valid = valid && corners[k] >= 0 && corners[k] < points;
        if (!valid) continue;  // a broken polygon names no point we could draw
        for (int k = 0; k < n; ++k) paint.line(at(corners[k]), at(corners[(k + 1) % n]));
    }
}

void drawSpline(SplineObject* spline, const Matrix& mg, Painter& paint) {
    const Vector* p = spline->GetPointR();
    const LONG points = spline->GetPointCount();
    if (!p || points <= 0) return;
    std::vector<Segment> segments;
    if (spline->GetSegmentCount() > 0 && spline->GetSegmentR()) {
        segments.assign(spline->GetSegmentR(), spline->GetSegmentR() + spline->GetSegmentCount());
    } else {
        segments.push_back(Segment{points, spline->IsClosed()});
    }
    LONG start = 0;
    for (const Segment& s : segments) {
        const LONG end = std::min(points, start + std::max<LONG>(s.cnt, 0));
        for (LONG i = start; i + 1 < end; ++i) paint.line(mg * p[i], mg * p[i + 1]);
        if (s.closed && end - start > 2) paint.line(mg * p[end - 1], mg * p[start]);
        start = end;
    }
}

void drawCone(BaseObject* camera, const Matrix& mg, double length, Painter& paint) {
    const double t = std::tan(fovOf(camera) / 2.0);
    const Vector x = !mg.v1, y = !mg.v2, z = !mg.v3;
    const Vector tip = mg.off;
    const Real halfW = Real(length * t), halfH = Real(length * t * kPictureHeight / kPictureWidth);
    const Vector centre = tip + z * Real(length);
    const Vector corners[4] = {centre + x * halfW + y * halfH, centre - x * halfW + y * halfH,
                               centre - x * halfW - y * halfH, centre + x * halfW - y * halfH};
    for (int k = 0; k < 4; ++k) {
        paint.line(tip, corners[k]);
        paint.line(corners[k], corners[(k + 1) % 4]);
    }
}

BaseObject* viewingCamera(BaseDocument* doc) {
    BaseObject* active = doc->GetActiveObject();
    if (active && active->GetType() == Ocamera) return active;
    BaseObject* first = nullptr;
    eachObject(doc->GetFirstObject(), [&](BaseObject* op) {
        if (!first && op->GetType() == Ocamera) first = op;
    });
    return first;
}

// A tenth of the scene's size: cones long enough to see, short enough not to cover it.
double coneLength(const std::vector<Vector>& points) {
    double extent = 0;
    for (const Vector& a : points) {
        for (const Vector& b : {points.front(), points.back()}) {
            const double d = Len(a - b);
            if (std::isfinite(d)) extent = std::max(extent, d);
        }
    }
    return extent > 0 ? extent / 10 : 10.0;
}

}  // namespace

BaseObject* findObjectByName(BaseDocument* doc, const std::string& name) {
    BaseObject* found = nullptr;
    if (!doc) return nullptr;
    eachObject(doc->GetFirstObject(), [&](BaseObject* op) {
        if (!found && op->GetName().ToStd() == name) found = op;
    });
    return found;
}

std::string drawScene(BaseDocument* doc) {
    const std::vector<Vector> points = worldPoints(doc);
    BaseObject* camera = viewingCamera(doc);
    const Projector projector = camera ? Projector::fromCamera(camera) : Projector::front(points);
    const double cone = points.empty() ? 10.0 : coneLength(points);

    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kPictureWidth << "\" height=\"" << kPictureHeight
        << "\" viewBox=\"0 0 " << kPictureWidth << " " << kPictureHeight << "\" data-view=\""
        << (camera ? "camera" : "front") << "\"";
    if (camera) out << " data-camera=\"" << svg::escape(camera->GetName().ToStd()) << "\"";
    out << ">\n<rect width=\"100%\" height=\"100%\" fill=\"#fbfbf8\"/>\n"
        << "<text x=\"8\" y=\"16\" font-family=\"sans-serif\" font-size=\"12\" fill=\"#666\">"
        << (camera ? "seen from camera " + svg::escape(camera->GetName().ToStd()) : std::string("seen from the front"))
        << "</text>\n";
    Painter paint(projector, out);
    eachObject(doc->GetFirstObject(), [&](BaseObject* op) {
        const Matrix mg = op->GetMg();
        const std::string kind = kindOf(op);
        const char* colour = kind == "mesh" ? "#3a7d44" : kind == "spline" ? "#c05a00" : kind == "camera" ? "#2f5fb3"
                                                                                                          : "#777";
        out << "<g class=\"object\" data-name=\"" << svg::escape(op->GetName().ToStd()) << "\" data-kind=\"" << kind
            << "\"";
        double x = 0, y = 0;
        const bool visible = projector.project(mg.off, x, y);
        if (visible) out << " data-x=\"" << svg::num(x) << "\" data-y=\"" << svg::num(y) << "\"";
        out << " stroke=\"" << colour << "\" fill=\"none\" stroke-width=\"1\">\n";
        if (kind == "mesh") drawMesh(static_cast<PolygonObject*>(op), mg, paint);
        if (kind == "spline") drawSpline(static_cast<SplineObject*>(op), mg, paint);
        if (kind == "camera" && op != camera) drawCone(op, mg, cone, paint);
        if (visible) {
            out << "<circle cx=\"" << svg::num(x) << "\" cy=\"" << svg::num(y) << "\" r=\"2.5\" fill=\"" << colour
                << "\"/>\n<text x=\"" << svg::num(x + 5) << "\" y=\"" << svg::num(y - 5)
                << "\" font-family=\"sans-serif\" font-size=\"11\" stroke=\"none\" fill=\"#222\">"
                << svg::escape(op->GetName().ToStd()) << "</text>\n";
        }
        out << "</g>\n";
    });
    out << "</svg>\n";
    return out.str();
}

}  // namespace hostsim
