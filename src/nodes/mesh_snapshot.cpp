#include "nodes/mesh_snapshot.h"

#include <string>

#include "nodes/node_support.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::CMesh;
using tvr::util::Log;

namespace {

PolygonObject* polygonsOf(BaseObject* op) {
    return op && op->GetType() == Opolygon ? static_cast<PolygonObject*>(op) : nullptr;
}

bool within(std::int32_t index, std::size_t count) { return index >= 0 && static_cast<std::size_t>(index) < count; }

// Texture coordinates are taken for a triangle only when its point indices
// also lie below the coordinate count; the others get zeros. Kept so.
bool takesCoordinates(const CMesh& mesh, std::size_t first) {
    const std::size_t uvCount = mesh.uvw.size();
    return uvCount > 0 && within(mesh.polygons[first], uvCount) && within(mesh.polygons[first + 1], uvCount) &&
           within(mesh.polygons[first + 2], uvCount);
}

Vector hostVector(const tvr::util::Vec3d& v) {
    return Vector(static_cast<Real>(v.x), static_cast<Real>(v.y), static_cast<Real>(v.z));
}

}  // namespace

std::string meshFault(const CMesh& mesh) {
    if (mesh.polygons.size() % 3 != 0 || mesh.uvIndices.size() != mesh.polygons.size())
        return "its triangle and coordinate index lists do not match";
    if (mesh.points.size() > 0x7fffffff || mesh.polygons.size() / 3 > 0x7fffffff) return "it is too large";
    const std::size_t points = mesh.points.size();
    for (std::size_t i = 0; i < mesh.polygons.size(); ++i) {
        if (!within(mesh.polygons[i], points))
            return "triangle " + std::to_string(i / 3) + " names point " + std::to_string(mesh.polygons[i]) + " of " +
                   std::to_string(points);
    }
    for (std::size_t first = 0; first < mesh.polygons.size(); first += 3) {
        if (!takesCoordinates(mesh, first)) continue;
        for (std::size_t k = first; k < first + 3; ++k) {
            if (!within(mesh.uvIndices[k], mesh.uvw.size()))
                return "triangle " + std::to_string(first / 3) + " names coordinate " +
                       std::to_string(mesh.uvIndices[k]) + " of " + std::to_string(mesh.uvw.size());
        }
    }
    return std::string();
}

void writeMesh(BaseObject* op, const CMesh& mesh, bool recordUndo) {
    PolygonObject* poly = polygonsOf(op);
    if (!poly) {
        logLine("Set SSh Helper Mesh refused: the object is not a polygon object", Log::Error);
        return;
    }
    const std::string fault = meshFault(mesh);
    if (!fault.empty()) {
        logLine("Set SSh Helper Mesh refused: " + fault, Log::Error);
        return;
    }
    auto* uvw = static_cast<UVWTag*>(poly->GetTag(Tuvw));
    if (recordUndo) addUndo(documentFor(poly), UNDO_CHANGE, poly);
    const auto pointCount = static_cast<LONG>(mesh.points.size());
    const auto polygonCount = static_cast<LONG>(mesh.polygons.size() / 3);
    poly->ResizeObject(pointCount, polygonCount);
    Vector* points = poly->GetPointW();
    CPolygon* polygons = poly->GetPolygonW();
    if (!points || !polygons) return;
    // Points as given: unlike reading, writing leaves the third axis alone. Kept so.
    for (LONG i = 0; i < pointCount; ++i) points[i] = hostVector(mesh.points[static_cast<std::size_t>(i)]);
    const LONG tagCount = uvw ? uvw->GetDataCount() : 0;
    for (LONG j = 0; j < polygonCount; ++j) {
        const auto first = static_cast<std::size_t>(j) * 3;
        polygons[j] = CPolygon(mesh.polygons[first], mesh.polygons[first + 1], mesh.polygons[first + 2]);
        if (j >= tagCount) continue;
        Vector corner[3];
        if (takesCoordinates(mesh, first)) {
            for (std::size_t k = 0; k < 3; ++k)
                corner[k] = hostVector(mesh.uvw[static_cast<std::size_t>(mesh.uvIndices[first + k])]);
        }
        uvw->SetSlow(j, UVWStruct(corner[0], corner[1], corner[2], corner[2]));
    }
}

