// Where documents are created, opened, saved, activated and removed: the one
// place that follows a document's life and tells the scene hooks about it with
// MSG_DOCUMENTINFO, in the host's order.
#include <sstream>

#include "embedded_host/scene/document_node.h"
#include "embedded_host/runtime/embedded_host.h"
#include "embedded_host/runtime/host_context.h"
#include "embedded_host/files/scene_file.h"
#include "embedded_host/files/scene_file_json.h"

namespace tvr::plr::embedded {

namespace {

DocumentNode* documentNodeOf(BaseDocument* doc) {
  HostNode* n = nodeOf(doc);
  return n && n->kind == NodeKind::Document ? static_cast<DocumentNode*>(n) : nullptr;
}

void sendDocumentInfo(HostContext& c, DocumentNode* d, LONG type, const Filename& file = Filename()) {
  if (!d) return;
  DocumentInfoData info;
  info.type = type;
  info.doc = static_cast<BaseDocument*>(d->iface());
  info.filename = file;
  c.journal.add("DocumentInfo", std::to_string(type) + " " + d->name.ToStd());
  d->messageSceneHooks(MSG_DOCUMENTINFO, &info);
}

}  // namespace

BaseDocument* EmbeddedHost::newDocument(const std::string& name) {
  DocumentImpl* d = makeDocument();
  d->settings.name = Filename(String(name));
  d->name = String(name);
  d->insertLastInto(nullptr, ListKind::Documents);
  d->ensureSceneHooks();
  activateDocument(d);
  return d;
}

void EmbeddedHost::insertDocument(BaseDocument* doc) {
  HostNode* n = nodeOf(doc);
  if (!n || n->kind != NodeKind::Document || n->inTree()) return;
  n->insertLastInto(nullptr, ListKind::Documents);
  static_cast<DocumentNode*>(n)->ensureSceneHooks();
  // An inserted document becomes the active one, the first one inserted included.
  activateDocument(doc);
}

bool EmbeddedHost::tellDocument(BaseDocument* doc, LONG type, const std::string& file) {
  DocumentNode* d = documentNodeOf(doc);
  if (!d || d->inList != ListKind::Documents) return false;
  sendDocumentInfo(*context_, d, type, file.empty() ? Filename() : Filename(String(file)));
  return true;
}

bool EmbeddedHost::messageSceneHooks(BaseDocument* doc, LONG id, void* data) {
  DocumentNode* d = documentNodeOf(doc);
  if (!d || d->inList != ListKind::Documents) return false;
  d->messageSceneHooks(id, data);
  return true;
}

BaseDocument* EmbeddedHost::activeDocument() const {
  return context_->active ? static_cast<BaseDocument*>(context_->active->iface()) : nullptr;
}

void EmbeddedHost::activateDocument(BaseDocument* doc) {
  DocumentNode* d = documentNodeOf(doc);
  if (!d || d->inList != ListKind::Documents) return;
  DocumentNode* old = context_->active;
  if (old == d) return;
  if (old) sendDocumentInfo(*context_, old, MSG_DOCUMENTINFO_TYPE_UNSETACTIVE);
  context_->active = d;
  context_->eventPending = true;
  sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_SETACTIVE);
}

bool EmbeddedHost::activateDocumentAt(std::size_t index) {
  std::size_t i = 0;
  for (HostNode* d = context_->documents.first; d; d = d->next, ++i)
    if (i == index) {
      activateDocument(static_cast<BaseDocument*>(d->iface()));
      return true;
    }
  return false;
}

void EmbeddedHost::removeDocument(BaseDocument* doc) {
  DocumentNode* d = documentNodeOf(doc);
  if (!d) return;
  const bool wasActive = context_->active == d;
  if (d->inList == ListKind::Documents) {
    if (wasActive) sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_UNSETACTIVE);
    sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_REMOVE);
  }
  HostNode* other = d->next ? d->next : d->prev;
  if (wasActive) context_->active = nullptr;
  d->unlink();
  delete d;
  if (!wasActive || shutDown_) return;
  // The host always has an active document: the neighbour, or a new empty one.
  if (other)
    activateDocument(static_cast<BaseDocument*>(other->iface()));
  else
    newDocument(untitledName());
}

void EmbeddedHost::closeDocument(BaseDocument* doc) { removeDocument(doc ? doc : activeDocument()); }

