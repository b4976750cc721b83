#include "embedded_host/geometry/geometry_spline.h"

#include <algorithm>
#include <cmath>

namespace tvr::plr::embedded::geometry {

namespace {
double clamp01(double t) {
    if (!(t > 0.0)) return 0.0;  // NaN lands on 0 too
    return t < 1.0 ? t : 1.0;
}
}  // namespace

LinearSegment::LinearSegment(std::vector<Vec3> points, bool closed)
    : points_(std::move(points)), closed_(closed) {
    const std::size_t edges = edgeCount();
    cumulative_.reserve(edges + 1);
    cumulative_.push_back(0.0);
    for (std::size_t e = 0; e < edges; ++e) cumulative_.push_back(cumulative_.back() + geometry::length(edgeVector(e)));
}

std::size_t LinearSegment::edgeCount() const {
    const std::size_t n = points_.size();
    if (n < 2) return 0;
    return closed_ ? n : n - 1;
}

Vec3 LinearSegment::edgeVector(std::size_t edge) const {
    return points_[(edge + 1) % points_.size()] - points_[edge];
}

std::size_t LinearSegment::edgeAt(double t, double* fraction) const {
    const std::size_t edges = edgeCount();
    const double x = clamp01(t) * static_cast<double>(edges);
    std::size_t e = static_cast<std::size_t>(std::floor(x));
    if (e >= edges) e = edges - 1;
    *fraction = x - static_cast<double>(e);
    return e;
}

double LinearSegment::uniformToNatural(double u) const {
    u = clamp01(u);
    const std::size_t edges = edgeCount();
    const double total = length();
    // An infinite or NaN length (points far out or not numbers) has no arc to measure along.
    if (edges == 0 || !(total > 0.0) || !std::isfinite(total)) return u;
    const double s = u * total;
    if (s >= total) return 1.0;
    // First edge end beyond s: that edge has positive length and holds s.
    const auto it = std::upper_bound(cumulative_.begin(), cumulative_.end(), s);
    const std::size_t e = static_cast<std::size_t>(it - cumulative_.begin()) - 1;
    const double f = (s - cumulative_[e]) / (cumulative_[e + 1] - cumulative_[e]);
    return (static_cast<double>(e) + f) / static_cast<double>(edges);
}

double LinearSegment::naturalToUniform(double t) const {
    const double total = length();
    if (edgeCount() == 0 || total <= 0.0) return clamp01(t);
    double f = 0.0;
    const std::size_t e = edgeAt(t, &f);
    return (cumulative_[e] + f * (cumulative_[e + 1] - cumulative_[e])) / total;
}

Vec3 LinearSegment::point(double t) const {
    if (points_.empty()) return {};
    if (edgeCount() == 0) return points_.front();
    double f = 0.0;
    const std::size_t e = edgeAt(t, &f);
    return lerp(points_[e], points_[(e + 1) % points_.size()], f);
}

Vec3 LinearSegment::tangent(double t) const {
    const std::size_t edges = edgeCount();
    if (edges == 0) return {};
    double f = 0.0;
    const std::size_t e = edgeAt(t, &f);
    for (std::size_t step = 0; step < edges; ++step) {
        for (const std::size_t candidate : {e + step, e - step}) {
            if (candidate >= edges) continue;  // also catches the unsigned wrap below 0
            const Vec3 d = edgeVector(candidate);
            const double len = geometry::length(d);
            if (len > 0.0) return d * (1.0 / len);
        }
    }
    return {};
}

}  // namespace tvr::plr::embedded::geometry
