// One master of the core in the tree rebuilt from stored states.
#pragma once

#include <cstdint>

#include "util/composite.h"
#include "util/xml/element.h"

namespace tvr::plr::state {

class StateBuilder : public tvr::util::Composite_Dynamic<StateBuilder> {
public:
    // `element` is the master's own "PLT_Plugin" state.
    explicit StateBuilder(tvr::util::xml::Element element);
    ~StateBuilder() override = default;

    void setChildIndex(std::int32_t index) { childIndex_ = index; }
    std::int32_t childIndex() const { return childIndex_; }
    const tvr::util::xml::Element& element() const { return element_; }

    // The master's element with its child masters' elements appended, ordered
    // by their place among their siblings (equal places keep their order).
    // A master whose element is empty is left out with everything under it.
    tvr::util::xml::Element toElement() const;
    // The same, moved out instead of copied: this master and those under it
    // are left with empty elements.
    tvr::util::xml::Element takeElement();

private:
    tvr::util::xml::Element element_;
    std::int32_t childIndex_ = 0;
};

}  // namespace tvr::plr::state
