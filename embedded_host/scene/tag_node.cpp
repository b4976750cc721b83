#include "embedded_host/scene/tag_node.h"

#include "embedded_host/scene/node_makers.h"

namespace tvr::plr::embedded {

HostNode* TagNode::makeBlank() const {
  NodeMakers* m = nodeMakers();
  return m ? m->makeTag(type, 0) : nullptr;
}

void TagNode::copyOwnFrom(const HostNode& src) {
  HostNode::copyOwnFrom(src);
  NodeData* from = src.nodeData();
  if (from && pluginData) from->CopyTo(pluginData, src.iface(), iface(), 0, nullptr);
}

void TagNode::swapOwnWith(HostNode& other) {
  HostNode::swapOwnWith(other);
  NodeData* theirs = other.nodeData();
  if (!pluginData || !theirs) return;
  // Each side keeps its data object (plug-ins may hold it); the states cross through a spare
  // node of the same kind: mine to the spare, theirs to me, the spare's to them.
  HostNode* spare = makeBlank();
  NodeData* held = spare ? spare->nodeData() : nullptr;
  if (held) {
    pluginData->CopyTo(held, iface(), spare->iface(), 0, nullptr);
    theirs->CopyTo(pluginData, other.iface(), iface(), 0, nullptr);
    held->CopyTo(theirs, spare->iface(), other.iface(), 0, nullptr);
  }
  delete spare;
}

void TagNode::releasePluginData() {
  if (!pluginData) return;
  NodeData* d = pluginData;
  pluginData = nullptr;
  d->Free(iface());
  delete d;
}

BaseObject* TagNode::object() const {
  return listOwner && inList == ListKind::Tags && listOwner->asObject()
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
