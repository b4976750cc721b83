#include "undo/do_undo_msg.h"

namespace tvr::plr::adaptor::cinema4d {

Bool DoUndoMsg::CoreMessage(LONG, const BaseContainer&) { return true; }

}  // namespace tvr::plr::adaptor::cinema4d
