#include "embedded_host/scene/object_node.h"

#include <cmath>
#include <cstring>

#include "embedded_host/scene/node_makers.h"
#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/scene/tag_node.h"

namespace tvr::plr::embedded {

void ObjectNode::copyOwnFrom(const HostNode& src) {
  HostNode::copyOwnFrom(src);
  if (const ObjectNode* o = src.asObject()) state = o->state;
}

void ObjectNode::swapOwnWith(HostNode& other) {
  HostNode::swapOwnWith(other);
  if (ObjectNode* o = other.asObject()) std::swap(state, o->state);
}

void ObjectNode::dumpOwn(DumpOut& out) const {
  HostNode::dumpOwn(out);
  out.key("pos").vec(state.pos);
  out.key("rot").vec(state.rot);
  out.key("scale").vec(state.scale);
  out.key("modes") << state.editorMode << '/' << state.renderMode;
  out.key("color") << state.color.usecolor;
  out.key("rgb").vec(state.color.color);
  out.key("xray") << int(state.color.xray);
}

HostNode* ObjectNode::makeBlank() const {
  NodeMakers* m = nodeMakers();
  return m ? m->makeObject(type) : nullptr;
}

ListKind ObjectNode::listUnder(const HostNode& owner) const {
  return owner.takesObjects() ? ListKind::Children : ListKind::None;
}

static Vector* transformPart(ObjectState& s, LONG id) {
  switch (id) {
    case ID_BASEOBJECT_POSITION: return &s.pos;
    case ID_BASEOBJECT_ROTATION: return &s.rot;
    case ID_BASEOBJECT_SCALE: return &s.scale;
    default: return nullptr;
  }
}

static Real* vectorPart(Vector& v, LONG id) {
  switch (id) {
    case VECTOR_X: return &v.x;
    case VECTOR_Y: return &v.y;
    case VECTOR_Z: return &v.z;
    default: return nullptr;
  }
}

bool ObjectNode::getParameter(const DescID& id, GeData& out) {
  Vector* v = id.GetDepth() >= 1 ? transformPart(state, id[0].id) : nullptr;
  if (!v) return HostNode::getParameter(id, out);
  if (id.GetDepth() == 1) {
    out = GeData(*v);
    return true;
  }
  Real* r = id.GetDepth() == 2 ? vectorPart(*v, id[1].id) : nullptr;
  if (!r) return false;
  out = GeData(*r);
  return true;
}

bool ObjectNode::setParameter(const DescID& id, const GeData& value) {
  Vector* v = id.GetDepth() >= 1 ? transformPart(state, id[0].id) : nullptr;
  if (!v) return HostNode::setParameter(id, value);
  if (id.GetDepth() == 1) {
    if (value.GetType() != DA_VECTOR) return false;
    *v = value.GetVector();
    return true;
  }
  Real* r = id.GetDepth() == 2 ? vectorPart(*v, id[1].id) : nullptr;
  if (!r || value.GetType() != DA_REAL) return false;
  *r = value.GetReal();
  return true;
}

static bool sameBits(const Vector& a, const Vector& b) { return std::memcmp(&a, &b, sizeof(Vector)) == 0; }

Matrix ObjectNode::localMatrix() const {
  if (made_.valid && sameBits(made_.pos, state.pos) && sameBits(made_.rot, state.rot) &&
      sameBits(made_.scale, state.scale))
    return made_.m;
  Matrix r = HPBToMatrix(state.rot, ROTATIONORDER_HPB);
  r.off = state.pos;
  r.v1 *= state.scale.x;
  r.v2 *= state.scale.y;
  r.v3 *= state.scale.z;
  made_ = {state.pos, state.rot, state.scale, r, true};
  return r;
}

void ObjectNode::setLocalMatrix(const Matrix& m) {
  state.pos = m.off;
  state.scale = Vector(Len(m.v1), Len(m.v2), Len(m.v3));
  state.rot = MatrixToHPB(m, ROTATIONORDER_HPB);
}

Matrix ObjectNode::globalMatrix() const {
  Matrix g = localMatrix();
  for (const HostNode* p = parentObject(); p; p = p->parentObject())
    g = p->asObject()->localMatrix() * g;
  return g;
}

void ObjectNode::setGlobalMatrix(const Matrix& m) {
  const HostNode* p = parentObject();
  if (!p) {
    setLocalMatrix(m);
    return;
  }
  setLocalMatrix(!p->asObject()->globalMatrix() * m);
}

BaseObject* ObjectNode::cloneObject(LONG flags) const {
  HostNode* c = deepCopy(true, true, (flags & COPY_NO_HIERARCHY) == 0, false);
  return c ? static_cast<BaseObject*>(c->iface()) : nullptr;
}

BaseTag* ObjectNode::firstTag() const { return tags.first ? static_cast<BaseTag*>(tags.first->iface()) : nullptr; }

BaseTag* ObjectNode::tagOfType(LONG t, LONG nr) const {
  for (HostNode* n = tags.first; n; n = n->next)
    if (n->type == t && nr-- == 0) return static_cast<BaseTag*>(n->iface());
  return nullptr;
}

void ObjectNode::insertTag(BaseTag* tag, BaseTag* pred) {
  HostNode* t = nodeOf(tag);
  if (!t || t->kind != NodeKind::Tag || refuseIfInserted(t, "InsertTag")) return;
  HostNode* p = nodeOf(pred);
  if (p && (p->listOwner != this || p->inList != ListKind::Tags)) p = nullptr;
  t->insertInto(this, ListKind::Tags, p);
}

BaseTag* ObjectNode::makeTag(LONG t, BaseTag* pred) {
  NodeMakers* m = nodeMakers();
  HostNode* n = m ? m->makeTag(t, 0) : nullptr;
  if (!n) return nullptr;
  BaseTag* tag = static_cast<BaseTag*>(n->iface());
  insertTag(tag, pred);
  return tag;
}

void ObjectNode::killTag(LONG t, LONG nr) {
  if (BaseTag* tag = tagOfType(t, nr)) destroyNode(nodeOf(tag));
}

void registerPlainObjectKinds() {
  NodeMakers* m = nodeMakers();
  if (!m) return;
  m->addObject(Onull, [](LONG type, LONG) -> HostNode* { return createNode<PlainObject>(type); });
  m->addObject(Ocamera, [](LONG type, LONG) -> HostNode* {
    PlainObject* cam = createNode<PlainObject>(type);
    cam->data.SetReal(CAMERAOBJECT_FOV, CAMERAOBJECT_FOV_DEFAULT);
    cam->data.SetReal(CAMERAOBJECT_APERTURE, CAMERAOBJECT_APERTURE_DEFAULT);
    return cam;
  });
}

}  // namespace tvr::plr::embedded
