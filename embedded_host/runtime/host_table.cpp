#include "embedded_host/runtime/host_table.h"

#include <cstdio>
#include <new>
#include <sstream>

#include "embedded_host/scene/document_node.h"
#include "embedded_host/runtime/host_context.h"
#include "embedded_host/scene/link_impl.h"
#include "embedded_host/scene/node_memory.h"
#include "embedded_host/geometry/ray_collider.h"
#include "embedded_host/scene/track_node.h"
#include "embedded_host/runtime/embedded_host.h"

namespace tvr::plr::embedded {

namespace {

HostContext* ctx() { return context(); }

void journal(const char* kind, const std::string& text) {
  if (HostContext* c = ctx()) c->journal.add(kind, text);
}

void* hostAlloc(std::size_t size) { return ::operator new(size, std::nothrow); }
void hostFree(void* p) { ::operator delete(p); }

// A pointer freed before finds no node (its memory is held back, see node_memory.h): said, no effect.
bool refuseFreedBefore(HostContext* c, const void* p, const char* what) {
  if (!c || !p || nodeOf(p) || !nodememory::wasFreed(p)) return false;
  c->console.print(std::string(what) + " refused: freed before");
  return true;
}

// Frees a node that a module hands back, unless it is part of an undo copy.
void freeNode(const void* p, NodeKind kind, const char* what) {
  HostContext* c = ctx();
  if (refuseFreedBefore(c, p, what)) return;
  HostNode* n = nodeOf(p);
  if (!c || !n) return;
  if (n->kind != kind || n->ownership == Ownership::Snapshot) {
    c->console.print(std::string(what) + " refused: " + describeNode(n));
    return;
  }
  destroyNode(n);
}

BaseObject* objectAlloc(LONG type) {
  HostContext* c = ctx();
  HostNode* n = c ? c->makers.makeObject(type) : nullptr;
  return n ? static_cast<BaseObject*>(n->iface()) : nullptr;
}
void objectFree(BaseObject* op) { freeNode(op, NodeKind::Object, "BaseObject::Free"); }

BaseTag* tagAlloc(LONG type, LONG count) {
  HostContext* c = ctx();
  HostNode* n = c ? c->makers.makeTag(type, count) : nullptr;
  return n ? static_cast<BaseTag*>(n->iface()) : nullptr;
}
void tagFree(BaseTag* tag) { freeNode(tag, NodeKind::Tag, "BaseTag::Free"); }

BaseLink* linkAlloc() { return allocLink(); }
void linkFree(BaseLink* link) { freeLink(link); }

CTrack* trackAlloc(BaseList2D* owner, const DescID& id) {
  if (!ctx()) return nullptr;
  (void)owner;  // a track belongs to an object only once inserted
  return makeTrack(id);
}
void trackFree(CTrack* track) { freeNode(track, NodeKind::Track, "CTrack::Free"); }

BaseDocument* documentAlloc() { return ctx() ? makeDocument() : nullptr; }

void documentFree(BaseDocument* doc) {
  HostContext* c = ctx();
  if (refuseFreedBefore(c, doc, "BaseDocument::Free")) return;
  HostNode* n = nodeOf(doc);
  if (!c || !n || n->kind != NodeKind::Document) return;
  if (n->inTree() && c->host) {
    c->host->removeDocument(doc);
    return;
  }
  delete n;
}

void insertBaseDocument(BaseDocument* doc) {
  HostContext* c = ctx();
  HostNode* n = nodeOf(doc);
  if (!c || !c->host || !n || n->kind != NodeKind::Document || n->inTree()) return;
  c->host->insertDocument(doc);
}

void setActiveDocument(BaseDocument* doc) {
  HostContext* c = ctx();
  if (c && c->host) c->host->activateDocument(doc);
}

BaseDocument* getActiveDocument() {
  HostContext* c = ctx();
  return c && c->active ? static_cast<BaseDocument*>(c->active->iface()) : nullptr;
}

BaseDocument* getFirstDocument() {
  HostContext* c = ctx();
  return c && c->documents.first ? static_cast<BaseDocument*>(c->documents.first->iface()) : nullptr;
}

void eventAdd(LONG flags) {
  HostContext* c = ctx();
  if (!c) return;
  c->journal.add("EventAdd", std::to_string(flags));
  c->eventPending = true;
}

Bool drawViews(LONG flags, BaseDraw*) {
  journal("DrawViews", std::to_string(flags));
  return ctx() != nullptr;
}

Bool geSyncMessage(LONG id, LONG dest, VULONG p1, VULONG p2) {
  HostContext* c = ctx();
  if (!c) return false;
  std::ostringstream s;
  s << id << " " << dest << " " << p1 << " " << p2;
  c->journal.add("GeSyncMessage", s.str());
  deliverCoreMessage(c->plugins, id, p1, p2);
  return true;
}

void specialEventAdd(LONG id, VULONG p1, VULONG p2) {
  HostContext* c = ctx();
  if (!c) return;
  std::ostringstream s;
  s << id << " " << p1 << " " << p2;
  c->journal.add("SpecialEventAdd", s.str());
  c->specialEvents.push_back({id, p1, p2});
}

void gePrint(const String& text) {
  if (HostContext* c = ctx()) c->console.print(text.ToStd());
}
void messageDialog(const String& text) {
  if (HostContext* c = ctx()) c->console.dialog(text.ToStd());
}
void stopAllThreads() { journal("StopAllThreads", ""); }
void freeResource() { journal("FreeResource", ""); }
LONG getC4DVersion() {
  HostContext* c = ctx();
  return c ? c->c4dVersion : 0;
}
BaseContainer* getWorldContainerInstance() {
  HostContext* c = ctx();
  return c ? &c->world : nullptr;
}

// Checks shared by every registration; on refusal the host still takes the data object.
// hasCode: the data object or allocator the plug-in runs on was given.
bool mayRegister(HostContext* c, LONG id, const String& name, const char* kind, BaseData* data, bool hasCode,
                 const char* missing) {
  if (!c) return false;
  std::string why;
  if (!c->starting)
    why = "not while the host is starting modules";
  else if (c->plugins.isRegistered(id))
    why = "id already registered";
  else if (!hasCode)
    why = missing;
  std::ostringstream s;
  s << kind << " " << id << " '" << name.ToStd() << "'" << (why.empty() ? "" : " refused: " + why);
  c->journal.add("Register", s.str());
  if (why.empty()) return true;
  c->console.print("Register" + std::string(kind) + "Plugin " + std::to_string(id) + " failed: " + why);
  if (data) c->plugins.orphans.push_back(data);
  return false;
}

std::string iconName(BaseBitmap* icon) { return icon ? icon->GetFilename().GetString().ToStd() : std::string(); }

Bool registerCommand(LONG id, const String& name, LONG info, BaseBitmap* icon, const String& help, CommandData* data) {
  HostContext* c = ctx();
  if (!mayRegister(c, id, name, "Command", data, data != nullptr, "no command data")) return false;
  c->plugins.commands.push_back({{id, name.ToStd(), info}, iconName(icon), help.ToStd(), data});
  return true;
}

Bool registerSceneHook(LONG id, const String& name, LONG info, DataAllocator* allocator, LONG priority, LONG diskLevel,
                       void*) {
  HostContext* c = ctx();
  if (!mayRegister(c, id, name, "SceneHook", nullptr, allocator != nullptr, "no allocator")) return false;
  c->plugins.sceneHooks.push_back({{id, name.ToStd(), info}, "", "", priority, diskLevel, allocator});
  return true;
}

Bool registerTag(LONG id, const String& name, LONG info, DataAllocator* allocator, const String& description,
                 BaseBitmap* icon, LONG diskLevel) {
  HostContext* c = ctx();
  if (!mayRegister(c, id, name, "Tag", nullptr, allocator != nullptr, "no allocator")) return false;
  c->plugins.tags.push_back(
      {{id, name.ToStd(), info}, description.ToStd(), iconName(icon), 0, diskLevel, allocator});
  return true;
}

Bool registerMessage(LONG id, const String& name, LONG info, MessageData* data) {
  HostContext* c = ctx();
  if (!mayRegister(c, id, name, "Message", data, data != nullptr, "no message data")) return false;
  c->plugins.messages.push_back({{id, name.ToStd(), info}, data});
  return true;
}

LONG addUndo(BaseDocument* doc, void* element, LONG type) { return hostAddUndo(doc, element, type); }

C4D_HostTable g_table{};

}  // namespace

void deliverCoreMessage(const PluginRegistry& plugins, LONG id, VULONG p1, VULONG p2) {
  BaseContainer bc(id);
  bc.SetVoid(BFM_CORE_PAR1, reinterpret_cast<void*>(p1));
  bc.SetVoid(BFM_CORE_PAR2, reinterpret_cast<void*>(p2));
  // By index: a handler may not register more, but keep iteration safe regardless.
  for (std::size_t i = 0; i < plugins.messages.size(); ++i)
    if (MessageData* d = plugins.messages[i].data) d->CoreMessage(id, bc);
}


void defaultCrashHandler(char* info) {
  std::fputs("host crash: ", stderr);
  if (info) std::fputs(info, stderr);
  std::fputs("\n", stderr);
}

C4D_HostTable& hostTable() { return g_table; }

void fillHostTable(LONG apiVersion) {
  C4D_HostTable& t = g_table;
  t = C4D_HostTable{};
  t.apiVersion = apiVersion;
  t.alloc = hostAlloc;
  t.free = hostFree;
  t.crashHandler = defaultCrashHandler;
  t.docAddUndo = addUndo;
  t.objectAlloc = objectAlloc;
  t.objectFree = objectFree;
  t.tagAlloc = tagAlloc;
  t.tagFree = tagFree;
  t.linkAlloc = linkAlloc;
  t.linkFree = linkFree;
  t.trackAlloc = trackAlloc;
  t.trackFree = trackFree;
  t.documentAlloc = documentAlloc;
  t.documentFree = documentFree;
  t.insertBaseDocument = insertBaseDocument;
  t.setActiveDocument = setActiveDocument;
  t.getActiveDocument = getActiveDocument;
  t.getFirstDocument = getFirstDocument;
  t.eventAdd = eventAdd;
  t.drawViews = drawViews;
  t.geSyncMessage = geSyncMessage;
  t.specialEventAdd = specialEventAdd;
  t.gePrint = gePrint;
  t.messageDialog = messageDialog;
  t.stopAllThreads = stopAllThreads;
  t.getC4DVersion = getC4DVersion;
  t.getWorldContainerInstance = getWorldContainerInstance;
  t.registerCommandPlugin = registerCommand;
  t.registerSceneHookPlugin = registerSceneHook;
  t.registerTagPlugin = registerTag;
  t.registerMessagePlugin = registerMessage;
  t.rayColliderAlloc = allocRayCollider;
  t.rayColliderFree = freeRayCollider;
  t.freeResource = freeResource;
}

}  // namespace tvr::plr::embedded
