#pragma once
// Linear spline objects: points split into segments, each open or closed.
//
// With no segments the spline is one segment of all its points, closed when
// the spline is. With segments, each takes the next cnt points (fewer when
// the points run out) and is closed by its own flag; SetClosed sets the
// spline's flag and every segment's. Resizing to exactly one segment makes it
// span all points, so that a spline made with Alloc(n) is usable at once.
//
// Measures: InitLength(segment) measures a segment for GetLength and
// UniformToNatural until FreeLength; without it they measure segment 0.
// Parameters are natural (per edge) for points and tangents; see
// geometry_spline.h.
#include <optional>
#include <vector>

#include "embedded_host/geometry/geometry_spline.h"
#include "embedded_host/scene/object_node.h"

namespace tvr::plr::embedded {

class SplineNode : public ObjectNode {
 public:
  explicit SplineNode(LONG type) : ObjectNode(type) {}

  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;
  bool isInstanceOf(LONG t) const override { return t == Opoint || ObjectNode::isInstanceOf(t); }

  bool resize(LONG pointCount, LONG segmentCount);
  void setClosed(bool c);
  LONG segmentCount() const { return segments.empty() ? 1 : LONG(segments.size()); }
  // The geometry of one segment; nothing for an index outside the segments.
  std::optional<geometry::LinearSegment> segment(LONG index) const;
  bool initLength(LONG index);
  // The measured segment, or segment 0 measured now.
  geometry::LinearSegment measured() const;

  std::vector<Vector> points;
  std::vector<Segment> segments;
  bool closed = false;
  std::optional<geometry::LinearSegment> lengthData;  // transient; not copied
};

class SplineObjectImpl : public ObjectImplT<SplineObject, SplineNode> {
 public:
  using ObjectImplT<SplineObject, SplineNode>::ObjectImplT;

  SplineObject* GetRealSpline() override { return this; }
  LONG GetPointCount() const override { return LONG(points.size()); }
  const Vector* GetPointR() const override { return points.empty() ? nullptr : points.data(); }
  Vector* GetPointW() override { return points.empty() ? nullptr : points.data(); }
  LONG GetSegmentCount() const override { return LONG(segments.size()); }
  const Segment* GetSegmentR() const override { return segments.empty() ? nullptr : segments.data(); }
  Segment* GetSegmentW() override { return segments.empty() ? nullptr : segments.data(); }
  Bool IsClosed() const override { return closed; }
  void SetClosed(Bool c) override { setClosed(c); }
  Bool ResizeObject(LONG pointCount, LONG segmentCount) override { return resize(pointCount, segmentCount); }

  Bool InitLength(LONG segment, const LONG*) override { return initLength(segment); }
  Real GetLength() const override { return Real(measured().length()); }
  Real UniformToNatural(Real t) const override { return Real(measured().uniformToNatural(t)); }
  void FreeLength() override { lengthData.reset(); }
  Vector GetSplinePoint(Real t, LONG segment, const Vector*) override;
  Vector GetSplineTangent(Real t, LONG segment, const Vector*) override;
};

}  // namespace tvr::plr::embedded
