#include "sample_core/rig.h"

#include <cmath>

#include "core_api/csnapshot.h"
#include "sample_core/coverage.h"

namespace tvr::plr::core::sample {

namespace {

using util::Matrix4d;
using util::Vec3d;

Vec3d cross(const Vec3d& a, const Vec3d& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Vec3d& v) { return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z); }

Vec3d scaled(const Vec3d& v, double f) { return {v.x * f, v.y * f, v.z * f}; }

// Runs `use` on the node's transform at `seconds`; false when there is none.
template <class Use>
bool withTransform(CoreNode* node, double seconds, Use use) {
    CTransformSnapshot* snapshot = on(node).acquireSnapshot(seconds);
    if (!snapshot) return false;
    TransformCalls calls = on(snapshot);
    use(calls);
    on(node).releaseSnapshot(snapshot);
    return true;
}

}  // namespace

bool globalPosition(CoreNode* node, double seconds, Vec3d& out) {
    return withTransform(node, seconds, [&](TransformCalls& s) {
        const Matrix4d m = s.getGlobalMatrix();
        out = {m(0, 3), m(1, 3), m(2, 3)};
    });
}

bool pathPoint(CoreNode* path, double seconds, double offset, Vec3d& out) {
    CShapeSnapshot* shape = on(path).acquireShape(seconds);
    if (!shape) return false;
    const bool isSpline = on(shape).getLength() > 0;
    // The shape's points are in the spline's own space: the global matrix takes them into the world.
    const Vec3d local = on(shape).getPoint(offset);
    on(path).releaseShape(shape);
    if (!isSpline) return false;
    return withTransform(path, seconds, [&](TransformCalls& s) {
        const Matrix4d m = s.getGlobalMatrix();
        out = {m(0, 0) * local.x + m(0, 1) * local.y + m(0, 2) * local.z + m(0, 3),
               m(1, 0) * local.x + m(1, 1) * local.y + m(1, 2) * local.z + m(1, 3),
               m(2, 0) * local.x + m(2, 1) * local.y + m(2, 2) * local.z + m(2, 3)};
    });
}

bool placeAt(CoreNode* node, double seconds, const Vec3d& at) {
    return withTransform(node, seconds, [&](TransformCalls& s) {
        Matrix4d m = s.getGlobalMatrix();
        m(0, 3) = at.x, m(1, 3) = at.y, m(2, 3) = at.z;
        s.setGlobalMatrix(m);
    });
}

bool aimAt(CoreNode* camera, double seconds, const Vec3d& at) {
    bool aimed = false;
    const bool found = withTransform(camera, seconds, [&](TransformCalls& s) {
        Matrix4d m = s.getGlobalMatrix();
        // A camera looks down its negative z axis, so z points from the target to the camera.
        const Vec3d back{m(0, 3) - at.x, m(1, 3) - at.y, m(2, 3) - at.z};
        if (length(back) < 1e-9) return;
        const Vec3d z = scaled(back, 1.0 / length(back));
        Vec3d x = cross(Vec3d{0, 1, 0}, z);
        // Straight above or below: any horizontal axis will do.
        if (length(x) < 1e-9) x = {1, 0, 0};
        x = scaled(x, 1.0 / length(x));
        const Vec3d y = cross(z, x);
        const Vec3d axes[3] = {x, y, z};
        for (int c = 0; c < 3; ++c) {
            const double keep = std::sqrt(m(0, c) * m(0, c) + m(1, c) * m(1, c) + m(2, c) * m(2, c));
            m(0, c) = axes[c].x * keep, m(1, c) = axes[c].y * keep, m(2, c) = axes[c].z * keep;
        }
        s.setGlobalMatrix(m);
        aimed = true;
    });
    return found && aimed;
}

}  // namespace tvr::plr::core::sample
