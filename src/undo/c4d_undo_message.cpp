#include "undo/c4d_undo_message.h"

namespace tvr::plr::adaptor::cinema4d {

Bool C4DUndoMessage::CoreMessage(LONG, const BaseContainer&) { return true; }

}  // namespace tvr::plr::adaptor::cinema4d
