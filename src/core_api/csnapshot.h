#pragma once

#include <cstdint>

#include "core_api/core_node.h"
#include "util/matrix.h"
#include "util/mesh.h"
#include "util/return_value.h"

namespace tvr::plr {

// State every snapshot carries for its node's pool, whatever its kind.
struct CSnapshot {
    // Set while the core holds the snapshot; a released one is reused.
    bool inUse = false;
};

// Each kind begins with the three operations of CoreNode::Snapshot and
// continues with its own, in the order below; the destructor sits where the
// core expects it, not first. Matrices are in the core's axes and units.

// Placement of a node's object at one time.
class CTransformSnapshot : public core::CoreNode::Snapshot, public CSnapshot {
public:
    virtual void setLocalMatrix(const util::Matrix4d& m) = 0;
    virtual util::Matrix4d getLocalMatrix() = 0;
    virtual util::Matrix4d getGlobalMatrix() = 0;
    virtual void setGlobalMatrix(const util::Matrix4d& m) = 0;
    virtual double getTime() = 0;
    virtual ~CTransformSnapshot() = default;
};

// Horizontal field of view: the only type there is.
constexpr std::int32_t FOV_TYPE_WIDTH = 0;

// A camera's lens at one time.
class CLensSnapshot : public core::CoreNode::Snapshot, public CSnapshot {
public:
    virtual void setFov(double degrees) = 0;
    virtual double getFov() = 0;
    virtual std::int32_t getFovType() = 0;
    virtual void setFovType(std::int32_t type) = 0;
    virtual void setLensValue(double value) = 0;
    virtual double getLensValue() = 0;
    virtual double getTime() = 0;
    // Sets `result` and returns it.
    virtual util::Matrix4d& getPerspective(util::Matrix4d& result) = 0;
    virtual ~CLensSnapshot() = default;
};

// A spline's length, points and tangents; offsets run uniformly along it.
class CShapeSnapshot : public core::CoreNode::Snapshot, public CSnapshot {
public:
    virtual std::int32_t getShapeKind() = 0;
    virtual std::int32_t getShapeIndex() = 0;
    virtual void setShapeIndex(std::int32_t index) = 0;
    virtual double getLength() = 0;
    virtual util::Vec3d getPoint(double offset) = 0;
    virtual util::Vec3d getTangent(double offset) = 0;
    virtual ~CShapeSnapshot() = default;
};

// A polygon object's geometry, exchanged as a triangle mesh.
class CMeshSnapshot : public core::CoreNode::Snapshot, public CSnapshot {
public:
    virtual void setMesh(const util::CMesh& mesh) = 0;
    // The mesh by value (a sink would point at storage that ends with the
    // call); empty when it could not be read.
    virtual util::CMesh getMeshValue() = 0;
    // origin and direction hold three doubles; distance and hit (three
    // doubles) are written on a hit when not null.
    virtual bool intersectRay(const double* origin, const double* direction, double* distance, double* hit) = 0;
    virtual ~CMeshSnapshot() = default;
    virtual bool getMesh(util::ReturnValue<util::CMesh>* result) = 0;
};

// A helper object that displays a mesh for the core.
class CHelperSnapshot : public core::CoreNode::Snapshot, public CSnapshot {
public:
    virtual void setHelperMesh(const util::CMesh& mesh) = 0;
    virtual void setHelperColor(float red, float green, float blue) = 0;
    virtual void setWireframeMode(bool on) = 0;
    virtual void setBackfaceCulling(bool on) = 0;
    virtual ~CHelperSnapshot() = default;
};

}  // namespace tvr::plr
