#include "embedded_host/scene/document_node.h"

#include <sstream>

#include "embedded_host/runtime/console.h"
#include "embedded_host/runtime/host_events.h"
#include "embedded_host/runtime/journal.h"
#include "embedded_host/runtime/plugin_registry.h"
#include "embedded_host/scene/node_registry.h"
#include "embedded_host/scene/scene_dump.h"
#include "embedded_host/scene/track_node.h"

namespace tvr::plr::embedded {

DocumentNode::~DocumentNode() { clearContents(); }

void DocumentNode::releasePluginData() { clearContents(); }

void DocumentNode::clearContents() {
  undo.clear();
  freeSceneHooks();
  while (HostNode* n = children.first) {
    n->unlink();
    delete n;
  }
}

// No name: a document is named after its file, which says where the scene
// lives, not what it holds; a saved and reloaded scene dumps the same.
void DocumentNode::dumpOwn(DumpOut& out) const {
  out.key("data").container(data);
  out.key("fps") << settings.fps;
  out.key("time").time(settings.time);
  out.key("range").time(settings.minTime) << "..";
  out.time(settings.maxTime);
  out.key("loop").time(settings.loopMinTime) << "..";
  out.time(settings.loopMaxTime);
}

static bool nameTaken(const HostNode* owner, const HostNode* except, const std::string& name) {
  for (const HostNode* n = owner->children.first; n; n = n->next)
    if ((n != except && n->name.ToStd() == name) || nameTaken(n, except, name)) return true;
  return false;
}

// "name", "name.1", "name.2", ...: the first one no other object of the document carries.
// A name that already ends in ".<number>" counts on from its stem.
static std::string uniqueName(const HostNode* doc, const HostNode* op) {
  const std::string name = op->name.ToStd();
  if (name.empty() || !nameTaken(doc, op, name)) return name;
  std::string stem = name;
  const std::size_t dot = name.rfind('.');
  if (dot != std::string::npos && dot + 1 < name.size() &&
      name.find_first_not_of("0123456789", dot + 1) == std::string::npos)
    stem = name.substr(0, dot);
  for (long i = 1;; ++i) {
    const std::string candidate = stem + "." + std::to_string(i);
    if (!nameTaken(doc, op, candidate)) return candidate;
  }
}

void DocumentNode::insertObject(HostNode* op, HostNode* parent, HostNode* pred, bool checkNames) {
  if (!op || op->kind != NodeKind::Object || op->ownership == Ownership::Snapshot) return;
  if (refuseIfInserted(op, "InsertObject")) return;
  bool ok;
  if (pred && pred->kind == NodeKind::Object && pred->documentNode() == this && pred->inTree() && pred != op)
    ok = op->insertInto(pred->listOwner, ListKind::Children, pred);
  else if (parent && parent->kind == NodeKind::Object && parent->documentNode() == this)
    ok = op->insertInto(parent, ListKind::Children, nullptr);
  else
    ok = op->insertInto(this, ListKind::Children, nullptr);
  if (!ok) consolePrint("InsertObject refused: " + describeNode(op) + " cannot go under itself");
  if (ok && checkNames) op->name = String(uniqueName(this, op));
}

static HostNode* firstSelected(HostNode* owner) {
  for (HostNode* n = owner->children.first; n; n = n->next) {
    if (n->selected) return n;
    if (HostNode* s = firstSelected(n)) return s;
  }
  return nullptr;
}

static void clearSelection(HostNode* owner) {
  for (HostNode* n = owner->children.first; n; n = n->next) {
    n->selected = false;
    clearSelection(n);
  }
}

HostNode* DocumentNode::activeObject() const { return firstSelected(const_cast<DocumentNode*>(this)); }

void DocumentNode::setActiveObject(HostNode* op, LONG mode) {
  if (op && (op->kind != NodeKind::Object || op->documentNode() != this)) op = nullptr;
  switch (mode) {
    case SELECTION_NEW:
      clearSelection(this);
      if (op) op->selected = true;
      break;
    case SELECTION_ADD:
      if (op) op->selected = true;
      break;
    case SELECTION_SUB:
      if (op) op->selected = false;
      break;
    default:
      break;
  }
}

static void collectObjects(HostNode* owner, std::vector<std::uint64_t>& out) {
  for (HostNode* n = owner->children.first; n; n = n->next) {
    out.push_back(n->marker);
    collectObjects(n, out);
  }
}

// A track without keys has nothing to say and leaves its parameter alone.
static void writeTracks(HostNode* n, const BaseTime& time, LONG fps) {
  for (HostNode* t = n->tracks.first; t; t = t->next) {
    auto* track = static_cast<TrackNode*>(t);
    if (track->curve.keys.empty()) continue;
    n->setParameter(track->descId, GeData(track->curve.valueAt(time, fps)));
  }
}

bool DocumentNode::executePasses(BaseThread* bt, bool animation, bool expressions) {
  NodeRegistry* registry = nodeRegistry();
  PluginRegistry* plugins = hostPlugins();
  if (!registry || !plugins) return false;
  // Collected first: expressions may change the scene while they run.
  std::vector<std::uint64_t> objects;
  collectObjects(this, objects);
  const BaseTime time = settings.time;
  if (animation) {
    for (std::uint64_t m : objects) {
      HostNode* n = registry->fromMarker(m);
      if (!n || n->documentNode() != this) continue;
      writeTracks(n, time, settings.fps);
      for (HostNode* t = n->tags.first; t; t = t->next) writeTracks(t, time, settings.fps);
    }
  }
  if (expressions) {
    auto* doc = static_cast<BaseDocument*>(iface());
    for (std::uint64_t m : objects) {
      HostNode* n = registry->fromMarker(m);
      if (!n || n->documentNode() != this) continue;
      std::vector<std::uint64_t> tagMarkers;
      for (HostNode* t = n->tags.first; t; t = t->next) tagMarkers.push_back(t->marker);
      for (std::uint64_t tm : tagMarkers) {
        HostNode* t = registry->fromMarker(tm);
        if (!t || t->listOwner != n) continue;
        const TagPlugin* p = plugins->tag(t->type);
        NodeData* d = t->nodeData();
        if (!p || !d || (p->info & TAG_EXPRESSION) == 0) continue;
        static_cast<TagData*>(d)->Execute(static_cast<BaseTag*>(t->iface()), doc, static_cast<BaseObject*>(n->iface()),
                                          bt, 0, 0);
      }
    }
  }
  return true;
}

void DocumentNode::ensureSceneHooks() {
  PluginRegistry* plugins = hostPlugins();
  if (!plugins) return;
  for (const SceneHookPlugin& p : plugins->sceneHooks) {
    bool present = false;
    for (SceneHookImpl* h : hooks) present = present || h->type == p.id;
    if (present || !p.allocator) continue;
    SceneHookImpl* h = createNode<SceneHookImpl>(p.id, this);
    h->name = String(p.name);
    h->pluginData = p.allocator();
    if (!h->pluginData || !h->pluginData->Init(h)) {
      delete h;
      continue;
    }
    hooks.push_back(h);
  }
}

void DocumentNode::messageSceneHooks(LONG id, void* payload) {
  // Hooks stay while messages run (they are freed with the document only).
  for (size_t i = 0; i < hooks.size(); ++i) {
    SceneHookImpl* h = hooks[i];
    if (NodeData* d = h->nodeData()) d->Message(h, id, payload);
  }
}

void DocumentNode::freeSceneHooks() {
  std::vector<SceneHookImpl*> gone;
  gone.swap(hooks);
  for (SceneHookImpl* h : gone) delete h;
}

void DocumentImpl::InsertObject(BaseObject* op, BaseObject* parent, BaseObject* pred, Bool checkNames) {
  insertObject(nodeOf(op), nodeOf(parent), nodeOf(pred), checkNames);
}

static void journal(const char* kind, const std::string& text) {
  if (Journal* j = hostJournal()) j->add(kind, text);
}

Bool DocumentImpl::StartUndo() {
  journal("StartUndo", describeNode(this));
  undo.start();
  return true;
}

Bool DocumentImpl::EndUndo() {
  journal("EndUndo", describeNode(this));
  undo.end();
  return true;
}

Bool DocumentImpl::DoUndo(Bool multiple) {
  journal("DoUndo", multiple ? "multiple" : "single");
  const bool done = undo.undo(multiple);
  postEvent();
  return done;
}

Bool DocumentImpl::DoRedo() {
  journal("DoRedo", "");
  const bool done = undo.redo();
  postEvent();
  return done;
}

Bool DocumentImpl::ExecutePasses(BaseThread* bt, Bool animation, Bool expressions, Bool caches) {
  std::ostringstream s;
  s << int(animation) << " " << int(expressions) << " " << int(caches);
  journal("ExecutePasses", s.str());
  return executePasses(bt, animation, expressions);
}

DocumentImpl* makeDocument() { return createNode<DocumentImpl>(); }

LONG hostAddUndo(BaseDocument* doc, void* element, LONG type) {
  Journal* j = hostJournal();
  if (!j) return 0;
  HostNode* d = nodeOf(doc);
  HostNode* e = nodeOf(element);
  std::ostringstream s;
  s << type << " " << (e ? describeNode(e) : std::string(element ? "(unknown)" : "(null)"));
  j->add("AddUndo", s.str());
  if (!d || d->kind != NodeKind::Document) return 0;
  std::string why;
  if (static_cast<DocumentNode*>(d)->undo.add(type, e, static_cast<DocumentNode*>(d), &why)) return 1;
  // Outside a group the host ignores records silently; anything else is a module's mistake.
  if (static_cast<DocumentNode*>(d)->undo.isOpen()) j->add("AddUndo refused", why);
  return 0;
}

}  // namespace tvr::plr::embedded
