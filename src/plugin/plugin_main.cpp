#include "plugin/plugin_main.h"

#include <cstdio>
#include <new>

#include "adaptor/adaptor_hook.h"
#include "adaptor/c4d_adaptor_interface.h"
#include "plugin/c4d_adaptor_command.h"
#include "plugin/core_loader.h"
#include "plugin/module_state.h"
#include "plugin/plugin_ids.h"
#include "undo/c4d_undo_tag.h"
#include "undo/undo_messages.h"
#include "util/singleton.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

constexpr const char* kIcon = "mainicon.tif";
constexpr LONG kUndoTagInfo = TAG_VISIBLE | TAG_EXPRESSION;
constexpr LONG kSceneHookPriority = 1000;

// Writes what printf would for a text used as its own format string without
// arguments; a conversion in it is written as it stands instead of reading
// arguments that do not exist. Allocates nothing.
void printAsFormat(const char* text) {
    for (const char* p = text; *p; ++p) {
        if (p[0] == '%' && p[1] == '%') ++p;
        std::fputc(*p, stdout);
    }
}

}  // namespace

bool PluginStart() {
    ModuleState& state = moduleState();
    C4D_HostTable* table = C4DOS();
    if (!table) return false;

    // A repeated start keeps the saved functions, so that neither hook ever
    // becomes its own predecessor and calls itself for ever.
    if (table->crashHandler != &PluginCrashHandler) {
        state.previousCrashHandler = table->crashHandler;
        table->crashHandler = &PluginCrashHandler;
    }

    // The host owns every data object handed to it, a refused one included.
    if (!RegisterCommandPlugin(kCommandId, "Pelloran", 0, AutoBitmap(kIcon), "Pelloran",
                               new (std::nothrow) C4DAdaptorCommand))
        return false;

    if (!RegisterSceneHookPlugin(kSceneHookId, "PLT", 0, &AdaptorHook::Alloc, kSceneHookPriority, 0, nullptr))
        return false;

    if (!RegisterTagPlugin(kUndoTagId, "PLT Undo Reference Tag - [Do not delete]", kUndoTagInfo, &C4DUndoTag::Alloc, "",
                           AutoBitmap(kIcon), 0))
        return false;
    if (!RegisterMessagePlugin(kDoUndoMessageId, "DoUndo message", 0, new (std::nothrow) DoUndoMsg)) return false;

    if (!RegisterMessagePlugin(kUndoMessageId, "PLTUndoMessage", 0, new (std::nothrow) C4DUndoMessage)) return false;

    if (table->docAddUndo != &AddUndoHook) {
        state.previousAddUndo = table->docAddUndo;
        table->docAddUndo = &AddUndoHook;
    }
    return true;
}

void PluginEnd() {
    detachCore(C4DAdaptorInterface::instance());
    // Ends every singleton, the adaptor interface included, the collector last.
    if (tvr::util::SingletonCollector* collector = tvr::util::SingletonCollector::instance()) collector->destroyAll();
}

bool PluginMessage(std::int32_t id, void*) { return id == 0 || id == 1; }

void PluginCrashHandler(char* info) {
    std::fputs("PLT CrashInfo:\n", stdout);
    if (info) printAsFormat(info);
    std::fflush(stdout);
    if (CrashHandler previous = moduleState().previousCrashHandler) previous(info);
}

LONG AddUndoHook(BaseDocument* doc, void* element, LONG type) {
    const ModuleState& state = moduleState();
    // Whether this is the host's own change of an object. The answer is kept
    // without effect: the hook passes every call through unchanged.
    const bool hostObjectChange =
        state.ownUndoInProgress == 0 && element != nullptr &&
        (type == UNDO_CHANGE || type == UNDO_CHANGE_NOCHILDS || type == UNDO_CHANGE_SMALL || type == UNDO_DELETE) &&
        static_cast<BaseList2D*>(element)->IsInstanceOf(Obase);
    (void)hostObjectChange;
    if (state.previousAddUndo) return state.previousAddUndo(doc, element, type);
    return 1;
}

}  // namespace tvr::plr::adaptor::cinema4d
