// The attributes of one element: name/value pairs kept sorted by name, each
// name once. A flat list instead of a tree: elements have a handful at most,
// and a reader fills them in order, so one allocation holds them all.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "util/xml/block_pool.h"

namespace tvr::util::xml {

class Attributes {
public:
    using value_type = std::pair<std::string, std::string>;
    using List = std::vector<value_type, BlockAllocator<value_type>>;
    using const_iterator = List::const_iterator;

    const_iterator begin() const { return items_.begin(); }
    const_iterator end() const { return items_.end(); }
    bool empty() const { return items_.empty(); }
    std::size_t size() const { return items_.size(); }
    void clear() { items_.clear(); }
    void reserve(std::size_t n) { items_.reserve(n); }

    const_iterator find(const std::string& name) const {
        auto it = lowerBound(name);
        return it != items_.end() && it->first == name ? const_iterator(it) : end();
    }
    std::size_t count(const std::string& name) const { return find(name) == end() ? 0 : 1; }

    // The value under `name`, added empty in its place when absent.
    std::string& operator[](const std::string& name) { return slot(name); }
    std::string& operator[](std::string&& name) { return slot(std::move(name)); }

    friend bool operator==(const Attributes& a, const Attributes& b) { return a.items_ == b.items_; }
    friend bool operator!=(const Attributes& a, const Attributes& b) { return !(a == b); }

private:
    List::const_iterator lowerBound(const std::string& name) const {
        return std::lower_bound(items_.begin(), items_.end(), name,
                                [](const value_type& item, const std::string& n) { return item.first < n; });
    }

    template <class Name>
    std::string& slot(Name&& name) {
        // Names usually arrive in order: past the last one is checked first.
        if (items_.empty() || items_.back().first < name) {
            items_.emplace_back(std::forward<Name>(name), std::string());
            return items_.back().second;
        }
        const auto at = items_.begin() + (lowerBound(name) - items_.cbegin());
        if (at->first == name) return at->second;
        return items_.insert(at, value_type(std::forward<Name>(name), std::string()))->second;
    }

    List items_;
};

}  // namespace tvr::util::xml
