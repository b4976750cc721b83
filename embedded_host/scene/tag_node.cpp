#include "embedded_host/scene/tag_node.h"

#include "embedded_host/runtime/host_context.h"

namespace tvr::plr::embedded {

HostNode* TagNode::makeBlank() const {
  HostContext* c = context();
  return c ? c->makeTag(type, 0) : nullptr;
}

void TagNode::copyOwnFrom(const HostNode& src) {
  HostNode::copyOwnFrom(src);
  NodeData* from = src.nodeData();
  if (from && pluginData) from->CopyTo(pluginData, src.iface(), iface(), 0, nullptr);
}

void TagNode::releasePluginData() {
  if (!pluginData) return;
  NodeData* d = pluginData;
  pluginData = nullptr;
  d->Free(iface());
  delete d;
}

BaseObject* TagNode::object() const {
  return listOwner && inList == ListKind::Tags && listOwner->kind == NodeKind::Object
             ? static_cast<BaseObject*>(listOwner->iface())
             : nullptr;
}

BaseTag* TagNode::cloneTag() const {
  HostNode* c = deepCopy(false, true, false, false);
  return c ? static_cast<BaseTag*>(c->iface()) : nullptr;
}

HostNode* makePluginTag(LONG type, DataAllocator* allocator) {
  PluginTagImpl* tag = createNode<PluginTagImpl>(type);
  if (allocator) {
    tag->pluginData = allocator();
    if (!tag->pluginData || !tag->pluginData->Init(tag)) {
      delete tag;
      return nullptr;
    }
  }
  return tag;
}

void SceneHookNode::releasePluginData() {
  if (!pluginData) return;
  NodeData* d = pluginData;
  pluginData = nullptr;
  d->Free(iface());
  delete d;
}

}  // namespace tvr::plr::embedded
