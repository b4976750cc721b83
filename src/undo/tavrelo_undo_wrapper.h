// The form in which every undo step, the core's and the adaptor's own, is kept
// by the undo manager: the step, the name of the undo group it was added in,
// and its place in its document's list.
#pragma once

#include <cstdint>

#include "core_api/cundo.h"
#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class TavreloUndoWrapper : public tvr::plr::CUndo {
public:
    TavreloUndoWrapper(tvr::plr::CUndo* wrapped, const String& groupName) : name(groupName), step(wrapped) {}
    // The wrapped step is never destroyed here: the core owns its own steps.
    ~TavreloUndoWrapper() override = default;

    int undo(bool full) override { return step ? step->undo(full) : 0; }
    int redo() override { return step ? step->redo() : 0; }

    std::uint32_t index = 0;
    String name;
    tvr::plr::CUndo* step = nullptr;
    // Set when the step is one the adaptor made itself: the manager then
    // releases it together with the wrapper, since nobody else would.
    bool ownsStep = false;
};

}  // namespace tvr::plr::adaptor::cinema4d
