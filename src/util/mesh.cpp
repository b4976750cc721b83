#include "util/mesh.h"

#include <new>
#include <stdexcept>

namespace tvr::util {

namespace {

template <class Vector>
bool resizeTo(Vector& v, std::int64_t count) {
    if (count < 0) {
        return false;
    }
    try {
        v.resize(static_cast<std::size_t>(count));
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}

bool inRange(std::int32_t i, std::size_t size) { return i >= 0 && static_cast<std::size_t>(i) < size; }

bool setVec(std::vector<Vec3d>& v, std::int32_t i, double x, double y, double z) {
    if (!inRange(i, v.size())) {
        return false;
    }
    v[static_cast<std::size_t>(i)] = Vec3d{x, y, z};
    return true;
}

Vec3d getVec(const std::vector<Vec3d>& v, std::int32_t i) {
    return inRange(i, v.size()) ? v[static_cast<std::size_t>(i)] : Vec3d{};
}

bool setTriple(std::vector<std::int32_t>& v, std::int32_t i, std::int32_t a, std::int32_t b, std::int32_t c) {
    if (i < 0 || static_cast<std::size_t>(i) >= v.size() / 3) {
        return false;
    }
    const std::size_t at = 3 * static_cast<std::size_t>(i);
    v[at] = a;
    v[at + 1] = b;
    v[at + 2] = c;
    return true;
}

bool getTriple(const std::vector<std::int32_t>& v, std::int32_t i, std::int32_t& a, std::int32_t& b, std::int32_t& c) {
    if (i < 0 || static_cast<std::size_t>(i) >= v.size() / 3) {
        return false;
    }
    const std::size_t at = 3 * static_cast<std::size_t>(i);
    a = v[at];
    b = v[at + 1];
    c = v[at + 2];
    return true;
}

}  // namespace

CMesh& CMesh::operator=(const CMesh& other) {
    if (this != &other) {
        points = other.points;
        uvw = other.uvw;
        polygons = other.polygons;
        uvIndices = other.uvIndices;
    }
    return *this;
}

bool CMesh::setPointCount(std::int32_t count) { return resizeTo(points, count); }

bool CMesh::setPolygonCount(std::int32_t count) {
    if (count < 0) {
        return false;
    }
    // Room for both lists first: once it is there, neither resize can fail,
    // so a failure leaves both as they were without a copy to restore from.
    const auto size = 3 * static_cast<std::size_t>(count);
    try {
        polygons.reserve(size);
        uvIndices.reserve(size);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    polygons.resize(size);
    uvIndices.resize(size);
    return true;
}

bool CMesh::setUVCount(std::int32_t count) { return resizeTo(uvw, count); }

bool CMesh::setPoint(std::int32_t i, double x, double y, double z) { return setVec(points, i, x, y, z); }

bool CMesh::setPolygon(std::int32_t i, std::int32_t a, std::int32_t b, std::int32_t c) {
    return setTriple(polygons, i, a, b, c);
}

bool CMesh::setUV(std::int32_t i, double u, double v, double w) { return setVec(uvw, i, u, v, w); }

bool CMesh::setPolygonUV(std::int32_t i, std::int32_t a, std::int32_t b, std::int32_t c) {
    return setTriple(uvIndices, i, a, b, c);
}

Vec3d CMesh::getPoint(std::int32_t i) const { return getVec(points, i); }

Vec3d CMesh::getUV(std::int32_t i) const { return getVec(uvw, i); }

bool CMesh::getPolygon(std::int32_t i, std::int32_t& a, std::int32_t& b, std::int32_t& c) const {
    return getTriple(polygons, i, a, b, c);
}

bool CMesh::getPolygonUV(std::int32_t i, std::int32_t& a, std::int32_t& b, std::int32_t& c) const {
    return getTriple(uvIndices, i, a, b, c);
}

}  // namespace tvr::util
