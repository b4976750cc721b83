#pragma once
// The host-side part of every node the host makes (objects, tags, tracks,
// documents, scene hooks): identity, tree links, own state, deep copies and
// the swaps that undo and redo perform. The SDK-facing classes in node_impl.h
// put an SDK interface in front of a HostNode.
#include <cstdint>
#include <ostream>
#include <string>

#include "host_api/c4d.h"

namespace tvr::plr::embedded {

class HostNode;
class DocumentNode;
class ObjectNode;
class UndoRecord;
class DumpOut;

// What a node is, for code that checks an SDK pointer it was handed (BaseObject::Free given a tag,
// AddUndo given something other than a document). The node classes themselves answer what differs
// by kind through virtual calls.
enum class NodeKind { Object, Tag, Track, Document, SceneHook };
enum class ListKind { None, Children, Tags, Tracks, Documents };
// Who is responsible for freeing a node that is not in a list.
enum class Ownership { Caller, Tree, Undo, Snapshot };

struct NodeList {
  HostNode* first = nullptr;
  HostNode* last = nullptr;
};

class HostNode {
 public:
  HostNode(NodeKind kind, LONG type);
  // Frees children, tags and tracks with it and forgets it in the registry.
  virtual ~HostNode();
  HostNode(const HostNode&) = delete;
  HostNode& operator=(const HostNode&) = delete;
  // Freed nodes' memory is held back for a while (node_memory.h).
  static void* operator new(std::size_t size);
  static void operator delete(void* p, std::size_t size);

  BaseList2D* iface() const { return iface_; }
  // Called once by the factory: the SDK pointer, registered as allocated (and linkable when asked).
  void attach(BaseList2D* iface, bool linkable);

  // Own state: name, container and what subclasses add (transforms, keys, geometry, ...).
  virtual void copyOwnFrom(const HostNode& src);
  virtual void swapOwnWith(HostNode& other);
  // Every field of the own state as " key=value", in a fixed order (see scene_dump.h).
  virtual void dumpOwn(DumpOut& out) const;
  // A new node of the same concrete class and type, with default state, registered.
  virtual HostNode* makeBlank() const = 0;

  // Tree.
  HostNode* parentObject() const;  // objects only
  DocumentNode* documentNode() const;
  BaseDocument* documentIface() const;
  NodeList* ownList(ListKind k);
  // Moves this node into owner's list after pred (first when pred is null). Refuses cycles.
  bool insertInto(HostNode* owner, ListKind list, HostNode* pred);
  bool insertLastInto(HostNode* owner, ListKind list);
  void unlink();
  bool isAncestorOf(const HostNode* n) const;
  bool inTree() const { return inList != ListKind::None; }

  // SDK-level insertion relative to another node (InsertBefore/After/Under).
  void insertRelative(GeListNode* other, int where);  // 0 before, 1 after, 2 under first, 3 under last
  // The list this node joins when inserted under owner; None refuses (each kind decides where it goes).
  virtual ListKind listUnder(const HostNode& owner) const;
  // Objects inserted under this node become its children (objects and documents).
  virtual bool takesObjects() const { return false; }
  // This node as an object; null for anything else.
  virtual ObjectNode* asObject() { return nullptr; }
  virtual const ObjectNode* asObject() const { return nullptr; }

  virtual bool getParameter(const DescID& id, GeData& out);
  virtual bool setParameter(const DescID& id, const GeData& value);
  virtual NodeData* nodeData() const { return nullptr; }
  // The document this node belongs to by its own nature (a document itself, a scene hook's
  // document); null for nodes that belong to one only through the tree.
  virtual DocumentNode* ownDocument() const { return nullptr; }
  // The parameter a track animates; null for anything but a track.
  virtual const DescID* animatedId() const { return nullptr; }
  // Frees plug-in data (its code lives in a module); runs first in destruction.
  virtual void releasePluginData() {}
  virtual bool message(LONG id, void* data);
  // The journal kind under which messages to this node are noted.
  virtual const char* messageKind() const { return "Message"; }
  // This node's type or one of the base types it counts as (Obase, Tbase, ...).
  virtual bool isInstanceOf(LONG t) const { return t == type; }
  // What the node is in journal lines: "object", "tag", ...
  virtual const char* kindName() const { return "node"; }
  // Kept by its document outside every list (scene hooks): never a free-standing node.
  virtual bool keptByDocument() const { return false; }

  // Tracks.
  CTrack* firstTrack() const;
  CTrack* findTrack(const DescID& id) const;
  void insertTrackSorted(CTrack* track);

  // A copy with own state and, as asked, tags, tracks and children. keepMarkers makes an undo
  // snapshot (same identities, not linkable); otherwise a clone with fresh identities.
  HostNode* deepCopy(bool withTags, bool withTracks, bool withChildren, bool keepMarkers) const;
  // Undo and redo: trades own state and, as asked, lists with other (a copy under the same
  // identities). Nodes present on both sides stay on the live side and trade contents, so
  // pointers held to them keep reaching the live scene.
  void exchangeWith(HostNode& other, bool withTags, bool withTracks, bool withChildren);
  // Registers or unregisters this node's marker (setLinkableDeep: with its tags, tracks, children).
  void setLinkable(bool on);
  void setLinkableDeep(bool on);
  void setOwnershipDeep(Ownership o);

  const NodeKind kind;
  const LONG type;
  std::uint64_t marker = 0;
  bool linkable = false;
  Ownership ownership = Ownership::Caller;
  UndoRecord* holder = nullptr;  // the undo record holding this node out of the scene
  bool selected = false;

  String name;
  BaseContainer data;

  HostNode* listOwner = nullptr;
  ListKind inList = ListKind::None;
  NodeList children, tags, tracks;
  HostNode* prev = nullptr;
  HostNode* next = nullptr;

 private:
  // Beside the links: walking a list (GetNext) reads the next node's pointer and its interface.
  BaseList2D* iface_ = nullptr;
};

// Frees a node the way BaseObject::Free and friends do: out of the tree first. A node held by
// an undo record becomes that record's snapshot instead, so undo can still bring it back.
void destroyNode(HostNode* node);

// SDK insertions of a node that is in a list already are refused with a console line naming
// the call; true when refused.
bool refuseIfInserted(const HostNode* n, const char* call);

// The running host's list of documents (null when no host runs).
NodeList* documentList();

// The HostNode behind an SDK pointer made by this host; null for anything else.
HostNode* nodeOf(const void* p);

std::string describeNode(const HostNode* n);  // "Camera 'name'" for journals
std::string describeData(const GeData& d);
std::string describeDescID(const DescID& id);

}  // namespace tvr::plr::embedded
