// The one question the scene-changing operations ask before they act: is an
// undo or redo step of the core being replayed in the active document? While
// one is, those operations do nothing, so a step's own undo cannot re-enter.
#pragma once

namespace tvr::plr::adaptor::cinema4d {

bool undoReplayInProgress();

}  // namespace tvr::plr::adaptor::cinema4d
