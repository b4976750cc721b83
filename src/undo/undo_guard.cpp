#include "undo/undo_guard.h"

#include "undo/c4d_undo_manager.h"

namespace tvr::plr::adaptor::cinema4d {

bool undoReplayInProgress() {
    C4DUndoManager* manager = C4DUndoManager::instance();
    return manager && manager->isInUndoRedo();
}

}  // namespace tvr::plr::adaptor::cinema4d
