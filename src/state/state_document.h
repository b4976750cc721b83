// Gathering the state texts stored on a document's objects into the one
// "PLT" tree handed to the core.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "util/xml/element.h"

namespace tvr::plr::state {

// One object's stored text; `object` names the object in log lines.
struct StoredText {
    std::string object;
    std::string text;
};

struct GatheredState {
    // Per stored text, in order: its parsed element (empty when it did not
    // parse). Its "masternode" children have moved into the tree.
    std::vector<tvr::util::xml::Element> parsed;
    // "PLT" with the top masters' states, their child masters nested in them.
    tvr::util::xml::Element document;
};

// Parses every text, expands compressed master states, drops repeated
// masters (the first in order wins), nests masters under their parents by
// their place among siblings and builds the "PLT" element. A text or master
// that cannot be used is refused with a log line naming its object; the rest
// load all the same.
GatheredState gatherState(const std::vector<StoredText>& texts);

// The decimal whole number at the start of `text` (after blanks); 0 when
// there is none, clamped to the 32-bit range.
std::int32_t readWholeNumber(const std::string& text);

}  // namespace tvr::plr::state
