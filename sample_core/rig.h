// Placing nodes in the world: where a node stands, a point along a spline,
// and a camera turned to look at a point. All in the core's axes and units.
#pragma once

#include "core_api/core_node.h"
#include "util/mesh.h"

namespace tvr::plr::core::sample {

// The origin of the node's object at `seconds`; false when the object is gone.
bool globalPosition(CoreNode* node, double seconds, util::Vec3d& out);

// The point at `offset` (0 to 1, uniform along its length) of the node's
// spline at `seconds`; false when the object is gone or holds no spline.
bool pathPoint(CoreNode* path, double seconds, double offset, util::Vec3d& out);

// Puts the node's object at `at`, keeping its axes.
bool placeAt(CoreNode* node, double seconds, const util::Vec3d& at);

// Turns the camera so that it looks at `at` with its up axis in the vertical
// plane, keeping its place and the lengths of its axes. False when the
// object is gone or stands at `at`.
bool aimAt(CoreNode* camera, double seconds, const util::Vec3d& at);

}  // namespace tvr::plr::core::sample
