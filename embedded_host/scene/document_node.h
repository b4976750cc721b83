#pragma once
// Documents: settings, objects, selection, undo stack, scene hooks, evaluation.
#include <vector>

#include "embedded_host/scene/node_impl.h"
#include "embedded_host/scene/tag_node.h"
#include "embedded_host/scene/undo_stack.h"

namespace tvr::plr::embedded {

struct DocumentSettings {
  Filename name{String("Untitled")};
  Filename path;
  LONG fps = 30;
  BaseTime time;
  BaseTime minTime;
  BaseTime maxTime{90, 30};
  BaseTime loopMinTime;
  BaseTime loopMaxTime{90, 30};
};

class DocumentNode : public HostNode {
 public:
  DocumentNode() : HostNode(NodeKind::Document, 0) {}
  ~DocumentNode() override;

  HostNode* makeBlank() const override { return nullptr; }  // documents are not copied
  DocumentNode* ownDocument() const override { return const_cast<DocumentNode*>(this); }
  bool takesObjects() const override { return true; }  // as top-level objects
  const char* messageKind() const override { return "DocumentMessage"; }
  const char* kindName() const override { return "document"; }
  void dumpOwn(DumpOut& out) const override;
  void releasePluginData() override;

  // InsertObject: after pred when it is in this document, else first child of parent, else first.
  // Refused for an object in a list already. checkNames renames op when another object of the
  // document carries its name.
  void insertObject(HostNode* op, HostNode* parent, HostNode* pred, bool checkNames = false);
  HostNode* activeObject() const;
  void setActiveObject(HostNode* op, LONG mode);
  // Tracks into parameters at the document time, then expression tags, objects depth first.
  bool executePasses(BaseThread* bt, bool animation, bool expressions);
  // One scene-hook node per registered scene hook, made when missing.
  void ensureSceneHooks();
  void messageSceneHooks(LONG id, void* data);
  void freeSceneHooks();
  // Frees objects, undo and hooks (at host shutdown, without messages).
  void clearContents();

  DocumentSettings settings;
  UndoStack undo;
  std::vector<SceneHookImpl*> hooks;  // owned
  bool changed = false;
};

class DocumentImpl : public NodeImpl<BaseDocument, DocumentNode> {
 public:
  DocumentImpl() : NodeImpl<BaseDocument, DocumentNode>() {}

  Filename GetDocumentName() override { return settings.name; }
  void SetDocumentName(const Filename& n) override { settings.name = n; }
  Filename GetDocumentPath() override { return settings.path; }
  void SetDocumentPath(const Filename& p) override { settings.path = p; }
  BaseObject* GetFirstObject() override {
    return children.first ? static_cast<BaseObject*>(children.first->iface()) : nullptr;
  }
  void InsertObject(BaseObject* op, BaseObject* parent, BaseObject* pred, Bool checkNames) override;
  BaseObject* GetActiveObject() override {
    HostNode* n = activeObject();
    return n ? static_cast<BaseObject*>(n->iface()) : nullptr;
  }
  void SetActiveObject(BaseObject* op, LONG mode) override { setActiveObject(nodeOf(op), mode); }
  BaseTime GetTime() const override { return settings.time; }
  void SetTime(const BaseTime& t) override { settings.time = t; }
  LONG GetFps() const override { return settings.fps; }
  void SetFps(LONG fps) override {
    if (fps > 0) settings.fps = fps;
  }
  BaseTime GetMinTime() const override { return settings.minTime; }
  void SetMinTime(const BaseTime& t) override { settings.minTime = t; }
  BaseTime GetMaxTime() const override { return settings.maxTime; }
  void SetMaxTime(const BaseTime& t) override { settings.maxTime = t; }
  BaseTime GetLoopMinTime() const override { return settings.loopMinTime; }
  void SetLoopMinTime(const BaseTime& t) override { settings.loopMinTime = t; }
  BaseTime GetLoopMaxTime() const override { return settings.loopMaxTime; }
  void SetLoopMaxTime(const BaseTime& t) override { settings.loopMaxTime = t; }
  Bool StartUndo() override;
  Bool EndUndo() override;
  Bool DoUndo(Bool multiple) override;
  Bool DoRedo() override;
  Bool ExecutePasses(BaseThread* bt, Bool animation, Bool expressions, Bool caches) override;
  void SetChanged() override { changed = true; }
  Bool GetChanged() override { return changed; }
};

DocumentImpl* makeDocument();
// The add-undo service behind the table slot.
LONG hostAddUndo(BaseDocument* doc, void* element, LONG type);

}  // namespace tvr::plr::embedded
