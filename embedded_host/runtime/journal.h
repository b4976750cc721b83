#pragma once
// An ordered record of what modules asked of the host, for tests and hostsim.
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tvr::plr::embedded {

struct JournalEntry {
  std::string kind;  // the call: "AddUndo", "EventAdd", "GePrint", ...
  std::string text;  // its arguments, rendered
};

class Journal {
 public:
  void add(std::string kind, std::string text);
  void clear() { entries_.clear(); }
  // Told of every entry as it is added (hostsim's --trace); null stops it.
  void setObserver(std::function<void(const JournalEntry&)> observer) { observer_ = std::move(observer); }

  const std::vector<JournalEntry>& entries() const { return entries_; }
  std::size_t size() const { return entries_.size(); }
  // Entries of one kind, in order.
  std::vector<JournalEntry> find(const std::string& kind) const;
  std::size_t count(const std::string& kind) const;
  // "kind text" lines joined by newlines.
  std::string toString() const;

 private:
  std::vector<JournalEntry> entries_;
  std::function<void(const JournalEntry&)> observer_;
};

// The running host's journal (null when no host runs).
Journal* hostJournal();

}  // namespace tvr::plr::embedded
