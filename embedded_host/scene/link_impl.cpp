#include "embedded_host/scene/link_impl.h"

#include <new>

#include "embedded_host/scene/host_node.h"
#include "embedded_host/scene/node_registry.h"
#include "embedded_host/scene/slot_pool.h"

namespace tvr::plr::embedded {

namespace {
// Every link this host handed out lives in this pool, which knows which of its slots are in
// use; links are freed by modules as well as by the host. Never destroyed (see slot_pool.h).
SlotPool& linkPool() {
  static SlotPool* pool = new SlotPool(sizeof(LinkImpl), 4096);
  return *pool;
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
  return new (linkPool().allocate()) LinkImpl();
}

void freeLink(BaseLink* link) {
  LinkImpl* l = linkOf(link);
  if (!l) return;  // not ours, or freed already
  l->~LinkImpl();
  linkPool().release(l);
}

LinkImpl* linkOf(BaseLink* link) {
  return link && linkPool().isLive(link) ? static_cast<LinkImpl*>(link) : nullptr;
}

}  // namespace tvr::plr::embedded
