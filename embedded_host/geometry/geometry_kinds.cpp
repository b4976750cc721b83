#include "embedded_host/geometry/geometry_kinds.h"

#include "embedded_host/scene/node_makers.h"
#include "embedded_host/geometry/polygon_object.h"
#include "embedded_host/geometry/spline_object.h"
#include "embedded_host/geometry/uvw_tag.h"

namespace tvr::plr::embedded {

void registerGeometryKinds() {
  NodeMakers* m = nodeMakers();
  if (!m) return;
  m->addObject(Opolygon, [](LONG type, LONG) -> HostNode* { return createNode<PolygonObjectImpl>(type); });
  m->addObject(Ospline, [](LONG type, LONG) -> HostNode* { return createNode<SplineObjectImpl>(type); });
  m->addTag(Tuvw, [](LONG type, LONG count) -> HostNode* {
    UVWTagImpl* tag = createNode<UVWTagImpl>(type);
    if (!tag->resize(count)) {
      delete tag;
      return nullptr;
    }
    return tag;
  });
}

}  // namespace tvr::plr::embedded
