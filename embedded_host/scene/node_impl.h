#pragma once
// NodeImpl puts an SDK interface (Base) in front of a host node (Core): every
// GeListNode and BaseList2D operation is answered by the host node.
#include "embedded_host/scene/host_node.h"

namespace tvr::plr::embedded {

template <class Base, class Core>
class NodeImpl : public Base, public Core {
 public:
  using Core::Core;
  // Plug-in data is released while the whole node is still intact.
  ~NodeImpl() override { Core::releasePluginData(); }

  // GeListNode
  void InsertBefore(GeListNode* bl) override { Core::insertRelative(bl, 0); }
  void InsertAfter(GeListNode* bl) override { Core::insertRelative(bl, 1); }
  void InsertUnder(GeListNode* bl) override { Core::insertRelative(bl, 2); }
  void InsertUnderLast(GeListNode* bl) override { Core::insertRelative(bl, 3); }
  void Remove() override { Core::unlink(); }
  Bool Message(LONG id, void* payload) override { return Core::message(id, payload); }
  BaseDocument* GetDocument() override { return Core::documentIface(); }
  NodeData* GetNodeData() override { return Core::nodeData(); }

  // BaseList2D
  String GetName() const override { return Core::name; }
  void SetName(const String& n) override { Core::name = n; }
  BaseContainer* GetDataInstance() override { return &this->Core::data; }
  LONG GetType() const override { return Core::type; }
  Bool IsInstanceOf(LONG t) const override { return Core::isInstanceOf(t); }
  Bool GetParameter(const DescID& id, GeData& d, LONG) override { return Core::getParameter(id, d); }
  Bool SetParameter(const DescID& id, const GeData& d, LONG) override { return Core::setParameter(id, d); }
  CTrack* GetFirstCTrack() override { return Core::firstTrack(); }
  CTrack* FindCTrack(const DescID& id) override { return Core::findTrack(id); }
  void InsertTrackSorted(CTrack* t) override { Core::insertTrackSorted(t); }

 protected:
  GeListNode* NodeNext() override { return Core::next ? Core::next->iface() : nullptr; }
  GeListNode* NodePred() override { return Core::prev ? Core::prev->iface() : nullptr; }
  GeListNode* NodeUp() override {
    HostNode* p = Core::parentObject();
    return p ? p->iface() : nullptr;
  }
  GeListNode* NodeDown() override { return Core::children.first ? Core::children.first->iface() : nullptr; }
  GeListNode* NodeDownLast() override { return Core::children.last ? Core::children.last->iface() : nullptr; }
};

// Makes a node of class T and registers it (linkable: reachable through links).
template <class T, class... Args>
T* createNode(Args&&... args) {
  T* n = new T(std::forward<Args>(args)...);
  n->attach(n, true);
  return n;
}

}  // namespace tvr::plr::embedded
