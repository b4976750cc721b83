// The entry point and start-up as the embedded host sees them: actions and
// their results, registrations, the two hooks, the command without a core.
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "embedded_host/runtime/host_context.h"
#include "module_host.h"
#include "plugin/module_state.h"
#include "test_support/recording_platform.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

Bool refuseCommand(LONG, const String&, LONG, BaseBitmap*, const String&, CommandData* data) {
    delete data;  // a refusing host still owns the data
    return false;
}

TEST(PluginEntryTest, StartRegistersEveryPlugInInOrderAndInstallsBothHooksUnlessRefused) {
    emb::EmbeddedHost host(quietHost());
    C4D_HostTable& table = host.table();
    auto* hostCrash = table.crashHandler;
    auto* hostAddUndo = table.docAddUndo;
    ASSERT_TRUE(host.loadModule(&c4d_main, "pelloran"));

    std::vector<std::string> registered;
    for (const emb::JournalEntry& e : host.journal().find("Register")) registered.push_back(e.text);
    EXPECT_EQ(registered, (std::vector<std::string>{
                              "Command 1023575 'Pelloran'",
                              "SceneHook 1023578 'PLT'",
                              "Tag 1023572 'PLT Undo Reference Tag - [Do not delete]'",
                              "Message 1023569 'DoUndo message'",
                              "Message 1023570 'PLTUndoMessage'",
                          }));

    // The details the host keeps of each registration, and the data it calls back through.
    const emb::PluginRegistry& plugins = host.context().plugins;
    ASSERT_EQ(std::vector<std::size_t>(
                  {plugins.commands.size(), plugins.sceneHooks.size(), plugins.tags.size(), plugins.messages.size()}),
              std::vector<std::size_t>({1, 1, 1, 2}));
    const emb::CommandPlugin& command = plugins.commands[0];
    EXPECT_EQ(std::vector<std::string>({command.icon, command.help}),
              std::vector<std::string>({"mainicon.tif", "Pelloran"}));
    const emb::NodePlugin& hook = plugins.sceneHooks[0];
    const emb::NodePlugin& tag = plugins.tags[0];
    EXPECT_EQ(std::vector<LONG>({command.info, hook.info, hook.priority, hook.diskLevel, tag.info, tag.diskLevel,
                                 plugins.messages[0].info, plugins.messages[1].info}),
              std::vector<LONG>({0, 0, 1000, 0, 9, 0, 0, 0}));
    EXPECT_EQ(std::vector<std::string>({tag.icon, tag.description}), std::vector<std::string>({"mainicon.tif", ""}));
    EXPECT_TRUE(hook.allocator && tag.allocator && plugins.messages[0].data && plugins.messages[1].data);

    EXPECT_EQ(table.crashHandler, &PluginCrashHandler);
    EXPECT_EQ(table.docAddUndo, &AddUndoHook);
    EXPECT_EQ(moduleState().previousCrashHandler, hostCrash);
    EXPECT_EQ(moduleState().previousAddUndo, hostAddUndo);
    ASSERT_NE(moduleState().pluginPath, nullptr);
    EXPECT_EQ(moduleState().pluginPath->GetString().ToStd(), "pelloran");

    host.shutdown();
    EXPECT_EQ(moduleState().initCount, 0);
    EXPECT_EQ(moduleState().pluginPath, nullptr);

    // The crash hook goes in before anything can fail; the first refusal ends the start.
    emb::EmbeddedHost refusing(quietHost());
    refusing.table().registerCommandPlugin = &refuseCommand;
    std::string error;
    ASSERT_TRUE(refusing.loadModule(&c4d_main, "pelloran", &error));
    EXPECT_NE(error.find("start answered 0"), std::string::npos) << error;
    EXPECT_EQ(refusing.table().crashHandler, &PluginCrashHandler);
    EXPECT_EQ(moduleState().previousCrashHandler, hostCrash);
    EXPECT_EQ(refusing.table().docAddUndo, hostAddUndo);
    EXPECT_TRUE(refusing.journal().find("Register").empty());
    refusing.shutdown();
}

