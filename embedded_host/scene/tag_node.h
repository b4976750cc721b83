#pragma once
// Tags: plain and plug-in tags (whose behaviour is a registered TagData), and
// the scene-hook nodes a document keeps for each registered scene hook.
#include "embedded_host/scene/node_impl.h"

namespace tvr::plr::embedded {

class TagNode : public HostNode {
 public:
  explicit TagNode(LONG type) : HostNode(NodeKind::Tag, type) {}

  HostNode* makeBlank() const override;
  void copyOwnFrom(const HostNode& src) override;
  // Plug-in data travels too: its state is traded through the plug-in's own CopyTo.
  void swapOwnWith(HostNode& other) override;
  NodeData* nodeData() const override { return pluginData; }
  void releasePluginData() override;
  // Tags go under objects only.
  ListKind listUnder(const HostNode& owner) const override {
    return owner.asObject() ? ListKind::Tags : ListKind::None;
  }
  bool isInstanceOf(LONG t) const override { return t == Tbase || HostNode::isInstanceOf(t); }
  const char* kindName() const override { return "tag"; }
  BaseObject* object() const;
  BaseTag* cloneTag() const;

  NodeData* pluginData = nullptr;  // owned; made by the plug-in's allocator
};

template <class Base = BaseTag, class Core = TagNode>
class TagImplT : public NodeImpl<Base, Core> {
 public:
  using NodeImpl<Base, Core>::NodeImpl;
  BaseObject* GetObject() override { return Core::object(); }
  BaseTag* GetClone(LONG, AliasTrans*) override { return Core::cloneTag(); }
};

using PluginTagImpl = TagImplT<PluginTag, TagNode>;

// A plug-in tag of a registered tag plug-in (null when the allocator or Init fails).
HostNode* makePluginTag(LONG type, DataAllocator* allocator);

class SceneHookNode : public HostNode {
 public:
  SceneHookNode(LONG type, DocumentNode* doc) : HostNode(NodeKind::SceneHook, type), document(doc) {}

  HostNode* makeBlank() const override { return nullptr; }  // not copied
  DocumentNode* ownDocument() const override { return document; }
  bool keptByDocument() const override { return true; }
  const char* kindName() const override { return "scenehook"; }
  NodeData* nodeData() const override { return pluginData; }
  void releasePluginData() override;

  DocumentNode* document;
  NodeData* pluginData = nullptr;
};

using SceneHookImpl = NodeImpl<BaseSceneHook, SceneHookNode>;

}  // namespace tvr::plr::embedded
