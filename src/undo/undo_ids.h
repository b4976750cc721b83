// Keys and values of the undo integration inside the module's id block.
#pragma once

#include <cstdint>

namespace tvr::plr::adaptor::cinema4d {

// On the hidden container object: a fixed marker, and the undo position that
// the host's own undo restores.
constexpr std::int32_t kContainerMarkerKey = 1023571;
constexpr std::int32_t kContainerMarkerValue = 17;
constexpr std::int32_t kContainerPositionKey = 1023574;
// On the undo reference tag: the position it last acted on.
constexpr std::int32_t kTagPositionKey = 1023573;

// A core message of our own block that hands a listing of the active
// document's undo steps to whoever sends it (hostsim's `history`). p1 is an
// UndoListingSink, p2 passed back to it.
constexpr std::int32_t kUndoListingMessageId = 1023577;
extern "C" {
using UndoListingSink = void (*)(void* context, const char* line);
}

constexpr const char* kContainerObjectName = "PLT-UndoContainer [Do not delete]";

}  // namespace tvr::plr::adaptor::cinema4d
