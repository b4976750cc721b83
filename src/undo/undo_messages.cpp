#include "undo/undo_messages.h"

#include <cstdint>

#include "plugin/plugin_ids.h"
#include "undo/c4d_undo_manager.h"
#include "undo/undo_ids.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

// The tag arrives as a bare pointer that may have been freed since it was
// posted; it is only used when it is the live tag of the active document's
// record. A message of another document's tag waits: that tag posts again
// at its document's next evaluation.
BaseTag* activeDocumentTag(const BaseContainer& bc) {
    const void* posted = bc.GetVoid(BFM_CORE_PAR2);
    C4DUndoManager* manager = C4DUndoManager::instance();
    if (!posted || !manager || !manager->hasDocumentContainer(nullptr)) return nullptr;
    BaseTag* tag = manager->getDocumentContainer(nullptr)->undoTag();
    return tag == posted ? tag : nullptr;
}

void listSteps(const BaseContainer& bc) {
    auto sink = reinterpret_cast<UndoListingSink>(bc.GetVoid(BFM_CORE_PAR1));
    void* context = bc.GetVoid(BFM_CORE_PAR2);
    C4DUndoManager* manager = C4DUndoManager::instance();
    if (!sink || !manager) return;
    for (const std::string& line : manager->describeActiveDocument()) sink(context, line.c_str());
}

}  // namespace

Bool DoUndoMsg::CoreMessage(LONG id, const BaseContainer&) {
    if (id != kDoUndoMessageId) return true;
    StopAllThreads();
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return true;
    doc->DoUndo(true);
    doc->StartUndo();
    doc->AddUndo(UNDO_CHANGE_SMALL, doc->GetFirstObject());
    doc->EndUndo();
    return true;
}

Bool C4DUndoMessage::CoreMessage(LONG id, const BaseContainer& bc) {
    if (id == kUndoListingMessageId) {
        listSteps(bc);
        return true;
    }
    if (id != kUndoMessageId) return true;
    const auto target = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(bc.GetVoid(BFM_CORE_PAR1)));
    BaseTag* tag = activeDocumentTag(bc);
    if (!tag) {
        tvr::util::Log(tvr::util::Log::Warning).write("Undo message of a tag outside the active document ignored", -1);
        return true;
    }
    BaseContainer* data = tag->GetDataInstance();
    const auto difference =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(data->GetLong(kTagPositionKey)) - target);
    if (difference == 0) return true;
    C4DUndoManager* manager = C4DUndoManager::instance();
    if (difference > 0)
        manager->DoUndo(target);
    else
        manager->DoRedo(target);
    data->SetLong(kTagPositionKey, static_cast<LONG>(target));
    return true;
}

}  // namespace tvr::plr::adaptor::cinema4d
