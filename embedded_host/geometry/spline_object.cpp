#include "embedded_host/geometry/spline_object.h"

#include "embedded_host/scene/scene_dump.h"

namespace tvr::plr::embedded {

namespace {
constexpr LONG kMaxElements = 1 << 26;

Vector toVector(const geometry::Vec3& v) { return Vector(Real(v.x), Real(v.y), Real(v.z)); }
}  // namespace

void SplineNode::copyOwnFrom(const HostNode& src) {
  ObjectNode::copyOwnFrom(src);
  if (auto* s = dynamic_cast<const SplineNode*>(&src)) {
    points = s->points;
    segments = s->segments;
    closed = s->closed;
  }
  lengthData.reset();
}

void SplineNode::swapOwnWith(HostNode& other) {
  ObjectNode::swapOwnWith(other);
  if (auto* s = dynamic_cast<SplineNode*>(&other)) {
    points.swap(s->points);
    segments.swap(s->segments);
    std::swap(closed, s->closed);
    s->lengthData.reset();
  }
  lengthData.reset();
}

void SplineNode::dumpOwn(DumpOut& out) const {
  ObjectNode::dumpOwn(out);
  out.key("points") << '[';
  for (std::size_t i = 0; i < points.size(); ++i) (i ? out << ' ' : out).vec(points[i]);
  out << ']';
  out.key("segments") << '[';
  for (std::size_t i = 0; i < segments.size(); ++i)
    out << (i ? " " : "") << segments[i].cnt << (segments[i].closed ? 'c' : 'o');
  out << ']';
  out.key("closed") << int(closed);
}

bool SplineNode::resize(LONG pointCount, LONG segmentCount) {
  if (pointCount < 0 || segmentCount < 0 || pointCount > kMaxElements || segmentCount > kMaxElements) return false;
  points.resize(std::size_t(pointCount));
  segments.resize(std::size_t(segmentCount));
  if (segmentCount == 1) segments[0].cnt = pointCount;
  lengthData.reset();
  return true;
}

void SplineNode::setClosed(bool c) {
  closed = c;
  for (Segment& s : segments) s.closed = c;
  lengthData.reset();
}

std::optional<geometry::LinearSegment> SplineNode::segment(LONG index) const {
  if (index < 0 || index >= segmentCount()) return std::nullopt;
  std::size_t start = 0, count = points.size();
  bool segClosed = closed;
  if (!segments.empty()) {
    for (LONG i = 0; i < index; ++i) start += std::size_t(std::max<LONG>(segments[std::size_t(i)].cnt, 0));
    const Segment& s = segments[std::size_t(index)];
    start = std::min(start, points.size());
    count = std::min(std::size_t(std::max<LONG>(s.cnt, 0)), points.size() - start);
    segClosed = s.closed;
  }
  std::vector<geometry::Vec3> pts;
  pts.reserve(count);
  for (std::size_t i = start; i < start + count; ++i) pts.push_back({points[i].x, points[i].y, points[i].z});
  return geometry::LinearSegment(std::move(pts), segClosed);
}

bool SplineNode::initLength(LONG index) {
  lengthData = segment(index);
  return lengthData.has_value();
}

geometry::LinearSegment SplineNode::measured() const {
  if (lengthData) return *lengthData;
  return segment(0).value_or(geometry::LinearSegment());
}

Vector SplineObjectImpl::GetSplinePoint(Real t, LONG index, const Vector*) {
  const auto s = segment(index);
  return s ? toVector(s->point(t)) : Vector();
}

Vector SplineObjectImpl::GetSplineTangent(Real t, LONG index, const Vector*) {
  const auto s = segment(index);
  return s ? toVector(s->tangent(t)) : Vector();
}

}  // namespace tvr::plr::embedded
