#include "embedded_host/scene/node_makers.h"

#include "embedded_host/runtime/plugin_registry.h"
#include "embedded_host/scene/tag_node.h"

namespace tvr::plr::embedded {

HostNode* NodeMakers::makeObject(LONG type) const {
  auto it = objects_.find(type);
  return it == objects_.end() ? nullptr : it->second(type, 0);
}

HostNode* NodeMakers::makeTag(LONG type, LONG count) const {
  auto it = tags_.find(type);
  if (it != tags_.end()) return it->second(type, count);
  if (const TagPlugin* p = plugins_.tag(type)) return makePluginTag(type, p->allocator);
  return nullptr;
}

bool NodeMakers::knowsTag(LONG type) const { return tags_.count(type) != 0 || plugins_.tag(type) != nullptr; }

}  // namespace tvr::plr::embedded
