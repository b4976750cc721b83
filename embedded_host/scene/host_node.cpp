#include "embedded_host/scene/host_node.h"

#include <sstream>
#include <utility>

#include "embedded_host/runtime/console.h"
#include "embedded_host/runtime/journal.h"
#include "embedded_host/scene/document_node.h"
#include "embedded_host/scene/node_memory.h"
#include "embedded_host/scene/node_registry.h"
#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/scene/undo_stack.h"

namespace tvr::plr::embedded {

HostNode::HostNode(NodeKind k, LONG t) : kind(k), type(t) {}

void* HostNode::operator new(std::size_t size) { return nodememory::allocate(size); }
void HostNode::operator delete(void* p, std::size_t size) { nodememory::release(p, size); }

HostNode::~HostNode() {
  for (NodeList* list : {&children, &tags, &tracks}) {
    HostNode* n = list->first;
    while (n) {
      HostNode* following = n->next;
      n->listOwner = nullptr;
      n->inList = ListKind::None;
      n->prev = n->next = nullptr;
      delete n;
      n = following;
    }
    list->first = list->last = nullptr;
  }
  if (NodeRegistry* r = nodeRegistry()) {
    if (linkable) r->dropLinkable(marker, this);
    if (iface_) r->removeAllocated(iface_);
  }
}

void HostNode::attach(BaseList2D* iface, bool makeLinkable) {
  iface_ = iface;
  NodeRegistry* r = nodeRegistry();
  if (!r) return;
  r->addAllocated(iface_, this);
  if (marker == 0) marker = r->newMarker();
  if (makeLinkable) {
    linkable = true;
    r->setLinkable(marker, this);
  }
}

void HostNode::copyOwnFrom(const HostNode& src) {
  name = src.name;
  data = src.data;
}

void HostNode::swapOwnWith(HostNode& other) {
  std::swap(name, other.name);
  std::swap(data, other.data);
}

void HostNode::dumpOwn(DumpOut& out) const {
  out.key("name").text(name.ToStd());
  out.key("data").container(data);
}

HostNode* HostNode::parentObject() const {
  return listOwner && inList == ListKind::Children && listOwner->asObject() ? listOwner : nullptr;
}

DocumentNode* HostNode::documentNode() const {
  const HostNode* n = this;
  while (n) {
    if (DocumentNode* d = n->ownDocument()) return d;
    n = n->listOwner;
  }
  return nullptr;
}

BaseDocument* HostNode::documentIface() const {
  DocumentNode* d = documentNode();
  return d ? static_cast<BaseDocument*>(d->iface()) : nullptr;
}

NodeList* HostNode::ownList(ListKind k) {
  switch (k) {
    case ListKind::Children: return &children;
    case ListKind::Tags: return &tags;
    case ListKind::Tracks: return &tracks;
    default: return nullptr;
  }
}

static NodeList* listFor(HostNode* owner, ListKind k) {
  if (k == ListKind::Documents) return documentList();
  return owner ? owner->ownList(k) : nullptr;
}

bool HostNode::isAncestorOf(const HostNode* n) const {
  for (const HostNode* p = n; p; p = p->listOwner)
    if (p == this) return true;
  return false;
}

void HostNode::unlink() {
  if (inList == ListKind::None) return;
  NodeList* list = listFor(listOwner, inList);
  if (list) {
    if (prev) prev->next = next; else list->first = next;
    if (next) next->prev = prev; else list->last = prev;
  }
  prev = next = nullptr;
  listOwner = nullptr;
  inList = ListKind::None;
  if (ownership == Ownership::Tree) ownership = Ownership::Caller;
}

bool HostNode::insertInto(HostNode* owner, ListKind k, HostNode* pred) {
  if (owner && isAncestorOf(owner)) return false;  // would hang the tree under itself
  if (pred == this) pred = this->prev;
  NodeList* list = listFor(owner, k);
  if (!list) return false;
  if (pred && (pred->listOwner != owner || pred->inList != k)) return false;
  if (holder) detachFromHolder(this);
  unlink();
  listOwner = owner;
  inList = k;
  prev = pred;
  next = pred ? pred->next : list->first;
  if (prev) prev->next = this; else list->first = this;
  if (next) next->prev = this; else list->last = this;
  ownership = Ownership::Tree;
  return true;
}

bool HostNode::insertLastInto(HostNode* owner, ListKind k) {
  NodeList* list = listFor(owner, k);
  if (!list) return false;
  HostNode* pred = list->last == this ? prev : list->last;
  return insertInto(owner, k, pred);
}

bool refuseIfInserted(const HostNode* n, const char* call) {
  if (!n || !n->inTree()) return false;
  // The host does not move a node that is still in a list: it would leave the old list
  // pointing at it. The caller removes it first.
  consolePrint(std::string(call) + " refused: " + describeNode(n) + " is already inserted");
  return true;
}

void HostNode::insertRelative(GeListNode* other, int where) {
  HostNode* o = nodeOf(other);
  if (!o || o == this) return;
  static const char* const calls[] = {"InsertBefore", "InsertAfter", "InsertUnder", "InsertUnderLast"};
  if (refuseIfInserted(this, calls[where])) return;
  if (where == 0 || where == 1) {
    if (o->inList == ListKind::None) return;
    HostNode* pred = where == 1 ? o : o->prev;
    insertInto(o->listOwner, o->inList, pred);
    return;
  }
  const ListKind k = listUnder(*o);
  if (k == ListKind::None) return;
  if (where == 2)
    insertInto(o, k, nullptr);
  else
    insertLastInto(o, k);
}

ListKind HostNode::listUnder(const HostNode&) const { return ListKind::None; }

static bool componentIndex(LONG id, int& index) {
  if (id < VECTOR_X || id > VECTOR_Z) return false;
  index = int(id - VECTOR_X);
  return true;
}

static Real& component(Vector& v, int i) { return i == 0 ? v.x : (i == 1 ? v.y : v.z); }

bool HostNode::getParameter(const DescID& id, GeData& out) {
  if (id.GetDepth() < 1) return false;
  const LONG first = id[0].id;
  if (first == ID_BASELIST_NAME && id.GetDepth() == 1) {
    out = GeData(name);
    return true;
  }
  const GeData* d = data.GetDataPointer(first);
  if (!d) return false;
  if (id.GetDepth() == 1) {
    out = *d;
    return true;
  }
  int i = 0;
  if (id.GetDepth() == 2 && d->GetType() == DA_VECTOR && componentIndex(id[1].id, i)) {
    Vector v = d->GetVector();
    out = GeData(component(v, i));
    return true;
  }
  return false;
}

bool HostNode::setParameter(const DescID& id, const GeData& value) {
  if (id.GetDepth() < 1) return false;
  const LONG first = id[0].id;
  if (first == ID_BASELIST_NAME && id.GetDepth() == 1) {
    if (value.GetType() != DA_STRING) return false;
    name = value.GetString();
    return true;
  }
  if (id.GetDepth() == 1) {
    data.SetData(first, value);
    return true;
  }
  int i = 0;
  if (id.GetDepth() == 2 && componentIndex(id[1].id, i) && value.GetType() == DA_REAL) {
    const GeData* d = data.GetDataPointer(first);
    if (d && d->GetType() != DA_VECTOR) return false;
    Vector v = d ? d->GetVector() : Vector();
    component(v, i) = value.GetReal();
    data.SetVector(first, v);
    return true;
  }
  return false;
}

bool HostNode::message(LONG id, void* payload) {
  if (Journal* j = hostJournal()) {
    std::ostringstream s;
    s << describeNode(this) << " " << id;
    j->add(messageKind(), s.str());
  }
  if (NodeData* nd = nodeData()) return nd->Message(iface(), id, payload);
  return true;
}

CTrack* HostNode::firstTrack() const {
  return tracks.first ? static_cast<CTrack*>(tracks.first->iface()) : nullptr;
}

CTrack* HostNode::findTrack(const DescID& id) const {
  for (HostNode* n = tracks.first; n; n = n->next)
    if (const DescID* d = n->animatedId(); d && *d == id) return static_cast<CTrack*>(n->iface());
  return nullptr;
}

static bool descLess(const DescID& a, const DescID& b) {
  for (LONG i = 0; i < a.GetDepth() && i < b.GetDepth(); ++i)
    if (a[i].id != b[i].id) return a[i].id < b[i].id;
  return a.GetDepth() < b.GetDepth();
}

void HostNode::insertTrackSorted(CTrack* track) {
  HostNode* t = nodeOf(track);
  if (!t || !t->animatedId() || t == this || animatedId()) return;  // tracks hold no tracks
  if (refuseIfInserted(t, "InsertTrackSorted")) return;
  const DescID& id = *t->animatedId();
  HostNode* pred = nullptr;
  for (HostNode* n = tracks.first; n; n = n->next) {
    if (n == t) continue;
    if (descLess(id, *n->animatedId())) break;
    pred = n;
  }
  t->insertInto(this, ListKind::Tracks, pred);
}

HostNode* HostNode::deepCopy(bool withTags, bool withTracks, bool withChildren, bool keepMarkers) const {
  HostNode* copy = makeBlank();
  if (!copy) return nullptr;
  if (keepMarkers) {
    // Snapshots share the identity of what they copy and are not reachable through links.
    copy->setLinkableDeep(false);
    copy->marker = marker;
    copy->ownership = Ownership::Snapshot;
  }
  copy->copyOwnFrom(*this);
  copy->selected = keepMarkers && selected;
  auto copyList = [&](const NodeList& src, ListKind k, bool deep) {
    for (HostNode* n = src.first; n; n = n->next) {
      HostNode* c = n->deepCopy(true, true, deep, keepMarkers);
      if (c) c->insertLastInto(copy, k);
      if (c && keepMarkers) c->ownership = Ownership::Snapshot;
    }
  };
  if (withTags) copyList(tags, ListKind::Tags, true);
  if (withTracks) copyList(tracks, ListKind::Tracks, true);
  if (withChildren) copyList(children, ListKind::Children, true);
  return copy;
}

void HostNode::setLinkable(bool on) {
  NodeRegistry* r = nodeRegistry();
  if (r && on != linkable) {
    if (on)
      r->setLinkable(marker, this);
    else
      r->dropLinkable(marker, this);
  }
  linkable = on;
}

void HostNode::setLinkableDeep(bool on) {
  setLinkable(on);
  for (NodeList* list : {&children, &tags, &tracks})
    for (HostNode* n = list->first; n; n = n->next) n->setLinkableDeep(on);
}

void HostNode::setOwnershipDeep(Ownership o) {
  ownership = o;
  for (NodeList* list : {&children, &tags, &tracks})
    for (HostNode* n = list->first; n; n = n->next) n->setOwnershipDeep(o == Ownership::Snapshot ? o : Ownership::Tree);
}

void destroyNode(HostNode* node) {
  if (!node) return;
  node->unlink();
  if (node->holder) {
    node->holder->adoptFreed(node);
    return;
  }
  delete node;
}

std::vector<HostNode*> NodeRegistry::roots() const {
  std::vector<HostNode*> out;
  for (const auto& e : allocated_) {
    HostNode* n = e.second;
    if (n->inList == ListKind::None && !n->listOwner && !n->holder && n->ownership == Ownership::Caller &&
        !n->keptByDocument())
      out.push_back(n);
  }
  return out;
}

HostNode* nodeOf(const void* p) {
  NodeRegistry* r = nodeRegistry();
  return r && p ? r->fromPointer(p) : nullptr;
}

std::string describeNode(const HostNode* n) {
  if (!n) return "(null)";
  std::ostringstream s;
  s << n->kindName() << ":" << n->type << " '" << n->name.ToStd() << "'";
  return s.str();
}

std::string describeData(const GeData& d) {
  std::ostringstream s;
  s.precision(9);
  switch (d.GetType()) {
    case DA_NIL: s << "nil"; break;
    case DA_LONG: s << "L" << d.GetLong(); break;
    case DA_REAL: s << "R" << d.GetReal(); break;
    case DA_LREAL: s << "D" << d.GetLReal(); break;
    case DA_VECTOR: {
      Vector v = d.GetVector();
      s << "V(" << v.x << "," << v.y << "," << v.z << ")";
      break;
    }
    case DA_MATRIX: {
      Matrix m = d.GetMatrix();
      s << "M(" << m.off.x << "," << m.off.y << "," << m.off.z << ";" << m.v1.x << "," << m.v1.y << "," << m.v1.z
        << ";" << m.v2.x << "," << m.v2.y << "," << m.v2.z << ";" << m.v3.x << "," << m.v3.y << "," << m.v3.z << ")";
      break;
    }
    case DA_STRING: s << "S\"" << d.GetString().ToStd() << "\""; break;
    case DA_TIME: s << "T" << d.GetTime().GetNumerator() << "/" << d.GetTime().GetDenominator(); break;
    case DA_VOID: s << "P" << (d.GetVoid() ? "set" : "null"); break;
    case DA_ALIASLINK: {
      BaseLink* l = d.GetBaseLink();
      HostNode* n = l ? nodeOf(l->ForceGetLink()) : nullptr;
      s << "link:" << (n ? std::to_string(n->marker) : std::string("none"));
      break;
    }
    default: s << "?"; break;
  }
  return s.str();
}

std::string describeDescID(const DescID& id) {
  std::string s;
  for (LONG i = 0; i < id.GetDepth(); ++i) {
    if (i) s += '.';
    s += std::to_string(id[i].id);
  }
  return s;
}

}  // namespace tvr::plr::embedded
