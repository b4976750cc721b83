// Measures of linear splines: length, arc-length ("uniform") to vertex
// ("natural") parameters, points and unit tangents.
//
// A segment of n points has n - 1 edges when open and n when closed (the last
// point joins the first). The natural parameter t in [0, 1] runs over the
// edges at equal steps whatever their lengths; the uniform parameter runs over
// the arc length. Parameters outside [0, 1] are clamped.
#pragma once

#include <cstddef>
#include <vector>

#include "embedded_host/geometry/geometry_math.h"

namespace tvr::plr::embedded::geometry {

class LinearSegment {
public:
    LinearSegment() = default;
    LinearSegment(std::vector<Vec3> points, bool closed);

    std::size_t pointCount() const { return points_.size(); }
    std::size_t edgeCount() const;
    bool closed() const { return closed_; }

    double length() const { return cumulative_.empty() ? 0.0 : cumulative_.back(); }
    double uniformToNatural(double u) const;
    double naturalToUniform(double t) const;
    // (0, 0, 0) for a segment without points.
    Vec3 point(double t) const;
    // Unit direction of the edge at t; at a shared vertex the following edge
    // counts, at t = 1 the last one. Edges of zero length borrow the direction
    // of the nearest edge that has one; (0, 0, 0) when no edge does.
    Vec3 tangent(double t) const;

private:
    // The edge that holds natural parameter t, and the fraction along it.
    std::size_t edgeAt(double t, double* fraction) const;
    Vec3 edgeVector(std::size_t edge) const;

    std::vector<Vec3> points_;
    bool closed_ = false;
    std::vector<double> cumulative_;  // arc length at each edge start, plus the total
};

}  // namespace tvr::plr::embedded::geometry
