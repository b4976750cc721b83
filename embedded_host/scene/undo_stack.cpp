#include "embedded_host/scene/undo_stack.h"

#include "embedded_host/scene/document_node.h"
#include "embedded_host/scene/node_registry.h"

namespace tvr::plr::embedded {

static HostNode* byMarker(std::uint64_t m) {
  NodeRegistry* r = nodeRegistry();
  return r && m ? r->fromMarker(m) : nullptr;
}

static void collectSelected(HostNode* owner, std::vector<std::uint64_t>& out) {
  for (HostNode* n = owner->children.first; n; n = n->next) {
    if (n->selected) out.push_back(n->marker);
    collectSelected(n, out);
  }
}

static void clearSelected(HostNode* owner) {
  for (HostNode* n = owner->children.first; n; n = n->next) {
    n->selected = false;
    clearSelected(n);
  }
}

UndoRecord::UndoRecord(LONG type, HostNode* element, DocumentNode* doc)
    : type_(type), marker_(element->marker), doc_(doc) {
  switch (type) {
    case UNDO_CHANGE:
    case UNDO_CHANGE_NOCHILDS:
    case UNDO_CHANGE_SMALL: {
      const bool rest = type != UNDO_CHANGE_SMALL;
      snapshot_ = element->deepCopy(rest, rest, type == UNDO_CHANGE, true);
      break;
    }
    case UNDO_CHANGE_SELECTION:
      collectSelected(doc, selection_);
      break;
    case UNDO_NEW:
    case UNDO_DELETE:
      ownerMarker_ = element->listOwner ? element->listOwner->marker : 0;
      list_ = element->inList;
      predMarker_ = element->prev ? element->prev->marker : 0;
      if (type == UNDO_DELETE) snapshot_ = element->deepCopy(true, true, true, true);
      break;
    default:
      break;
  }
}

UndoRecord::~UndoRecord() {
  delete snapshot_;
  if (held_) {
    held_->holder = nullptr;
    delete held_;
  }
}

HostNode* UndoRecord::live() const { return byMarker(marker_); }

void UndoRecord::apply(bool undoing) {
  switch (type_) {
    case UNDO_CHANGE:
    case UNDO_CHANGE_NOCHILDS:
    case UNDO_CHANGE_SMALL: swapChange(); break;
    case UNDO_CHANGE_SELECTION: swapSelection(); break;
    // Undoing a creation is redoing a deletion, and the other way round.
    case UNDO_NEW: undoing ? takeOut() : putBack(); break;
    case UNDO_DELETE: undoing ? putBack() : takeOut(); break;
    default: break;
  }
}

void UndoRecord::swapChange() {
  HostNode* n = live();
  if (!n || !snapshot_) return;  // the element is gone: nothing to restore into
  const bool rest = type_ != UNDO_CHANGE_SMALL;
  n->exchangeWith(*snapshot_, rest, rest, type_ == UNDO_CHANGE);
}

void UndoRecord::swapSelection() {
  std::vector<std::uint64_t> now;
  collectSelected(doc_, now);
  clearSelected(doc_);
  for (std::uint64_t m : selection_)
    if (HostNode* n = byMarker(m)) n->selected = true;
  selection_.swap(now);
}

void UndoRecord::takeOut() {
  HostNode* n = live();
  if (!n || !n->inTree()) return;
  n->unlink();
  n->ownership = Ownership::Undo;
  n->holder = this;
  held_ = n;
  // A deletion taken again: the object leaves with the state it had when it was deleted.
  if (restored_ && snapshot_) n->exchangeWith(*snapshot_, true, true, true);
  restored_ = false;
}

void UndoRecord::putBack() {
  HostNode* n = live();
  bool revived = false;
  if (!n && snapshot_) {
    // The element was freed: its copy takes its place, under the same identity.
    n = snapshot_;
    snapshot_ = nullptr;
    n->setLinkableDeep(true);
    n->setOwnershipDeep(Ownership::Tree);
    revived = true;
  }
  if (!n) return;
  HostNode* owner = byMarker(ownerMarker_);
  if (!owner && list_ == ListKind::Children) owner = doc_;  // the old parent is gone: top level
  HostNode* pred = byMarker(predMarker_);
  if (pred && (pred->listOwner != owner || pred->inList != list_ || pred == n)) pred = nullptr;
  if (owner && n->insertInto(owner, list_, pred)) {
    // A deletion undone brings the object back as it was recorded, whether it was freed (its
    // copy revived above) or only removed and perhaps changed since (the same object, states traded).
    if (!revived && snapshot_) {
      n->exchangeWith(*snapshot_, true, true, true);
      restored_ = true;
    }
    return;
  }
  if (revived) {
    // No place to go back to (it would hang under itself): keep it as the copy.
    n->setLinkableDeep(false);
    n->setOwnershipDeep(Ownership::Snapshot);
    snapshot_ = n;
  }
}

void UndoRecord::adoptFreed(HostNode* n) {
  if (n != held_) return;
  held_ = nullptr;
  n->holder = nullptr;
  n->setLinkableDeep(false);
  n->setOwnershipDeep(Ownership::Snapshot);
  delete snapshot_;
  snapshot_ = n;
}

void UndoRecord::releaseHeld(HostNode* n) {
  if (n == held_) held_ = nullptr;
}

void detachFromHolder(HostNode* n) {
  if (!n || !n->holder) return;
  n->holder->releaseHeld(n);
  n->holder = nullptr;
}

void UndoStack::start() {
  if (depth_++ == 0) open_ = std::make_unique<Group>();
}

void UndoStack::end() {
  if (depth_ == 0) return;
  if (--depth_ > 0) return;
  if (open_ && !open_->empty()) {
    undone_.clear();
    done_.push_back(std::move(open_));
  }
  open_.reset();
}

bool UndoStack::add(LONG type, HostNode* element, DocumentNode* doc, std::string* why) {
  auto refuse = [why](const char* text) {
    if (why) *why = text;
    return false;
  };
  if (!open_) return refuse("no undo group open");
  if (!element || !doc) return refuse("no element");
  if (type < UNDO_CHANGE || type > UNDO_DELETE) return refuse("unknown undo type");
  if (element->kind == NodeKind::Document || element->kind == NodeKind::SceneHook)
    return refuse("documents and scene hooks have no undo");
  if (element->ownership == Ownership::Snapshot || !element->linkable) return refuse("not a live node");
  // The place a creation or deletion is undone to is read when it is recorded.
  if (type == UNDO_NEW && !element->inTree()) return refuse("UNDO_NEW before the element is inserted");
  if (type == UNDO_DELETE && !element->inTree()) return refuse("UNDO_DELETE after the element was removed");
  open_->push_back(std::make_unique<UndoRecord>(type, element, doc));
  return true;
}

void UndoStack::undoGroup(Group& g) {
  for (auto it = g.rbegin(); it != g.rend(); ++it) (*it)->undo();
}

void UndoStack::redoGroup(Group& g) {
  for (auto& r : g) r->redo();
}

bool UndoStack::undo(bool multiple) {
  if (open_) {
    if (open_->empty()) {
      if (multiple) {
        depth_ = 0;
        open_.reset();
      }
      return false;
    }
    if (!multiple) {
      open_->back()->undo();
      open_->pop_back();
      return true;
    }
    // The cancelled group is kept on the redo side (the module's undo manager counts on it).
    undoGroup(*open_);
    depth_ = 0;
    undone_.clear();
    undone_.push_back(std::move(open_));
    return true;
  }
  if (done_.empty()) return false;
  undoGroup(*done_.back());
  undone_.push_back(std::move(done_.back()));
  done_.pop_back();
  return true;
}

bool UndoStack::redo() {
  if (open_ || undone_.empty()) return false;
  redoGroup(*undone_.back());
  done_.push_back(std::move(undone_.back()));
  undone_.pop_back();
  return true;
}

std::vector<UndoStack::GroupView> UndoStack::view(const std::vector<std::unique_ptr<Group>>& groups) {
  std::vector<GroupView> out;
  for (const auto& g : groups) {
    GroupView records;
    for (const auto& r : *g) records.push_back({r->type(), r->marker()});
    out.push_back(std::move(records));
  }
  return out;
}

void UndoStack::clear() {
  // Newest first, so records holding the same identity unwind in order.
  open_.reset();
  while (!undone_.empty()) undone_.pop_back();
  while (!done_.empty()) done_.pop_back();
  depth_ = 0;
}

}  // namespace tvr::plr::embedded
