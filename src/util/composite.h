// A tree node that owns its children in order and knows its parent.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tvr::util {

// T derives from Composite_Dynamic<T>. Children are owned; destruction walks
// the subtree with a work list, so a deep tree costs no stack.
template <class T>
class Composite_Dynamic {
public:
    Composite_Dynamic() = default;
    Composite_Dynamic(const Composite_Dynamic&) = delete;
    Composite_Dynamic& operator=(const Composite_Dynamic&) = delete;

    // Hooks a tree can override; the base does nothing with them.
    virtual void compositeChanged() {}
    virtual void compositeCleared() {}
    virtual void compositeSorted() {}
    virtual void compositeAttached() {}
    virtual void compositeDetached() {}
    virtual void compositeChildAdded(T*, std::int32_t) {}
    virtual void compositeChildRemoved(T*, std::int32_t) {}

    virtual ~Composite_Dynamic() {
        std::vector<std::unique_ptr<T>> work = std::move(children_);
        children_.clear();
        while (!work.empty()) {
            std::unique_ptr<T> node = std::move(work.back());
            work.pop_back();
            for (auto& child : node->children_) work.push_back(std::move(child));
            node->children_.clear();
        }
    }

    // Takes ownership; a child that already has a parent is not added.
    T* addChild(std::unique_ptr<T> child) {
        if (!child || child->parent_) return nullptr;
        child->parent_ = static_cast<T*>(this);
        children_.push_back(std::move(child));
        return children_.back().get();
    }
    // Detaches a direct child and hands it back; null when it is not one.
    std::unique_ptr<T> takeChild(const T* child) {
        for (std::size_t i = 0; i < children_.size(); ++i) {
            if (children_[i].get() != child) continue;
            std::unique_ptr<T> taken = std::move(children_[i]);
            children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(i));
            taken->parent_ = nullptr;
            return taken;
        }
        return nullptr;
    }

    std::size_t childCount() const { return children_.size(); }
    T* child(std::size_t index) const { return index < children_.size() ? children_[index].get() : nullptr; }
    bool hasParent() const { return parent_ != nullptr; }
    T* parent() const { return parent_; }

private:
    T* parent_ = nullptr;
    std::vector<std::unique_ptr<T>> children_;
};

}  // namespace tvr::util
