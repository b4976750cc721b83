#include "state/state_builder.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tvr::plr::state {

using tvr::util::xml::Element;

StateBuilder::StateBuilder(Element element) : element_(std::move(element)) {}

namespace {

std::vector<StateBuilder*> childrenInPlace(const StateBuilder& builder) {
    std::vector<StateBuilder*> children;
    children.reserve(builder.childCount());
    for (std::size_t i = 0; i < builder.childCount(); ++i) children.push_back(builder.child(i));
    std::stable_sort(children.begin(), children.end(),
                     [](const StateBuilder* a, const StateBuilder* b) { return a->childIndex() < b->childIndex(); });
    return children;
}

}  // namespace

Element StateBuilder::toElement() const {
    Element result = element_;
    if (result.isEmpty()) return result;
    // Top down with a work list: a child's own children are already in its
    // copied element, its child masters are appended after them when it is
    // taken from the list. Chains of masters of any length cost no stack.
    std::vector<std::pair<const StateBuilder*, Element*>> work{{this, &result}};
    while (!work.empty()) {
        auto [builder, target] = work.back();
        work.pop_back();
        for (const StateBuilder* child : childrenInPlace(*builder)) {
            if (child->element_.isEmpty()) continue;
            work.emplace_back(child, target->addChild(child->element_));
        }
    }
    return result;
}

Element StateBuilder::takeElement() {
    Element result = std::move(element_);
    if (result.isEmpty()) return result;
    std::vector<std::pair<StateBuilder*, Element*>> work{{this, &result}};
    while (!work.empty()) {
        auto [builder, target] = work.back();
        work.pop_back();
        for (StateBuilder* child : childrenInPlace(*builder)) {
            if (child->element_.isEmpty()) continue;
            work.emplace_back(child, target->appendChild(std::move(child->element_)));
        }
    }
    return result;
}

}  // namespace tvr::plr::state
