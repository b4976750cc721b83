#include "undo/undo_guard.h"

namespace tvr::plr::adaptor::cinema4d {

// No replay can run until the undo manager exists to run one.
bool undoReplayInProgress() { return false; }

}  // namespace tvr::plr::adaptor::cinema4d
