#include "embedded_host/scene/link_impl.h"

#include <unordered_set>

#include "embedded_host/scene/host_node.h"
#include "embedded_host/scene/node_registry.h"

namespace tvr::plr::embedded {

namespace {
// Every link this host handed out; links are freed by modules as well as by the host.
std::unordered_set<const BaseLink*>& liveLinks() {
  static std::unordered_set<const BaseLink*> links;
  return links;
}
}  // namespace

void LinkImpl::SetLink(BaseList2D* node) {
  HostNode* n = nodeOf(node);
  marker = n && n->linkable ? n->marker : 0;
}

BaseList2D* LinkImpl::GetLink(const BaseDocument* doc, LONG instanceOf) const {
  NodeRegistry* r = nodeRegistry();
  HostNode* n = r && marker ? r->fromMarker(marker) : nullptr;
  if (!n) return nullptr;
  if (doc && n->documentIface() != doc) return nullptr;
  if (instanceOf != 0 && !n->isInstanceOf(instanceOf)) return nullptr;
  return n->iface();
}

BaseList2D* LinkImpl::ForceGetLink() const { return GetLink(nullptr, 0); }

BaseLink* LinkImpl::GetClone(LONG, AliasTrans*) const {
  LinkImpl* l = allocLink();
  l->marker = marker;
  return l;
}

Bool LinkImpl::CopyTo(BaseLink* dest, LONG, AliasTrans*) const {
  LinkImpl* d = linkOf(dest);
  if (!d) return false;
  d->marker = marker;
  return true;
}

LinkImpl* allocLink() {
  auto* l = new LinkImpl();
  liveLinks().insert(l);
  return l;
}

void freeLink(BaseLink* link) {
  if (!link || liveLinks().erase(link) == 0) return;  // not ours, or freed already
  delete static_cast<LinkImpl*>(link);
}

LinkImpl* linkOf(BaseLink* link) {
  return link && liveLinks().count(link) ? static_cast<LinkImpl*>(link) : nullptr;
}

}  // namespace tvr::plr::embedded
