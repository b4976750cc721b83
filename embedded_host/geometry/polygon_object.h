#pragma once
// Polygon objects: points and polygons on top of an ordinary object.
#include <vector>

#include "embedded_host/scene/object_node.h"

namespace tvr::plr::embedded {

class PolygonNode : public ObjectNode {
 public:
  explicit PolygonNode(LONG type) : ObjectNode(type) {}

  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;
  bool isInstanceOf(LONG t) const override { return t == Opoint || ObjectNode::isInstanceOf(t); }

  // Keeps what fits; new points and polygons are zero. Negative counts are refused.
  bool resize(LONG pointCount, LONG polygonCount);
  bool clearPart(LONG selector, LONG flags);
  void fitTextureTags();

  std::vector<Vector> points;
  std::vector<CPolygon> polygons;
};

class PolygonObjectImpl : public ObjectImplT<PolygonObject, PolygonNode> {
 public:
  using ObjectImplT<PolygonObject, PolygonNode>::ObjectImplT;

  LONG GetPointCount() const override { return LONG(points.size()); }
  const Vector* GetPointR() const override { return points.empty() ? nullptr : points.data(); }
  Vector* GetPointW() override { return points.empty() ? nullptr : points.data(); }
  LONG GetPolygonCount() const override { return LONG(polygons.size()); }
  const CPolygon* GetPolygonR() const override { return polygons.empty() ? nullptr : polygons.data(); }
  CPolygon* GetPolygonW() override { return polygons.empty() ? nullptr : polygons.data(); }
  Bool ResizeObject(LONG pointCount, LONG polygonCount) override { return resize(pointCount, polygonCount); }
  Bool ClearPart(LONG selector, LONG flags) override { return clearPart(selector, flags); }
};

// The polygon node behind an object, or null when it is not a polygon object of this host.
PolygonNode* polygonNodeOf(const void* object);

}  // namespace tvr::plr::embedded