bool readMesh(BaseObject* op, CMesh& mesh) {
    PolygonObject* poly = polygonsOf(op);
    const LONG pointCount = poly ? poly->GetPointCount() : 0;
    const LONG polygonCount = poly ? poly->GetPolygonCount() : 0;
    mesh.setPointCount(pointCount);
    mesh.setPolygonCount(polygonCount);
    mesh.setUVCount(poly && poly->GetTag(Tuvw) ? polygonCount : 0);  // sized only; no coordinates are read
    const Vector* points = poly ? poly->GetPointR() : nullptr;
    const CPolygon* polygons = poly ? poly->GetPolygonR() : nullptr;
    if (!points || !polygons) return false;
    for (LONG i = 0; i < pointCount; ++i) {
        const Vector& p = points[i];
        mesh.points[static_cast<std::size_t>(i)] = {p.x, p.y, -0.0 - static_cast<double>(p.z)};
    }
    // Three corners of each polygon: a quadrangle loses its second half. Kept so.
    for (LONG j = 0; j < polygonCount; ++j) {
        std::int32_t* out = &mesh.polygons[static_cast<std::size_t>(j) * 3];
        out[0] = polygons[j].a;
        out[1] = polygons[j].b;
        out[2] = polygons[j].c;
    }
    return true;
}

CC4DNode::CC4DSnapshot_Mesh::CC4DSnapshot_Mesh(BaseLink* nodeLink, double seconds) : time(hostTime(seconds)) {
    Log entry("Creating Snapshot mesh", Log::Notice);
    if (nodeLink && resolveObject(nodeLink)) objectLink = nodeLink->GetClone();
    if (!objectLink) logLine("Creating Snapshot mesh failed", Log::Warning);
}

CC4DNode::CC4DSnapshot_Mesh::~CC4DSnapshot_Mesh() { BaseLink::Free(objectLink); }

BaseObject* CC4DNode::CC4DSnapshot_Mesh::resolve() const { return resolveObject(objectLink); }

std::intptr_t CC4DNode::CC4DSnapshot_Mesh::executeExtension(int, void*) { return 0; }

std::vector<int>& CC4DNode::CC4DSnapshot_Mesh::getSupportedExtensions(std::vector<int>& codes) {
    codes.clear();
    return codes;
}

void CC4DNode::CC4DSnapshot_Mesh::setMesh(const CMesh& mesh) {
    if (undoReplayInProgress()) return;
    Log entry("Set SSh Helper Mesh", Log::Notice);
    if (BaseObject* op = resolve()) writeMesh(op, mesh);
}

bool CC4DNode::CC4DSnapshot_Mesh::getMesh(tvr::util::ReturnValue<CMesh>* result) {
    Log entry("SnGetMesh", Log::Notice);
    BaseObject* op = resolve();
    if (!op) return false;
    if (!readMesh(op, scratch_)) {
        logLine("SnGetMesh failed", Log::Error);
        return false;
    }
    if (result) result->set(scratch_);
    return true;
}

CMesh CC4DNode::CC4DSnapshot_Mesh::getMeshValue() {
    CMesh mesh;
    tvr::util::ReturnValue<CMesh> sink(&mesh);
    if (!getMesh(&sink)) return CMesh();
    return mesh;
}

bool CC4DNode::CC4DSnapshot_Mesh::intersectRay(const double* origin, const double* direction, double* distance,
                                               double* hit) {
    BaseObject* op = resolve();
    if (!op || !origin || !direction) return false;
    GeRayCollider* collider = GeRayCollider::Alloc();
    if (!collider) return false;
    bool found = false;
    if (collider->Init(op, false)) {
        const Vector from(static_cast<Real>(origin[0]), static_cast<Real>(origin[1]), static_cast<Real>(-origin[2]));
        const Vector towards(static_cast<Real>(direction[0]), static_cast<Real>(direction[1]),
                             static_cast<Real>(-direction[2]));
        GeRayColResult nearest;
        if (collider->Intersect(from, towards, 1e9f, false) && collider->GetNearestIntersection(&nearest)) {
            found = true;
            if (distance) *distance = nearest.distance;
            if (hit) {
                hit[0] = nearest.hitpos.x;
                hit[1] = nearest.hitpos.y;
                hit[2] = -static_cast<double>(nearest.hitpos.z);
            }
        }
    }
    GeRayCollider::Free(collider);
    return found;
}

}  // namespace tvr::plr::adaptor::cinema4d
