#include "nodes/shape_snapshot.h"

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

using tvr::util::Vec3d;

// In the core's axes: the third coordinate negated.
Vec3d coreVector(const Vector& v) { return Vec3d{v.x, v.y, -static_cast<double>(v.z)}; }

// Samples segment 0 of the spline at a uniform offset.
template <class Sample>
Vec3d sampleAt(SplineObject* spline, double offset, Sample sample) {
    if (!spline) return Vec3d{};
    spline->InitLength(0);
    const Real natural = spline->UniformToNatural(static_cast<Real>(offset));
    const Vector v = sample(spline, natural);
    spline->FreeLength();
    return coreVector(v);
}

}  // namespace

std::intptr_t CC4DNode::CC4DSnapshot_Shape::executeExtension(int, void*) { return 0; }

std::vector<int>& CC4DNode::CC4DSnapshot_Shape::getSupportedExtensions(std::vector<int>& codes) {
    codes.clear();
    return codes;
}

SplineObject* CC4DNode::CC4DSnapshot_Shape::spline() {
    BaseObject* op = node ? node->object() : nullptr;
    return op ? op->GetRealSpline() : nullptr;
}

double CC4DNode::CC4DSnapshot_Shape::getLength() {
    SplineObject* s = spline();
    if (!s) return 0.0;
    s->InitLength(0);
    const double length = s->GetLength();
    s->FreeLength();
    return length;
}

Vec3d CC4DNode::CC4DSnapshot_Shape::getPoint(double offset) {
    return sampleAt(spline(), offset, [](SplineObject* s, Real t) { return s->GetSplinePoint(t, 0); });
}

Vec3d CC4DNode::CC4DSnapshot_Shape::getTangent(double offset) {
    return sampleAt(spline(), offset, [](SplineObject* s, Real t) { return s->GetSplineTangent(t, 0); });
}

}  // namespace tvr::plr::adaptor::cinema4d
