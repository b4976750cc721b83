#pragma once
// Objects: transform (position, rotation, scale), modes, display colour, tags,
// tracks and children. Kinds with more state (geometry) derive from ObjectNode
// and extend the own-state hooks.
#include "embedded_host/scene/node_impl.h"

namespace tvr::plr::embedded {

struct ObjectState {
  Vector pos;
  Vector rot;  // heading, pitch, bank
  Vector scale{1, 1, 1};
  LONG editorMode = MODE_UNDEF;
  LONG renderMode = MODE_UNDEF;
  ObjectColorProperties color;
};

class ObjectNode : public HostNode {
 public:
  explicit ObjectNode(LONG type) : HostNode(NodeKind::Object, type) {}

  void copyOwnFrom(const HostNode& src) override;
  void swapOwnWith(HostNode& other) override;
  void dumpOwn(DumpOut& out) const override;
  HostNode* makeBlank() const override;
  bool getParameter(const DescID& id, GeData& out) override;
  bool setParameter(const DescID& id, const GeData& value) override;
  ListKind listUnder(const HostNode& owner) const override;
  bool takesObjects() const override { return true; }
  ObjectNode* asObject() override { return this; }
  const ObjectNode* asObject() const override { return this; }
  bool isInstanceOf(LONG t) const override { return t == Obase || HostNode::isInstanceOf(t); }
  const char* kindName() const override { return "object"; }

  Matrix localMatrix() const;
  void setLocalMatrix(const Matrix& m);
  Matrix globalMatrix() const;
  void setGlobalMatrix(const Matrix& m);

  BaseObject* cloneObject(LONG flags) const;
  BaseTag* firstTag() const;
  BaseTag* tagOfType(LONG type, LONG nr) const;
  void insertTag(BaseTag* tag, BaseTag* pred);
  BaseTag* makeTag(LONG type, BaseTag* pred);
  void killTag(LONG type, LONG nr);

  ObjectState state;

 private:
  // The last local matrix made, for the position, rotation and scale it was made from (bit for
  // bit): a parent's matrix is asked for once per child and frame while recording.
  struct MadeMatrix {
    Vector pos, rot, scale;
    Matrix m;
    bool valid = false;
  };
  mutable MadeMatrix made_;
};

template <class Base = BaseObject, class Core = ObjectNode>
class ObjectImplT : public NodeImpl<Base, Core> {
 public:
  using NodeImpl<Base, Core>::NodeImpl;

  BaseObject* GetClone(LONG flags, AliasTrans*) override { return Core::cloneObject(flags); }
  Vector GetPos() const override { return Core::state.pos; }
  void SetPos(const Vector& v) override { Core::state.pos = v; }
  Vector GetRot() const override { return Core::state.rot; }
  void SetRot(const Vector& v) override { Core::state.rot = v; }
  Vector GetScale() const override { return Core::state.scale; }
  void SetScale(const Vector& v) override { Core::state.scale = v; }
  Matrix GetMl() const override { return Core::localMatrix(); }
  void SetMl(const Matrix& m, Bool) override { Core::setLocalMatrix(m); }
  Matrix GetMg() const override { return Core::globalMatrix(); }
  void SetMg(const Matrix& m, Bool) override { Core::setGlobalMatrix(m); }
  LONG GetEditorMode() const override { return Core::state.editorMode; }
  void SetEditorMode(LONG mode) override { Core::state.editorMode = mode; }
  LONG GetRenderMode() const override { return Core::state.renderMode; }
  void SetRenderMode(LONG mode) override { Core::state.renderMode = mode; }
  void GetColorProperties(ObjectColorProperties* co) const override {
    if (co) *co = Core::state.color;
  }
  void SetColorProperties(ObjectColorProperties* co) override {
    if (co) Core::state.color = *co;
  }
  BaseTag* GetFirstTag() override { return Core::firstTag(); }
  BaseTag* GetTag(LONG t, LONG nr) override { return Core::tagOfType(t, nr); }
  void InsertTag(BaseTag* tag, BaseTag* pred) override { Core::insertTag(tag, pred); }
  BaseTag* MakeTag(LONG t, BaseTag* pred) override { return Core::makeTag(t, pred); }
  void KillTag(LONG t, LONG nr) override { Core::killTag(t, nr); }
  SplineObject* GetRealSpline() override { return nullptr; }
};

// Objects without state of their own kind: null, camera and the like.
using PlainObject = ObjectImplT<BaseObject, ObjectNode>;

// Makers for the object kinds this host knows by itself.
void registerPlainObjectKinds();

}  // namespace tvr::plr::embedded
