#include "util/xml/element.h"

#include <algorithm>
#include <utility>

#include "util/xml/block_pool.h"

namespace tvr::util::xml {

namespace {

// Answer of the accessors for what is absent; built on first use so that
// it is valid even during other files' static initialisation.
const std::string& noText() {
    static const std::string empty;
    return empty;
}

}  // namespace

Element::Element() = default;

Element::Element(std::uint32_t kind, std::string name) : name_(std::move(name)), kind_(kind) {}

Element::Element(const Element& other) : attributes_(other.attributes_), name_(other.name_), kind_(other.kind_) {
    // Copy the subtree with an explicit work list so that depth costs no stack.
    std::vector<std::pair<Element*, const Element*>> work{{this, &other}};
    while (!work.empty()) {
        auto [dst, src] = work.back();
        work.pop_back();
        dst->children_.reserve(src->children_.size());
        for (const auto& c : src->children_) {
            auto copy = std::make_unique<Element>();
            copy->attributes_ = c->attributes_;
            copy->name_ = c->name_;
            copy->kind_ = c->kind_;
            if (!c->children_.empty()) work.emplace_back(copy.get(), c.get());
            dst->children_.push_back(std::move(copy));
        }
    }
}

Element::Element(Element&& other) noexcept
    : attributes_(std::move(other.attributes_)),
      children_(std::move(other.children_)),
      name_(std::move(other.name_)),
      kind_(other.kind_) {
    other.attributes_.clear();
    other.children_.clear();
    other.name_.clear();
    other.kind_ = kEmpty;
}

Element& Element::operator=(const Element& other) {
    if (this == &other) return *this;
    // Copy first: `other` may live inside the children about to be replaced.
    Element copy(other);
    *this = std::move(copy);
    return *this;
}

Element& Element::operator=(Element&& other) noexcept {
    if (this == &other) return *this;
    Attributes attributes = std::move(other.attributes_);
    Children children = std::move(other.children_);
    std::string name = std::move(other.name_);
    const std::uint32_t kind = other.kind_;
    other.attributes_.clear();
    other.children_.clear();
    other.name_.clear();
    other.kind_ = kEmpty;
    clearChildren();  // may free `other` when it was one of our descendants
    attributes_ = std::move(attributes);
    children_ = std::move(children);
    name_ = std::move(name);
    kind_ = kind;
    return *this;
}

Element::~Element() { clearChildren(); }

void* Element::operator new(std::size_t size) { return takeBlock(size); }

void Element::operator delete(void* block, std::size_t size) noexcept { giveBlock(block, size); }

void Element::clearChildren() {
    if (children_.empty()) return;
    // Unlink grandchildren before each node dies, so destruction never recurses.
    // Nodes are freed in document order, the order the reader allocated them.
    Children pending;
    pending.reserve(children_.size());
    for (auto it = children_.rbegin(); it != children_.rend(); ++it) pending.push_back(std::move(*it));
    children_.clear();
    while (!pending.empty()) {
        std::unique_ptr<Element> node = std::move(pending.back());
        pending.pop_back();
        for (auto it = node->children_.rbegin(); it != node->children_.rend(); ++it) pending.push_back(std::move(*it));
        node->children_.clear();
    }
}

const std::string& Element::setName(const std::string& name) {
    name_ = name;
    return name_;
}

Element* Element::addChild(const Element& child) {
    if (child.isEmpty()) return this;
    children_.push_back(std::make_unique<Element>(child));
    return children_.back().get();
}

Element* Element::appendChild(Element&& child) {
    if (child.isEmpty()) return this;
    children_.push_back(std::make_unique<Element>(std::move(child)));
    return children_.back().get();
}

Element* Element::adoptChild(std::unique_ptr<Element> child) {
    if (!child || child->isEmpty()) return this;
    children_.push_back(std::move(child));
    return children_.back().get();
}

void Element::adoptChildren(Children children) {
    const bool allKept = std::all_of(children.begin(), children.end(),
                                     [](const std::unique_ptr<Element>& c) { return c && !c->isEmpty(); });
    if (children_.empty() && allKept) {
        children_ = std::move(children);
        return;
    }
    for (auto& c : children) adoptChild(std::move(c));
}

bool Element::hasAttribute(const std::string& name) const { return attributes_.find(name) != attributes_.end(); }

const std::string& Element::attribute(const std::string& name) const {
    auto it = attributes_.find(name);
    return it == attributes_.end() ? noText() : it->second;
}

void Element::setAttribute(const std::string& name, const std::string& value) { attributes_[name] = value; }

Element* Element::childAt(std::size_t index) { return index < children_.size() ? children_[index].get() : nullptr; }

const Element* Element::childAt(std::size_t index) const {
    return index < children_.size() ? children_[index].get() : nullptr;
}

Element* Element::child(const std::string& name) {
    for (auto& c : children_)
        if (c->kind_ == kTag && c->name_ == name) return c.get();
    return nullptr;
}

const Element* Element::child(const std::string& name) const { return const_cast<Element*>(this)->child(name); }

const std::string& Element::text() const {
    if (!children_.empty() && children_.front()->kind_ == kText) return children_.front()->name_;
    return noText();
}

const std::string& Element::childText(const std::string& name) const {
    const Element* c = child(name);
    return c ? c->text() : noText();
}

bool Element::removeChild(const Element* child) {
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (children_[i].get() == child) return removeChildAt(i);
    return false;
}

bool Element::removeChildAt(std::size_t index) { return takeChildAt(index) != nullptr; }

std::unique_ptr<Element> Element::takeChildAt(std::size_t index) {
    if (index >= children_.size()) return nullptr;
    std::unique_ptr<Element> taken = std::move(children_[index]);
    children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(index));
    return taken;
}

bool operator==(const Element& a, const Element& b) {
    std::vector<std::pair<const Element*, const Element*>> work{{&a, &b}};
    while (!work.empty()) {
        auto [x, y] = work.back();
        work.pop_back();
        if (x->kind() != y->kind() || x->name() != y->name() || x->attributes() != y->attributes() ||
            x->childCount() != y->childCount())
            return false;
        for (std::size_t i = 0; i < x->childCount(); ++i) work.emplace_back(x->childAt(i), y->childAt(i));
    }
    return true;
}

Tag::Tag(const std::string& name) : Element(kTag, name) {}

TagWithData::TagWithData(const std::string& name, const std::string& value) : Element(kTag, name) {
    addChild(Text(value));
}

Text::Text(const std::string& text) : Element(kText, text) {}

Data::Data(const Element& other) : Element(other) {}

}  // namespace tvr::util::xml