std::string EmbeddedHost::untitledName() {
  ++untitled_;
  return untitled_ == 1 ? std::string("Untitled") : "Untitled " + std::to_string(untitled_);
}

std::vector<BaseDocument*> EmbeddedHost::documents() const {
  std::vector<BaseDocument*> out;
  for (HostNode* d = context_->documents.first; d; d = d->next) out.push_back(static_cast<BaseDocument*>(d->iface()));
  return out;
}

BaseDocument* EmbeddedHost::openDocument(const std::string& path, std::string* error) {
  std::string text, why;
  DocumentImpl* d = nullptr;
  if (scenefile::readFile(path, &text, &why)) {
    d = scenefile::read(text, &why);
    if (!d) why = path + ": " + why;
  }
  if (!d) {
    context_->console.print("Open failed: " + why);
    context_->console.dialog("Could not open " + path + "\n" + why);
    if (error) *error = why;
    return nullptr;
  }
  const Filename file{String(path)};
  d->settings.name = file.GetFile();
  d->settings.path = file.GetDirectory();
  d->name = file.GetFile().GetString();
  DocumentNode* old = context_->active;
  if (old) sendDocumentInfo(*context_, old, MSG_DOCUMENTINFO_TYPE_UNSETACTIVE);
  d->insertLastInto(nullptr, ListKind::Documents);
  d->ensureSceneHooks();
  context_->active = d;
  context_->eventPending = true;
  sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_LOAD, file);
  sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_SETACTIVE);
  return d;
}

bool EmbeddedHost::saveDocument(BaseDocument* doc, const std::string& path, std::string* error) {
  DocumentNode* d = documentNodeOf(doc ? doc : activeDocument());
  if (!d) {
    if (error) *error = "no document to save";
    return false;
  }
  const Filename file{String(path)};
  sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_SAVE_BEFORE, file);
  std::string why;
  const bool ok = scenefile::writeFile(path, scenefile::write(*d), &why);
  if (ok) {
    d->settings.name = file.GetFile();
    d->settings.path = file.GetDirectory();
    d->name = file.GetFile().GetString();
    d->changed = false;
  } else {
    context_->console.print("Save failed: " + why);
    context_->console.dialog("Could not save " + path + "\n" + why);
    if (error) *error = why;
  }
  // Also after a failed save: hooks that took things out of the document
  // before it was written put them back now.
  sendDocumentInfo(*context_, d, MSG_DOCUMENTINFO_TYPE_SAVE_AFTER, file);
  return ok;
}

bool EmbeddedHost::savePreferences(const std::string& path, std::string* error) const {
  return scenefile::writeFile(path, scenefile::writePreferences(context_->world), error);
}

bool EmbeddedHost::loadPreferences(const std::string& path, std::string* error) {
  std::string text, why;
  if (scenefile::readFile(path, &text, &why) && scenefile::readPreferences(text, &context_->world, &why)) return true;
  context_->console.print("Preferences not loaded: " + why);
  if (error) *error = why;
  return false;
}

namespace {

void treeLines(std::ostringstream& out, const HostNode* n, int depth) {
  for (; n; n = n->next) {
    out << std::string(std::size_t(depth) * 2, ' ') << n->name.ToStd() << " [" << n->type << "]";
    if (n->tags.first) {
      out << " tags:";
      for (const HostNode* t = n->tags.first; t; t = t->next) {
        out << " " << t->type;
        if (t->name.Content()) out << " '" << t->name.ToStd() << "'";
      }
    }
    if (n->tracks.first) {
      int count = 0;
      for (const HostNode* t = n->tracks.first; t; t = t->next) ++count;
      out << " tracks: " << count;
    }
    out << "\n";
    treeLines(out, n->children.first, depth + 1);
  }
}

}  // namespace

std::string EmbeddedHost::tree(BaseDocument* doc) const {
  const DocumentNode* d = documentNodeOf(doc ? doc : activeDocument());
  if (!d) return "(no document)\n";
  std::ostringstream out;
  out << "Document " << d->settings.name.GetString().ToStd() << (d == context_->active ? " (active)" : "") << "\n";
  treeLines(out, d->children.first, 1);
  return out.str();
}

}  // namespace tvr::plr::embedded
