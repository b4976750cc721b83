// The undo reference tag on each document's hidden undo container object. It
// notices during scene evaluation that the host's undo or redo has put another
// number into the object than the one the tag last acted on, and posts a core
// message about it: undo steps cannot run inside the evaluation itself.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DUndoTag : public TagData {
public:
    // The allocator registered with the host, which owns the result.
    static NodeData* Alloc();

    LONG Execute(BaseTag* tag, BaseDocument* doc, BaseObject* op, BaseThread* bt, LONG priority, LONG flags) override;
};

}  // namespace tvr::plr::adaptor::cinema4d
