#include "embedded_host/geometry/polygon_object.h"

#include "embedded_host/geometry/uvw_tag.h"
#include "embedded_host/scene/scene_dump.h"

namespace tvr::plr::embedded {

namespace {
// Sizes beyond this are refused rather than attempted: a bad count from a
// module must not take the host's memory.
constexpr LONG kMaxElements = 1 << 26;
}  // namespace

void PolygonNode::copyOwnFrom(const HostNode& src) {
  ObjectNode::copyOwnFrom(src);
  if (auto* p = dynamic_cast<const PolygonNode*>(&src)) {
    points = p->points;
    polygons = p->polygons;
  }
}

void PolygonNode::swapOwnWith(HostNode& other) {
  ObjectNode::swapOwnWith(other);
  if (auto* p = dynamic_cast<PolygonNode*>(&other)) {
    points.swap(p->points);
    polygons.swap(p->polygons);
  }
}

void PolygonNode::dumpOwn(DumpOut& out) const {
  ObjectNode::dumpOwn(out);
  out.key("points") << '[';
  for (std::size_t i = 0; i < points.size(); ++i) (i ? out << ' ' : out).vec(points[i]);
  out << ']';
  out.key("polygons") << '[';
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    const CPolygon& p = polygons[i];
    out << (i ? " " : "") << p.a << ',' << p.b << ',' << p.c << ',' << p.d;
  }
  out << ']';
}

void PolygonNode::fitTextureTags() {
  // Texture coordinates are per polygon: they follow, so no reader runs past them.
  for (HostNode* t = tags.first; t; t = t->next)
    if (auto* uvw = dynamic_cast<UVWTagNode*>(t)) uvw->resize(LONG(polygons.size()));
}

bool PolygonNode::resize(LONG pointCount, LONG polygonCount) {
  if (pointCount < 0 || polygonCount < 0 || pointCount > kMaxElements || polygonCount > kMaxElements) return false;
  points.resize(std::size_t(pointCount));
  polygons.resize(std::size_t(polygonCount));
  fitTextureTags();
  return true;
}

bool PolygonNode::clearPart(LONG selector, LONG flags) {
  if (flags != 0) return false;
  switch (selector) {
    case 0:
      polygons.clear();
      fitTextureTags();
      return true;
    case 1:
      points.clear();
      polygons.clear();
      fitTextureTags();
      return true;
    default:
      return false;
  }
}

PolygonNode* polygonNodeOf(const void* object) { return dynamic_cast<PolygonNode*>(nodeOf(object)); }

}  // namespace tvr::plr::embedded
