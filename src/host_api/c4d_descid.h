#pragma once
// Parameter ids: a DescID is a list of DescLevel(id, dtype, creator).
#include <vector>

#include "host_api/c4d_types.h"

struct DescLevel {
    LONG id = 0;
    LONG dtype = 0;
    LONG creator = 0;

    DescLevel() = default;
    DescLevel(LONG i) : id(i) {}
    DescLevel(LONG i, LONG t, LONG c) : id(i), dtype(t), creator(c) {}

    // A zero type or creator matches any.
    friend bool operator==(const DescLevel& a, const DescLevel& b) {
        return a.id == b.id && (a.dtype == 0 || b.dtype == 0 || a.dtype == b.dtype) &&
               (a.creator == 0 || b.creator == 0 || a.creator == b.creator);
    }
    friend bool operator!=(const DescLevel& a, const DescLevel& b) { return !(a == b); }
};

class DescID {
public:
    DescID() = default;
    DescID(const DescLevel& a) : levels_{a} {}
    DescID(const DescLevel& a, const DescLevel& b) : levels_{a, b} {}
    DescID(const DescLevel& a, const DescLevel& b, const DescLevel& c) : levels_{a, b, c} {}

    LONG GetDepth() const { return LONG(levels_.size()); }
    // Out-of-range levels answer an empty level.
    const DescLevel& operator[](LONG pos) const {
        static const DescLevel empty;
        return pos >= 0 && size_t(pos) < levels_.size() ? levels_[size_t(pos)] : empty;
    }
    void PushId(const DescLevel& l) { levels_.push_back(l); }
    void PopId() {
        if (!levels_.empty()) levels_.pop_back();
    }
    void SetId(const DescLevel& l) { levels_.assign(1, l); }

    friend bool operator==(const DescID& a, const DescID& b) { return a.levels_ == b.levels_; }
    friend bool operator!=(const DescID& a, const DescID& b) { return !(a == b); }

private:
    std::vector<DescLevel> levels_;
};
