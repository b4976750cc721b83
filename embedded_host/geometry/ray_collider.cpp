#include "embedded_host/geometry/ray_collider.h"

#include "embedded_host/geometry/polygon_object.h"

namespace tvr::plr::embedded {

namespace {
geometry::Vec3 toVec3(const Vector& v) { return {v.x, v.y, v.z}; }
Vector toVector(const geometry::Vec3& v) { return Vector(Real(v.x), Real(v.y), Real(v.z)); }
}  // namespace

Bool RayColliderImpl::Init(BaseObject* goal, Bool) {
  ready_ = false;
  hits_.clear();
  mesh_ = geometry::RayMesh();
  const PolygonNode* poly = polygonNodeOf(goal);
  if (!poly) return false;
  std::vector<geometry::Vec3> points;
  points.reserve(poly->points.size());
  for (const Vector& p : poly->points) points.push_back(toVec3(p));
  std::vector<geometry::Quad> quads;
  quads.reserve(poly->polygons.size());
  for (const CPolygon& q : poly->polygons) quads.push_back({q.a, q.b, q.c, q.d});
  mesh_ = geometry::RayMesh(std::move(points), std::move(quads));
  ready_ = true;
  return true;
}

Bool RayColliderImpl::Intersect(const Vector& origin, const Vector& direction, Real length, Bool onlyTest) {
  hits_.clear();
  if (!ready_) return false;
  hits_ = mesh_.intersect(toVec3(origin), toVec3(direction), length);
  if (onlyTest && hits_.size() > 1) hits_.resize(1);
  return !hits_.empty();
}

Bool RayColliderImpl::GetIntersection(LONG number, GeRayColResult* res) {
  if (!res || number < 0 || std::size_t(number) >= hits_.size()) return false;
  const geometry::RayHit& h = hits_[std::size_t(number)];
  res->hitpos = toVector(h.position);
  res->distance = Real(h.distance);
  res->face_id = h.faceId;
  res->tri_face_id = h.triFaceId % 2 == 0 ? h.faceId : -h.faceId - 1;
  res->barrycoords = toVector(h.barycentric);
  res->f_normal = toVector(h.faceNormal);
  res->s_normal = res->f_normal;
  res->backface = h.backface;
  return true;
}

GeRayCollider* allocRayCollider() { return new RayColliderImpl(); }
void freeRayCollider(GeRayCollider* rc) { delete static_cast<RayColliderImpl*>(rc); }

}  // namespace tvr::plr::embedded
