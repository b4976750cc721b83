#include "embedded_host/geometry/geometry_kinds.h"

#include "embedded_host/runtime/host_context.h"
#include "embedded_host/geometry/polygon_object.h"
#include "embedded_host/geometry/spline_object.h"
#include "embedded_host/geometry/uvw_tag.h"

namespace tvr::plr::embedded {

void registerGeometryKinds() {
  HostContext* c = context();
  if (!c) return;
  c->objectMakers[Opolygon] = [](LONG type, LONG) -> HostNode* { return createNode<PolygonObjectImpl>(type); };
  c->objectMakers[Ospline] = [](LONG type, LONG) -> HostNode* { return createNode<SplineObjectImpl>(type); };
  c->tagMakers[Tuvw] = [](LONG type, LONG count) -> HostNode* {
    UVWTagImpl* tag = createNode<UVWTagImpl>(type);
    if (!tag->resize(count)) {
      delete tag;
      return nullptr;
    }
    return tag;
  };
}

}  // namespace tvr::plr::embedded
