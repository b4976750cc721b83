#pragma once
// The host's ray collider: rays against a polygon object in its object space.
#include <vector>

#include "embedded_host/geometry/geometry_ray.h"
#include "host_api/c4d.h"

namespace tvr::plr::embedded {

class RayColliderImpl : public GeRayCollider {
 public:
  RayColliderImpl() = default;
  ~RayColliderImpl() override = default;

  // Takes a copy of the object's geometry; false for anything but a polygon object.
  Bool Init(BaseObject* goal, Bool force) override;
  // Hits within length; onlyTest stops at the first one found.
  Bool Intersect(const Vector& origin, const Vector& direction, Real length, Bool onlyTest) override;
  LONG GetIntersectionCount() override { return LONG(hits_.size()); }
  Bool GetIntersection(LONG number, GeRayColResult* res) override;
  Bool GetNearestIntersection(GeRayColResult* res) override { return GetIntersection(0, res); }

 private:
  bool ready_ = false;
  geometry::RayMesh mesh_;
  std::vector<geometry::RayHit> hits_;
};

// The table's services.
GeRayCollider* allocRayCollider();
void freeRayCollider(GeRayCollider* rc);

}  // namespace tvr::plr::embedded
