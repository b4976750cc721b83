#include "embedded_host/geometry/geometry_ray.h"

#include <algorithm>
#include <cmath>

namespace tvr::plr::embedded::geometry {

RayMesh::RayMesh(std::vector<Vec3> points, std::vector<Quad> polygons) {
    const auto valid = [&](std::int32_t i) { return i >= 0 && static_cast<std::size_t>(i) < points.size(); };
    triangles_.reserve(polygons.size());
    for (std::size_t f = 0; f < polygons.size(); ++f) {
        const Quad& q = polygons[f];
        if (!valid(q.a) || !valid(q.b) || !valid(q.c)) continue;
        const auto face = static_cast<std::int32_t>(f);
        triangles_.push_back({face, 0, points[q.a], points[q.b], points[q.c]});
        if (q.d != q.c && valid(q.d)) triangles_.push_back({face, 1, points[q.a], points[q.c], points[q.d]});
    }
}

std::vector<RayHit> RayMesh::intersect(const Vec3& origin, const Vec3& direction, double maxLength) const {
    std::vector<RayHit> hits;
    const double dirLength = length(direction);
    if (!(dirLength > 0.0) || !(maxLength > 0.0)) return hits;
    const Vec3 dir = direction * (1.0 / dirLength);
    for (const Triangle& tri : triangles_) {
        // Moeller-Trumbore, two-sided.
        const Vec3 e1 = tri.p1 - tri.p0;
        const Vec3 e2 = tri.p2 - tri.p0;
        const Vec3 p = cross(dir, e2);
        const double det = dot(e1, p);
        const double scale = length(e1) * length(e2);
        if (!(std::fabs(det) > 1e-12 * scale)) continue;  // parallel or degenerate
        const double inv = 1.0 / det;
        const Vec3 s = origin - tri.p0;
        const double u = dot(s, p) * inv;
        if (u < 0.0 || u > 1.0) continue;
        const Vec3 q = cross(s, e1);
        const double v = dot(dir, q) * inv;
        if (v < 0.0 || u + v > 1.0) continue;
        const double t = dot(e2, q) * inv;
        if (t < 0.0 || t > maxLength) continue;
        RayHit hit;
        hit.faceId = tri.face;
        hit.triFaceId = 2 * tri.face + tri.half;
        hit.distance = t;
        hit.position = origin + dir * t;
        hit.barycentric = {1.0 - u - v, u, v};
        const Vec3 n = cross(e1, e2);
        hit.faceNormal = n * (1.0 / length(n));
        hit.backface = dot(n, dir) > 0.0;
        hits.push_back(hit);
    }
    std::stable_sort(hits.begin(), hits.end(),
                     [](const RayHit& l, const RayHit& r) { return l.distance < r.distance; });
    // A ray through the diagonal of a quadrangle touches both halves at one
    // point; report that polygon once.
    hits.erase(std::unique(hits.begin(), hits.end(),
                           [](const RayHit& l, const RayHit& r) {
                               return l.faceId == r.faceId && std::fabs(l.distance - r.distance) <= 1e-9 * (1.0 + l.distance);
                           }),
               hits.end());
    return hits;
}

}  // namespace tvr::plr::embedded::geometry
