// The undo bracket: the core's nested, named undo groups become one host undo
// group, opened by the outermost beginUndo and closed by the matching
// acceptUndo; every addUndo in between hands a step to the undo manager.
// Unbalanced use is reported in the log, never repaired.
#include <algorithm>
#include <new>

#include "adaptor/c4d_adaptor_interface.h"
#include "host_api/c4d.h"
#include "undo/c4d_undo_manager.h"
#include "undo/undo_guard.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

namespace {
// Deeper nesting than this is surely a bracket left open somewhere.
constexpr std::size_t kUnusualUndoLevel = 100;
// One repeat of a group name is normal; a third open group of that name is not.
constexpr std::ptrdiff_t kDuplicateNames = 2;
}  // namespace

bool C4DAdaptorInterface::isAcceptingUndo() {
    Log scope("isAcceptingUndo", Log::Notice);
    if (undoLevels.empty()) {
        scope.write("UndoLevel is empty -> not accepting", -1);
        return false;
    }
    return true;
}

int C4DAdaptorInterface::beginUndo(const std::string& groupName) {
    Log scope("Begin undo", Log::Notice);
    if (undoLevels.empty()) {
        // The hidden object must exist before the first step of the group arrives.
        if (C4DUndoManager* manager = C4DUndoManager::instance()) manager->ensureContainerObject(nullptr);
        if (BaseDocument* doc = GetActiveDocument()) doc->StartUndo();
    }
    if (Log::isEnabled(Log::Notice)) {
        if (undoLevels.size() > kUnusualUndoLevel)
            Log(Log::Critical).write("DEBUG WARNING: Detected unusual high undo level.", -1);
        if (std::count(undoLevels.begin(), undoLevels.end(), groupName) >= kDuplicateNames)
            Log(Log::Critical)
                .write("DEBUG WARNING: Detected duplicated undo groups. Possible undo group mismatch", -1);
    }
    undoLevels.push_back(groupName);
    return 0;
}

int C4DAdaptorInterface::addUndo(tvr::plr::CUndo* step) {
    Log scope("addUndo", Log::Notice);
    const bool ownStep = step != nullptr && step == ownStepPending_;
    ownStepPending_ = nullptr;
    if (!isAcceptingUndo()) return 1;
    // A step being replayed must not add steps to the list it is replayed from.
    if (undoReplayInProgress()) {
        Log(Log::Error).write("addUndo refused while an undo or redo is replayed", -1);
        return 1;
    }
    C4DUndoManager* manager = C4DUndoManager::instance();
    auto* wrapper = new (std::nothrow) TavreloUndoWrapper(step, String(undoLevels.back()));
    if (!manager || !wrapper) {
        delete wrapper;
        return 1;
    }
    wrapper->ownsStep = ownStep;
    // Not kept when the manager could not store it (the hidden object is gone,
    // or there is no document); the answer stays 0 as the core expects.
    if (!manager->AddUndo(GetActiveDocument(), wrapper)) C4DUndoManager::discard(wrapper);
    return 0;
}

int C4DAdaptorInterface::acceptUndo() {
    Log scope("Accept undo", Log::Notice);
    if (undoLevels.empty()) {
        Log(Log::Error).write("Error: undo group mismatch. Attempt to end a non-existing undo group detected", -1);
        return 1;
    }
    undoLevels.pop_back();
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return 1;
    // Once cancelled, every later close undoes instead of ending the group:
    // the flag is never cleared, and that is the bracket's behaviour as it stands.
    if (undoCancelled) {
        doc->DoUndo(true);
    } else if (undoLevels.empty()) {
        doc->EndUndo();
    }
    return 0;
}

int C4DAdaptorInterface::cancelUndo() {
    Log scope("Cancel undo", Log::Notice);
    undoCancelled = true;
    return acceptUndo();
}

bool C4DAdaptorInterface::undo() {
    BaseDocument* doc = GetActiveDocument();
    return doc != nullptr && doc->DoUndo(false);
}

int C4DAdaptorInterface::recordOwnStep(tvr::plr::CUndo* step) {
    if (!step) return 1;
    ownStepPending_ = step;
    const int answer = addUndo(step);
    ownStepPending_ = nullptr;
    if (answer != 0) step->release();
    return answer;
}

}  // namespace tvr::plr::adaptor::cinema4d
