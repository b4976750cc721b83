// Ray tests against a polygon mesh in its own (object) space.
//
// Polygons are (a, b, c, d) point indices; a triangle repeats c as d, a
// quadrangle is tested as the triangles (a, b, c) and (a, c, d). Polygons
// naming a point that does not exist are skipped, so a half-edited mesh can
// be tested without harm.
#pragma once

#include <cstdint>
#include <vector>

#include "embedded_host/geometry/geometry_math.h"

namespace tvr::plr::embedded::geometry {

struct Quad {
    std::int32_t a = 0, b = 0, c = 0, d = 0;
};

struct RayHit {
    std::int32_t faceId = 0;     // polygon index
    std::int32_t triFaceId = 0;  // 2 * polygon + (0 first, 1 second triangle of a quadrangle)
    double distance = 0.0;       // along the normalised direction
    Vec3 position;
    Vec3 barycentric;            // weights of the triangle's three corners
    Vec3 faceNormal;             // unit normal of the hit triangle, (b - a) x (c - a)
    bool backface = false;       // the ray runs along the normal
};

class RayMesh {
public:
    RayMesh() = default;
    RayMesh(std::vector<Vec3> points, std::vector<Quad> polygons);

    std::size_t triangleCount() const { return triangles_.size(); }

    // Every hit within [0, maxLength] of the origin, nearest first. A zero
    // direction or a non-positive length hits nothing.
    std::vector<RayHit> intersect(const Vec3& origin, const Vec3& direction, double maxLength) const;

private:
    struct Triangle {
        std::int32_t face;
        std::int32_t half;
        Vec3 p0, p1, p2;
    };
    std::vector<Triangle> triangles_;
};

}  // namespace tvr::plr::embedded::geometry
