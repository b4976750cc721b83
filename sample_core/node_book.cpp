#include "sample_core/node_book.h"

#include "sample_core/coverage.h"

namespace tvr::plr::core::sample {

const CMasterDescriptor SampleMaster::kDescriptor{"Sample"};

int SampleMaster::message(int code, void*) {
    messages.push_back(code);
    return 0;
}

// The sample tool claims every node it is asked about.
bool SampleMaster::query(int, CoreNode*) { return true; }

NodeBook::~NodeBook() {
    for (auto& entry : nodes_) on(entry.second).release();
}

CoreNode* NodeBook::find(const std::string& name) const {
    const auto it = nodes_.find(name);
    return it == nodes_.end() ? nullptr : it->second;
}

std::string NodeBook::nameOf(const CoreNode* node) const {
    for (const auto& entry : nodes_) {
        if (entry.second == node) return entry.first;
    }
    return std::string();
}

bool NodeBook::add(const std::string& name, CoreNode* node) {
    if (!node || name.empty() || nodes_.count(name) != 0) return false;
    nodes_[name] = node;
    return true;
}

void NodeBook::forget(const std::string& name) { nodes_.erase(name); }

CNodePeer* NodeBook::peerFor(const std::string& name) {
    peers_.push_back(std::make_unique<BookPeer>(*this, name));
    return peers_.back().get();
}

void BookPeer::nodeLeaves(CoreNode* node) {
    if (book_.find(name_) == node) book_.forget(name_);
}

void BookPeer::nodeReturns(CoreNode* node) {
    if (!book_.find(name_)) book_.add(name_, node);
}

std::string NodeBook::freeName(const std::string& base) const {
    if (nodes_.count(base) == 0) return base;
    for (int i = 2;; ++i) {
        const std::string candidate = base + "_" + std::to_string(i);
        if (nodes_.count(candidate) == 0) return candidate;
    }
}

}  // namespace tvr::plr::core::sample
