#include "undo/c4d_undo_tag.h"

#include <new>

namespace tvr::plr::adaptor::cinema4d {

NodeData* C4DUndoTag::Alloc() { return new (std::nothrow) C4DUndoTag; }

}  // namespace tvr::plr::adaptor::cinema4d
