// The host's entry point: initialise, start, end, version and plug-in messages.
#include "plugin/module_state.h"
#include "plugin/plugin_ids.h"
#include "plugin/plugin_main.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {

constexpr LONG kActionInitialise = 1;
constexpr LONG kActionStart = 2;
constexpr LONG kActionEnd = 3;
constexpr LONG kActionVersion = 4;
constexpr LONG kActionMessage = 6;

constexpr LONG kRefused = -3;
constexpr LONG kModuleVersion = 3;

LONG initialise(void* table, void* path) {
    ModuleState& state = moduleState();
    if (++state.initCount != 1) return 1;
    auto* hostTable = static_cast<C4D_HostTable*>(table);
    C4DOS() = hostTable;
    if (!hostTable || hostTable->apiVersion < kMinimumApiVersion || !path) return kRefused;
    state.pluginPath = new (std::nothrow) Filename;
    if (!state.pluginPath) return 1;
    *state.pluginPath = *static_cast<const Filename*>(path);
    return 1;
}

LONG end() {
    ModuleState& state = moduleState();
    if (state.initCount-- != 1) return 1;
    PluginEnd();
    FreeResource();
    delete state.pluginPath;
    state.pluginPath = nullptr;
    return 1;
}

}  // namespace

ModuleState& moduleState() {
    static ModuleState state;
    return state;
}

}  // namespace tvr::plr::adaptor::cinema4d

C4D_MAIN_EXPORT LONG c4d_main(LONG action, void* p1, void* p2, void* p3) {
    namespace m = tvr::plr::adaptor::cinema4d;
    switch (action) {
    case m::kActionInitialise:
        return m::initialise(p1, p3);
    case m::kActionStart:
        return m::PluginStart() ? 1 : 0;
    case m::kActionEnd:
        return m::end();
    case m::kActionVersion:
        return m::kModuleVersion;
    case m::kActionMessage:
        return m::PluginMessage(static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(p1)), p2) ? 1 : -1;
    default:
        return -1;
    }
}
