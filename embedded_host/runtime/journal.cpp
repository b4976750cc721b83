#include "embedded_host/runtime/journal.h"

namespace tvr::plr::embedded {

void Journal::add(std::string kind, std::string text) {
  entries_.push_back({std::move(kind), std::move(text)});
  if (observer_) observer_(entries_.back());
}

std::vector<JournalEntry> Journal::find(const std::string& kind) const {
  std::vector<JournalEntry> out;
  for (const auto& e : entries_)
    if (e.kind == kind) out.push_back(e);
  return out;
}

std::size_t Journal::count(const std::string& kind) const {
  std::size_t n = 0;
  for (const auto& e : entries_)
    if (e.kind == kind) ++n;
  return n;
}

std::string Journal::toString() const {
  std::string out;
  for (const auto& e : entries_) {
    out += e.kind;
    if (!e.text.empty()) out += ' ' + e.text;
    out += '\n';
  }
  return out;
}

}  // namespace tvr::plr::embedded
