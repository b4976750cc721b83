#include "adaptor/adaptor_hook.h"

#include <new>
#include <string>

#include "adaptor/c4d_adaptor_interface.h"
#include "adaptor/state_links.h"
#include "plugin/core_loader.h"
#include "plugin/plugin_ids.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

bool AdaptorHook::pendingStateReload = false;

NodeData* AdaptorHook::Alloc() { return new (std::nothrow) AdaptorHook; }

namespace {

std::string worldState() {
    const BaseContainer* world = GetWorldContainerInstance();
    return world ? world->GetString(kStoredStateId).ToStd() : std::string();
}

// The core's state kept in the world container goes back to the core. A core
// that could not be loaded gets nothing: the loader has already told the user.
void handOverWorldState(C4DAdaptorInterface* adaptor, bool loadFirst) {
    const std::string stored = worldState();
    if (stored.empty()) return;
    if (loadFirst && !adaptor->core) loadCore(adaptor);
    if (!adaptor->core) {
        Log(Log::Error).write("The stored core state is not handed over: no core is attached", -1);
        return;
    }
    adaptor->core->loadState(tvr::util::xml::parse(stored));
}

void reloadActiveDocument(C4DAdaptorInterface* adaptor) {
    if (C4DAdaptorInterface::hasStoredState(GetActiveDocument())) {
        if (!adaptor->core) loadCore(adaptor);
        if (adaptor->core) adaptor->loadStoredStates(true);
    }
    handOverWorldState(adaptor, true);
}

void documentLoaded(C4DAdaptorInterface* adaptor) {
    if (adaptor->loadStoredStates(false)) {
        // Loaded again even when a core is attached; the loader copes with that.
        loadCore(adaptor);
        if (adaptor->core) {
            adaptor->core->showMain(0);
            adaptor->loadStoredStates(true);
        }
    }
    handOverWorldState(adaptor, false);
}

void beforeSave(C4DAdaptorInterface* adaptor, const DocumentInfoData& info) {
    if (!adaptor->core) return;
    tvr::util::xml::Element state;
    adaptor->exportState(state);
    if (!state.isEmpty()) {
        if (BaseContainer* world = GetWorldContainerInstance())
            world->SetString(kStoredStateId, String(state.toString("", "", "")));
    }
    BaseDocument* doc = GetActiveDocument();
    undoSetDocumentName(doc, info.filename);
    undoDetachContainer(doc);
}

void afterSave(C4DAdaptorInterface* adaptor) {
    if (!adaptor->core) return;
    BaseDocument* doc = GetActiveDocument();
    undoAttachContainer(doc);
    adaptor->clearStoredStates(doc);
}

void removed(C4DAdaptorInterface* adaptor, const DocumentInfoData& info) {
    if (!adaptor->core) return;
    adaptor->releaseDocumentMasters(info.doc);
    undoRemoveDocument(info.doc);
}

}  // namespace

Bool AdaptorHook::Message(GeListNode*, LONG type, void* data) {
    C4DAdaptorInterface* adaptor = C4DAdaptorInterface::instance();
    if (!adaptor) return true;
    if (pendingStateReload) {
        pendingStateReload = false;
        reloadActiveDocument(adaptor);
    }
    if (type != MSG_DOCUMENTINFO || !data) return true;
    const DocumentInfoData& info = *static_cast<const DocumentInfoData*>(data);
    GePrint(String(std::to_string(info.type)));
    switch (static_cast<std::uint32_t>(info.type) - 1000u) {
    case 0:  // became active
        break;
    case 1:  // left
        pendingStateReload = true;
        break;
    case 2:
        documentLoaded(adaptor);
        break;
    case 4:
        beforeSave(adaptor, info);
        break;
    case 5:
        afterSave(adaptor);
        break;
    case 8:
        removed(adaptor, info);
        break;
    default:
        GePrint(String("Message not handled: " + std::to_string(info.type)));
        break;
    }
    return true;
}

}  // namespace tvr::plr::adaptor::cinema4d
