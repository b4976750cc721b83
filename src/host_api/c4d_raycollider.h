#pragma once
// Ray tests against a polygon object, in object space.
#include "host_api/c4d_baseobject.h"

struct GeRayColResult {
    Vector hitpos;
    Real distance = 0;
    LONG face_id = NOTOK;
    LONG tri_face_id = NOTOK;  // face_id, negated-minus-one for the second triangle of a quad
    Vector barrycoords;
    Vector s_normal;
    Vector f_normal;
    Bool backface = false;
};

class GeRayCollider {
public:
    static GeRayCollider* Alloc() {
        C4D_HostTable* t = C4DOS();
        return t && t->rayColliderAlloc ? t->rayColliderAlloc() : nullptr;
    }
    static void Free(GeRayCollider*& rc) {
        C4D_HostTable* t = C4DOS();
        if (rc && t && t->rayColliderFree) t->rayColliderFree(rc);
        rc = nullptr;
    }

    virtual Bool Init(BaseObject* goal, Bool force = false) = 0;
    // Quads count as two triangles.
    virtual Bool Intersect(const Vector& rayOrigin, const Vector& rayDirection, Real length, Bool onlyTest = false) = 0;
    virtual LONG GetIntersectionCount() = 0;
    virtual Bool GetIntersection(LONG number, GeRayColResult* res) = 0;
    virtual Bool GetNearestIntersection(GeRayColResult* res) = 0;

protected:
    GeRayCollider() = default;
    virtual ~GeRayCollider() = default;
    GeRayCollider(const GeRayCollider&) = delete;
    GeRayCollider& operator=(const GeRayCollider&) = delete;
};
