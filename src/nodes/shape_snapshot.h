// The shape snapshot: length, points and tangents of a spline object, in the
// core's axes. Pooled by its node.
#pragma once

#include "core_api/csnapshot.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode::CC4DSnapshot_Shape : public tvr::plr::CShapeSnapshot {
public:
    explicit CC4DSnapshot_Shape(CC4DNode* owner) : node(owner) {}

    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    std::int32_t getShapeKind() override { return 1; }
    std::int32_t getShapeIndex() override { return index; }
    // Kept a no-op: the index is never stored.
    void setShapeIndex(std::int32_t) override {}
    double getLength() override;
    tvr::util::Vec3d getPoint(double offset) override;
    tvr::util::Vec3d getTangent(double offset) override;
    ~CC4DSnapshot_Shape() override = default;

    CC4DNode* node;
    std::int32_t index = 0;
    double seconds = 0.0;

private:
    // The node object's spline, or null.
    SplineObject* spline();
};

}  // namespace tvr::plr::adaptor::cinema4d
