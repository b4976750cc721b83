#include "undo/undo_messages.h"

namespace tvr::plr::adaptor::cinema4d {

// Neither message has work to do before the undo manager exists.
Bool DoUndoMsg::CoreMessage(LONG, const BaseContainer&) { return true; }

Bool C4DUndoMessage::CoreMessage(LONG, const BaseContainer&) { return true; }

}  // namespace tvr::plr::adaptor::cinema4d
