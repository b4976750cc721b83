// Where documents are created, activated and removed: the one place that
// follows a document's life.
#include "document_node.h"
#include "embedded_host.h"
#include "host_context.h"

namespace tvr::plr::embedded {

BaseDocument* EmbeddedHost::newDocument(const std::string& name) {
  DocumentImpl* d = makeDocument();
  d->settings.name = Filename(String(name));
  d->name = String(name);
  insertDocument(d);
  activateDocument(d);
  return d;
}

void EmbeddedHost::insertDocument(BaseDocument* doc) {
  HostNode* n = nodeOf(doc);
  if (!n || n->kind != NodeKind::Document || n->inTree()) return;
  n->insertLastInto(nullptr, ListKind::Documents);
  static_cast<DocumentNode*>(n)->ensureSceneHooks();
  if (!context_->active) context_->active = static_cast<DocumentNode*>(n);
}

BaseDocument* EmbeddedHost::activeDocument() const {
  return context_->active ? static_cast<BaseDocument*>(context_->active->iface()) : nullptr;
}

void EmbeddedHost::activateDocument(BaseDocument* doc) {
  HostNode* n = nodeOf(doc);
  if (!n || n->kind != NodeKind::Document || n->inList != ListKind::Documents) return;
  context_->active = static_cast<DocumentNode*>(n);
  context_->eventPending = true;
}

void EmbeddedHost::removeDocument(BaseDocument* doc) {
  HostNode* n = nodeOf(doc);
  if (!n || n->kind != NodeKind::Document) return;
  auto* d = static_cast<DocumentNode*>(n);
  if (context_->active == d) {
    HostNode* other = d->next ? d->next : d->prev;
    context_->active = static_cast<DocumentNode*>(other);
    if (other) context_->eventPending = true;
  }
  d->unlink();
  delete d;
}

std::vector<BaseDocument*> EmbeddedHost::documents() const {
  std::vector<BaseDocument*> out;
  for (HostNode* d = context_->documents.first; d; d = d->next) out.push_back(static_cast<BaseDocument*>(d->iface()));
  return out;
}

}  // namespace tvr::plr::embedded
