// The step that brings the document time back to where a recording started.
// Undo swaps the stored and the current time, so redo is another undo.
#pragma once

#include <cstdint>

#include "core_api/cundo.h"
#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class CSetTimeRestoreObj : public tvr::plr::CUndo {
public:
    explicit CSetTimeRestoreObj(double seconds);

    // full: set the time directly and tell the host; otherwise through the
    // adaptor's setTime, leaving the stored time as it is.
    int undo(bool full) override;
    int redo() override;

    double storedTime() const { return time_; }
    std::uint32_t sequenceNumber() const { return sequence_; }

    // The host time the stored seconds become: single precision, milliseconds.
    static BaseTime hostTime(double seconds);

private:
    std::uint32_t sequence_;
    double time_;
};

}  // namespace tvr::plr::adaptor::cinema4d
