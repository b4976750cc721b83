#include "nodes/core_axes.h"

#include <cmath>
#include <limits>

namespace tvr::plr::adaptor::cinema4d {

const tvr::util::Matrix4d& axisFlip() {
    static const tvr::util::Matrix4d flip = [] {
        tvr::util::Matrix4d m;
        m(2, 2) = -1.0;
        return m;
    }();
    return flip;
}

double unitFactor() {
    BaseContainer* world = GetWorldContainerInstance();
    const LONG unit = world ? world->GetLong(WPREF_UNITS_BASIC) : 0;
    double factor = 1.0;
    if (unit == UNIT_M)
        factor = 1.0;
    else if (unit == UNIT_CM)
        factor = 100.0;
    else if (unit == UNIT_INCH)
        factor = 0.0254;
    return std::trunc(factor);
}

tvr::util::Matrix4d unitScale() {
    const double s = unitFactor();
    tvr::util::Matrix4d m;
    m(0, 0) = s;
    m(1, 1) = s;
    m(2, 2) = s;
    return m;
}

namespace {

void putColumn(tvr::util::Matrix4d& m, int column, const Vector& v, double w) {
    m(0, column) = v.x;
    m(1, column) = v.y;
    m(2, column) = v.z;
    m(3, column) = w;
}

bool fits(double v) {
    return std::isfinite(v) && std::fabs(v) <= static_cast<double>(std::numeric_limits<Real>::max());
}

}  // namespace

tvr::util::Matrix4d fromHostMatrix(const Matrix& m) {
    tvr::util::Matrix4d r;
    putColumn(r, 0, m.v1, 0.0);
    putColumn(r, 1, m.v2, 0.0);
    putColumn(r, 2, m.v3, 0.0);
    putColumn(r, 3, m.off, 1.0);
    return r;
}

bool toHostMatrix(const tvr::util::Matrix4d& m, Matrix& out) {
    for (double v : m.m) {
        if (!fits(v)) return false;
    }
    const auto column = [&m](int c) {
        return Vector(static_cast<Real>(m(0, c)), static_cast<Real>(m(1, c)), static_cast<Real>(m(2, c)));
    };
    out = Matrix(column(3), column(0), column(1), column(2));
    return true;
}

Matrix composeTransform(const Vector& position, const Vector& rotation, const Vector& scale) {
    Matrix m = HPBToMatrix(rotation, ROTATIONORDER_HPB);
    m.v1 *= scale.x;
    m.v2 *= scale.y;
    m.v3 *= scale.z;
    m.off = position;
    return m;
}

}  // namespace tvr::plr::adaptor::cinema4d
