// The undo reference tag on each document's hidden undo container object.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DUndoTag : public TagData {
public:
    // The allocator registered with the host, which owns the result.
    static NodeData* Alloc();
};

}  // namespace tvr::plr::adaptor::cinema4d
