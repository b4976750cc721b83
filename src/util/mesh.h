// Triangle mesh value handed between the adaptor and the core.
#pragma once

#include <cstdint>
#include <vector>

namespace tvr::util {

struct Vec3d {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline bool operator==(const Vec3d& a, const Vec3d& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
inline bool operator!=(const Vec3d& a, const Vec3d& b) { return !(a == b); }

// Points, texture coordinates (uvw) and triangles. `polygons` holds three point
// indices per triangle and `uvIndices` three uvw indices per triangle (one per
// corner); setPolygonCount sizes both.
//
// Setters given an index outside the current size change nothing and answer
// false; counts that are negative or cannot be allocated answer false as well.
class CMesh {
public:
    CMesh() = default;
    CMesh(const CMesh&) = default;
    // Virtual so that a caller holding the core's mesh copies with the core's operation.
    virtual CMesh& operator=(const CMesh& other);
    virtual ~CMesh() = default;

    bool setPointCount(std::int32_t count);
    bool setPolygonCount(std::int32_t count);
    bool setUVCount(std::int32_t count);

    bool setPoint(std::int32_t i, double x, double y, double z);
    bool setPolygon(std::int32_t i, std::int32_t a, std::int32_t b, std::int32_t c);
    bool setUV(std::int32_t i, double u, double v, double w);
    bool setPolygonUV(std::int32_t i, std::int32_t a, std::int32_t b, std::int32_t c);

    std::int32_t getPointCount() const { return static_cast<std::int32_t>(points.size()); }
    std::int32_t getPolygonCount() const { return static_cast<std::int32_t>(polygons.size() / 3); }
    std::int32_t getUVCount() const { return static_cast<std::int32_t>(uvw.size()); }

    // Zero / {0,0,0} for an index outside the size.
    Vec3d getPoint(std::int32_t i) const;
    Vec3d getUV(std::int32_t i) const;
    // Writes the three corner indices of triangle i; false (nothing written) outside.
    bool getPolygon(std::int32_t i, std::int32_t& a, std::int32_t& b, std::int32_t& c) const;
    bool getPolygonUV(std::int32_t i, std::int32_t& a, std::int32_t& b, std::int32_t& c) const;

    std::vector<Vec3d> points;
    std::vector<Vec3d> uvw;
    std::vector<std::int32_t> polygons;
    std::vector<std::int32_t> uvIndices;
};

}  // namespace tvr::util
