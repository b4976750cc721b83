#pragma once

namespace tvr::plr {

// One undo step of the core, or one that the adaptor makes on its behalf.
// Virtual table order: undo, redo, release, destructor.
class CUndo {
public:
    // Takes the change back; `full` false asks for the light form where a
    // step has one (the time restore uses it).
    virtual int undo(bool full) = 0;
    virtual int redo() = 0;
    // Steps are handed across the library boundary, so the side that made a
    // step must also free it: release deletes through the virtual destructor.
    virtual void release() { delete this; }
    virtual ~CUndo() = default;
};

}  // namespace tvr::plr
