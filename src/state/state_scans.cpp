#include "state/state_scans.h"

#include <unordered_set>

namespace tvr::plr::state {

std::vector<std::size_t> firstOfEachName(const std::vector<std::string>& names) {
    std::vector<std::size_t> kept;
    std::unordered_set<std::string> seen;
    seen.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        if (seen.insert(names[i]).second) kept.push_back(i);
    return kept;
}

std::vector<std::ptrdiff_t> findParents(const std::vector<std::string>& names,
                                        const std::vector<std::string>& parents) {
    std::unordered_map<std::string, std::size_t> first;
    first.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) first.emplace(names[i], i);  // keeps the first
    std::vector<std::ptrdiff_t> result(parents.size(), kNone);
    for (std::size_t j = 0; j < parents.size(); ++j) {
        if (parents[j].empty()) continue;
        const auto found = first.find(parents[j]);
        if (found != first.end()) result[j] = static_cast<std::ptrdiff_t>(found->second);
    }
    return result;
}

RecordIndex::RecordIndex(const std::vector<NameAndLabel>& records) {
    for (std::size_t i = 0; i < records.size(); ++i) last_[records[i].name][records[i].label] = i;
}

std::vector<std::ptrdiff_t> RecordIndex::find(const std::string& masterName,
                                              const std::vector<std::string>& labels) const {
    std::vector<std::ptrdiff_t> result(labels.size(), kNone);
    const auto master = last_.find(masterName);
    if (master == last_.end()) return result;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const auto hit = master->second.find(labels[i]);
        if (hit != master->second.end()) result[i] = static_cast<std::ptrdiff_t>(hit->second);
    }
    return result;
}

ObjectIndex::ObjectIndex(const std::vector<NameAndLabel>& objects) {
    for (std::size_t i = 0; i < objects.size(); ++i) byName_[objects[i].name].push_back({objects[i].label, i});
}

std::vector<std::ptrdiff_t> ObjectIndex::assign(const std::string& masterName, const std::vector<std::string>& labels,
                                                const std::vector<bool>& bound) const {
    std::vector<std::ptrdiff_t> result(labels.size(), kNone);
    const auto master = byName_.find(masterName);
    if (master == byName_.end()) return result;
    std::unordered_map<std::string, std::size_t> highest;
    highest.reserve(labels.size());
    for (std::size_t i = 0; i < labels.size(); ++i) highest[labels[i]] = i;  // keeps the last
    std::vector<bool> taken = bound;
    taken.resize(labels.size(), false);
    for (const Entry& entry : master->second) {
        const auto node = highest.find(entry.label);
        if (node == highest.end() || taken[node->second]) continue;
        taken[node->second] = true;
        result[node->second] = static_cast<std::ptrdiff_t>(entry.object);
    }
    return result;
}

}  // namespace tvr::plr::state