TEST(PluginEntryTest, ActionsAnswerAsTheHostExpects) {
    {
        emb::EmbeddedHost refusing(quietHost(10999));
        std::string error;
        EXPECT_FALSE(refusing.loadModule(&c4d_main, "pelloran", &error));
        EXPECT_NE(error.find("initialise answered -3"), std::string::npos);
        EXPECT_EQ(moduleState().initCount, 1);  // refusal still counts
        EXPECT_EQ(c4d_main(3, nullptr, nullptr, nullptr), 1);
        EXPECT_EQ(moduleState().initCount, 0);
        C4D_HostTable table{};
        table.apiVersion = 11000;
        EXPECT_EQ(c4d_main(1, &table, nullptr, nullptr), -3);  // no path
        EXPECT_EQ(c4d_main(3, nullptr, nullptr, nullptr), 1);
        C4DOS() = nullptr;
    }
    emb::EmbeddedHost host(quietHost(11000));
    ASSERT_TRUE(host.loadModule(&c4d_main, "pelloran"));

    // A second initialise only counts: it must not even look at its pointers.
    void* poison = reinterpret_cast<void*>(static_cast<std::uintptr_t>(8));
    EXPECT_EQ(c4d_main(1, poison, poison, poison), 1);
    EXPECT_EQ(moduleState().initCount, 2);
    EXPECT_EQ(c4d_main(3, nullptr, nullptr, nullptr), 1);  // not the last end: nothing ends
    EXPECT_NE(moduleState().pluginPath, nullptr);

    // Version, unknown actions, and plug-in messages of which only 0 and 1 are answered.
    const struct {
        LONG action;
        std::intptr_t p1;
        LONG answer;
    } answers[] = {{4, 8, 3}, {5, 0, -1}, {0, 0, -1}, {6, 0, 1}, {6, 1, 1}, {6, 2, -1}};
    for (const auto& a : answers) {
        EXPECT_EQ(c4d_main(a.action, reinterpret_cast<void*>(a.p1), nullptr, nullptr), a.answer)
            << a.action << "/" << a.p1;
    }
    EXPECT_TRUE(host.sendPluginMessage(1, nullptr));

    // A start whose registration is refused answers 0; a repeated start must
    // not make the hooks chain to themselves.
    C4D_HostTable& table = host.table();
    const CrashHandler hostCrash = moduleState().previousCrashHandler;
    const AddUndoFunction hostAddUndo = moduleState().previousAddUndo;
    EXPECT_EQ(c4d_main(2, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(table.crashHandler, &PluginCrashHandler);
    EXPECT_EQ(moduleState().previousCrashHandler, hostCrash);
    EXPECT_EQ(moduleState().previousAddUndo, hostAddUndo);
    EXPECT_EQ(host.context().plugins.commands.size(), 1u);

    host.shutdown();
    EXPECT_EQ(moduleState().initCount, 0);
}

const char* g_chainedInfo = nullptr;
void recordCrash(char* info) { g_chainedInfo = info; }

TEST(PluginEntryTest, CrashHandlerPrintsAndChains) {
    moduleState().previousCrashHandler = &recordCrash;
    char info[] = "segfault at 0x0, 100%% gone, %s kept\n";
    ::testing::internal::CaptureStdout();
    PluginCrashHandler(info);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "PLT CrashInfo:\nsegfault at 0x0, 100% gone, %s kept\n");
    EXPECT_EQ(g_chainedInfo, info);
    moduleState().previousCrashHandler = nullptr;
}

struct OpenedCore : QuietCore {
    void showMain(int mode) override { modes.push_back(mode); }
    std::vector<int> modes;
    int detaches = 0;
};
OpenedCore* g_openedCore = nullptr;
core::CoreInterface* attachOpened(core::AdaptorInterface*) { return g_openedCore; }
void detachOpened(core::CoreInterface* core) { ++static_cast<OpenedCore*>(core)->detaches; }

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// The user runs the command before the core is installed and after; the host
// then ends the module, which was initialised twice. Boxes and dialog texts
// are checked end to end by the host simulator's sessions.
TEST(PluginEntryTest, CommandOpensTheCoreOnceItIsThereAndOnlyTheLastEndReleasesIt) {
    tvr::platform::RecordingPlatform rec;
    tvr::platform::setPlatform(&rec);
    rec.setRegistryValue("HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tavrelo", "path", "C:/Prog/X");
    const std::string logPath = ::testing::TempDir() + "plugin_entry_end.log";
    tvr::util::Log::openFile(logPath);
    emb::EmbeddedHost host(quietHost());
    ASSERT_TRUE(host.loadModule(&c4d_main, "pelloran"));

    // No core yet: every run tries again and says so.
    EXPECT_TRUE(host.runCommand(1023575));
    EXPECT_TRUE(host.runCommand(1023575));
    EXPECT_EQ(rec.count("LoadLibraryA"), 2u);
    EXPECT_EQ(host.dialogs(), std::vector<std::string>(2, "CORE is not attached to adaptor"));

    // Installed: loaded once, its main window opened on every run, always in mode 0.
    OpenedCore core;
    g_openedCore = &core;
    rec.addLibrary(
        "C:\\Prog\\X\\pelloran\\data\\core\\win\\x64\\core.dll",
        {{"attach", reinterpret_cast<void*>(&attachOpened)}, {"detach", reinterpret_cast<void*>(&detachOpened)}});
    EXPECT_TRUE(host.runCommand(1023575));
    EXPECT_TRUE(host.runCommand(1023575));
    EXPECT_EQ(rec.count("LoadLibraryA"), 3u);
    EXPECT_EQ(core.modes, (std::vector<int>{0, 0}));
    EXPECT_EQ(host.dialogs().size(), 2u);

    // Initialised twice: the first end only counts.
    EXPECT_EQ(c4d_main(1, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(c4d_main(3, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(core.detaches, 0);
    EXPECT_TRUE(host.journal().find("FreeResource").empty());
    EXPECT_EQ(fileText(logPath).find("[EOF]"), std::string::npos);

    // The last end detaches the core, ends the module's single instances (the
    // log closes its file) and gives the host back the module's resources.
    host.shutdown();
    EXPECT_EQ(core.detaches, 1);
    EXPECT_EQ(rec.loadedLibraries(), 0u);
    const std::string log = fileText(logPath);
    EXPECT_EQ(log.size() >= 6 ? log.substr(log.size() - 6) : log, "[EOF]\n");
    EXPECT_EQ(host.journal().find("FreeResource").size(), 1u);
    tvr::platform::setPlatform(nullptr);
    g_openedCore = nullptr;
    std::remove(logPath.c_str());
}

TEST(PluginEntryTest, AddUndoHookPassesEveryCallThrough) {
    emb::EmbeddedHost host(quietHost());
    ASSERT_TRUE(host.loadModule(&c4d_main, "pelloran"));
    BaseDocument* doc = host.newDocument();
    BaseObject* op = BaseObject::Alloc(Onull);
    doc->InsertObject(op, nullptr, nullptr);

    // Each call answered and journalled as the host's own function does it, the module's own undo included.
    const struct {
        std::int32_t own;
        void* element;
        LONG type;
    } cases[] = {{0, op, UNDO_CHANGE_SELECTION}, {1, op, UNDO_CHANGE}, {0, nullptr, UNDO_DELETE}};
    for (const auto& c : cases) {
        moduleState().ownUndoInProgress = c.own;
        doc->StartUndo();
        host.journal().clear();
        const LONG hooked = AddUndoHook(doc, c.element, c.type);
        const std::string hookedJournal = host.journal().toString();
        host.journal().clear();
        EXPECT_EQ(hooked, moduleState().previousAddUndo(doc, c.element, c.type));
        EXPECT_EQ(hookedJournal, host.journal().toString());
        doc->EndUndo();
    }
    moduleState().ownUndoInProgress = 0;

    const AddUndoFunction saved = moduleState().previousAddUndo;
    moduleState().previousAddUndo = nullptr;
    EXPECT_EQ(AddUndoHook(doc, op, UNDO_CHANGE), 1);
    moduleState().previousAddUndo = saved;
    host.shutdown();
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
