// The searches over masters, stored records and document objects that
// loading and binding state make. Each answers what a plain search in the
// stated order would, in time linear in its input.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace tvr::plr::state {

constexpr std::ptrdiff_t kNone = -1;

// Indexes of the entries that survive duplicate removal, ascending: the first
// entry of each name stays, later entries of the same name go.
std::vector<std::size_t> firstOfEachName(const std::vector<std::string>& names);

// For each entry: the first entry whose name equals its parent's name, or
// kNone (always for an empty parent name).
std::vector<std::ptrdiff_t> findParents(const std::vector<std::string>& names, const std::vector<std::string>& parents);

// What a stored record or a document object says about itself: the master
// it belongs to and the label of its object.
struct NameAndLabel {
    std::string name;
    std::string label;
};

// Finds, for a master's saved nodes, the last record of that master whose
// label matches each node's label (a later match replaces an earlier one).
class RecordIndex {
public:
    explicit RecordIndex(const std::vector<NameAndLabel>& records);
    // One entry per label: a record index or kNone.
    std::vector<std::ptrdiff_t> find(const std::string& masterName, const std::vector<std::string>& labels) const;

private:
    std::unordered_map<std::string, std::unordered_map<std::string, std::size_t>> last_;
};

// The search of every document object (in depth-first order) for saved nodes
// that the records did not bind: each object of the master, in order, takes
// the highest-numbered node with its label, when that node is still unbound.
class ObjectIndex {
public:
    explicit ObjectIndex(const std::vector<NameAndLabel>& objects);
    // `bound` says which nodes are already bound. One entry per label: the
    // object index that binds it, or kNone (also for nodes already bound).
    std::vector<std::ptrdiff_t> assign(const std::string& masterName, const std::vector<std::string>& labels,
                                       const std::vector<bool>& bound) const;

private:
    struct Entry {
        std::string label;
        std::size_t object;
    };
    std::unordered_map<std::string, std::vector<Entry>> byName_;
};

}  // namespace tvr::plr::state
