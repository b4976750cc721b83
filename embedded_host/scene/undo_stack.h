#pragma once
// The document's undo stack, as the host keeps it: groups of records; change
// records keep a copy that undo and redo swap with the live state, new and
// delete records move the element out of and back into its place.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "embedded_host/scene/host_node.h"

namespace tvr::plr::embedded {

class UndoRecord {
 public:
  UndoRecord(LONG type, HostNode* element, DocumentNode* doc);
  ~UndoRecord();
  UndoRecord(const UndoRecord&) = delete;
  UndoRecord& operator=(const UndoRecord&) = delete;

  void undo() { apply(true); }
  void redo() { apply(false); }

  // A node this record holds out of the scene was freed by its caller: keep it as the copy.
  void adoptFreed(HostNode* n);
  // A node this record holds was put back into a scene by someone else.
  void releaseHeld(HostNode* n);

  LONG type() const { return type_; }
  std::uint64_t marker() const { return marker_; }

 private:
  void apply(bool undoing);
  void swapChange();
  void swapSelection();
  void takeOut();   // element out of the scene, held here
  void putBack();   // element (or the copy) back at the recorded place
  HostNode* live() const;

  LONG type_;
  std::uint64_t marker_;
  DocumentNode* doc_;
  HostNode* snapshot_ = nullptr;  // owned
  HostNode* held_ = nullptr;      // owned while held
  bool restored_ = false;         // a deletion undone onto the surviving object (states traded)
  std::uint64_t ownerMarker_ = 0;
  ListKind list_ = ListKind::None;
  std::uint64_t predMarker_ = 0;
  std::vector<std::uint64_t> selection_;
};

// Detaches a held node from the record that holds it.
void detachFromHolder(HostNode* n);

class UndoStack {
 public:
  ~UndoStack() { clear(); }

  void start();
  void end();
  // Records into the open group; false (and why) when none is open or the element cannot be
  // recorded: creations are recorded after insertion, deletions before removal.
  bool add(LONG type, HostNode* element, DocumentNode* doc, std::string* why = nullptr);
  // No group open: undoes the last group. Group open: multiple undoes all of it and closes it
  // (the group goes to the redo side), otherwise only its last record.
  bool undo(bool multiple);
  bool redo();
  void clear();

  bool isOpen() const { return depth_ > 0; }
  std::size_t undoCount() const { return done_.size(); }
  std::size_t redoCount() const { return undone_.size(); }
  std::size_t openRecordCount() const { return open_ ? open_->size() : 0; }

  // For people looking at the history: each record's type and element identity, the closed
  // groups oldest first, the undone ones with the next to redo last.
  struct RecordView {
    LONG type;
    std::uint64_t marker;
  };
  using GroupView = std::vector<RecordView>;
  std::vector<GroupView> doneGroups() const { return view(done_); }
  std::vector<GroupView> undoneGroups() const { return view(undone_); }

 private:
  using Group = std::vector<std::unique_ptr<UndoRecord>>;
  static void undoGroup(Group& g);
  static void redoGroup(Group& g);
  static std::vector<GroupView> view(const std::vector<std::unique_ptr<Group>>& groups);

  int depth_ = 0;
  std::unique_ptr<Group> open_;
  std::vector<std::unique_ptr<Group>> done_;
  std::vector<std::unique_ptr<Group>> undone_;
};

}  // namespace tvr::plr::embedded
