// The scene hook as the host drives it: what each document event prints,
// what it asks of the core, what it leaves in the world container; and the
// core's state carried through a saved file and back.
#include <cstdio>
#include <string>
#include <vector>

#include "adaptor/adaptor_hook.h"
#include "module_host.h"
#include "test_support/message_box_records.h"
#include "test_support/no_installation.h"
#include "util/log.h"
#include "util/xml/reader.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

using tvr::util::xml::Element;
using tvr::util::xml::Tag;
using tvr::util::xml::TagWithData;

// A core that answers saveState with a fixed element and notes every call.
class FakeCore final : public QuietCore {
public:
    void saveState(Element& state) override {
        calls.push_back("saveState");
        state = toSave;
    }
    void loadState(const Element& state) override { calls.push_back("loadState " + state.toString("", "", "")); }
    void showMain(int mode) override { calls.push_back("showMain " + std::to_string(mode)); }

    Element toSave;
    std::vector<std::string> calls;
};

class SceneHook : public ModuleHost {
protected:
    // First in, last out: no installation for as long as the fixture lives.
    tvr::plr::test::NoInstallation noInstallation{&tvr::platform::recordMessageBox};

    void SetUp() override {
        ModuleHost::SetUp();
        host->world().SetString(kStored, String());
        AdaptorHook::pendingStateReload = false;
    }
    void TearDown() override {
        ModuleHost::TearDown();
        for (const std::string& f : files) std::remove(f.c_str());
    }

    void attach() { adaptor->core = &core; }

    // The host's document event `type` for the active document.
    void sendInfo(LONG type) { ASSERT_TRUE(host->tellDocument(host->activeDocument(), type)); }

    std::string consoleSince(std::size_t from) const {
        std::string text;
        for (std::size_t i = from; i < host->console().size(); ++i) text += host->console()[i] + "|";
        return text;
    }

    BaseObject* object(const std::string& name, const std::string& stored, BaseObject* parent = nullptr) {
        BaseObject* op = BaseObject::Alloc(Onull);
        op->SetName(String(name));
        host->activeDocument()->InsertObject(op, parent, nullptr);
        op->GetDataInstance()->SetString(kStored, String(stored));
        return op;
    }

    std::string file(const std::string& name) {
        files.push_back(::testing::TempDir() + name);
        return files.back();
    }

    FakeCore core;
    std::vector<std::string> files;
};

TEST_F(SceneHook, EveryEventPrintsItsNumberAndUnknownOnesSayNotHandled) {
    host->newDocument();
    attach();
    const std::size_t from = host->console().size();
    for (LONG type : {1000, 1003, 1006, 1007, 999, 1009, 1001}) sendInfo(type);
    EXPECT_EQ(consoleSince(from),
              "1000|1003|Message not handled: 1003|1006|Message not handled: 1006|1007|Message not handled: 1007|"
              "999|Message not handled: 999|1009|Message not handled: 1009|1001|");
    EXPECT_TRUE(core.calls.empty());
    // A message that is not about a document, or carries no record, prints nothing.
    const std::string before = consoleSince(from);
    BaseDocument* doc = host->activeDocument();
    host->messageSceneHooks(doc, MSG_DOCUMENTINFO, nullptr);
    host->messageSceneHooks(doc, 1, nullptr);
    EXPECT_EQ(consoleSince(from), before);
}

TEST_F(SceneHook, LeavingADocumentReloadsOnTheNextMessageOfAnyKind) {
    host->newDocument();
    attach();
    host->world().SetString(kStored, String("<samplecore slices=\"3\"/>"));
    object("rig",
           "<PLT_tag><name>m</name><objectname>rig</objectname><masternode><PLT_Plugin><name>m</name>"
           "</PLT_Plugin><parent></parent><childindex>0</childindex></masternode></PLT_tag>");
    sendInfo(1001);
    EXPECT_TRUE(core.calls.empty()) << "leaving does nothing visible itself";
    EXPECT_TRUE(AdaptorHook::pendingStateReload);
    host->advance(40);  // the next evaluation messages the hooks
    EXPECT_FALSE(AdaptorHook::pendingStateReload);
    ASSERT_EQ(core.calls.size(), 2u);
    EXPECT_EQ(core.calls[0], "loadState <PLT><PLT_Plugin><name>m</name></PLT_Plugin></PLT>");
    EXPECT_EQ(core.calls[1], "loadState <samplecore slices=\"3\"/>");
    EXPECT_EQ(storedOn(host->activeDocument()->GetFirstObject()), "") << "handed-over state is consumed";
    host->advance(40);
    EXPECT_EQ(core.calls.size(), 2u) << "once only";
}

TEST_F(SceneHook, SavingStoresTheCoreStateOnlyWhileACoreIsAttached) {
    host->newDocument();
    const std::string path = file("hook_save.scene");
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    EXPECT_EQ(host->world().GetString(kStored).ToStd(), "") << "no core, nothing stored";

    attach();
    core.toSave = Tag("samplecore");
    core.toSave.addChild(TagWithData("slices", "12"));
    const std::size_t from = host->console().size();
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    EXPECT_EQ(consoleSince(from), "1004|1005|");
    EXPECT_EQ(core.calls, std::vector<std::string>{"saveState"});
    EXPECT_EQ(host->world().GetString(kStored).ToStd(), "<samplecore><slices>12</slices></samplecore>");

    core.toSave = Element();  // an empty export leaves the stored text
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    EXPECT_EQ(host->world().GetString(kStored).ToStd(), "<samplecore><slices>12</slices></samplecore>");
}

// A file opened over another document: leaving that one marks a reload, which
// the open's own event then runs first, before its load handling.
TEST_F(SceneHook, OpeningAFileHandsItsStoredStateToTheCoreOnceThenTheWorldState) {
    host->newDocument();
    const std::string plugin = "<PLT_Plugin><name>walk</name><gait>trot</gait></PLT_Plugin>";
    BaseObject* rig = object("rig", "<PLT_tag><name>walk</name><objectname>rig</objectname><masternode>" + plugin +
                                        "<parent></parent><childindex>0</childindex></masternode></PLT_tag>");
    object("leg", "<PLT_tag><name>walk</name><objectname>leg</objectname></PLT_tag>", rig);
    object("plain", "");
    std::string why;
    const std::string path = file("hook_open.scene");
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    attach();
    host->world().SetString(kStored, String("<samplecore/>"));
    const std::size_t from = host->console().size();
    ASSERT_NE(host->openDocument(path, &why), nullptr) << why;
    EXPECT_EQ(consoleSince(from), "1001|1002|1000|");
    EXPECT_EQ(core.calls, (std::vector<std::string>{"loadState <PLT>" + plugin + "</PLT>", "loadState <samplecore/>",
                                                    "loadState <samplecore/>"}));
    for (BaseObject* op = host->activeDocument()->GetFirstObject(); op; op = op->GetNext())
        EXPECT_EQ(storedOn(op), "") << "consumed";

    // The same file opened by a fresh host as its first document: the load
    // handling itself loads the core library again (without an installation
    // that fails, says so, and the attached core goes on), opens its main
    // window and hands it the state.
    restart();
    attach();
    host->world().SetString(kStored, String("<samplecore/>"));
    const std::size_t boxes = tvr::platform::recordedMessageBoxes().size();
    ASSERT_NE(host->openDocument(path, &why), nullptr) << why;
    EXPECT_EQ(tvr::platform::recordedMessageBoxes().size(), boxes + 2);
    EXPECT_EQ(core.calls.size(), 6u);
    EXPECT_EQ(
        std::vector<std::string>(core.calls.begin() + 3, core.calls.end()),
        (std::vector<std::string>{"showMain 0", "loadState <PLT>" + plugin + "</PLT>", "loadState <samplecore/>"}));
}

TEST_F(SceneHook, OpeningAFileWithoutStoredStateOnlyHandsOverTheWorldState) {
    host->newDocument();
    object("plain", "");
    std::string why;
    const std::string path = file("hook_plain.scene");
    ASSERT_TRUE(host->saveDocument(nullptr, path));
    restart();
    attach();
    host->world().SetString(kStored, String("<samplecore/>"));
    const std::size_t boxes = tvr::platform::recordedMessageBoxes().size();
    ASSERT_NE(host->openDocument(path, &why), nullptr) << why;
    EXPECT_EQ(core.calls, std::vector<std::string>{"loadState <samplecore/>"});
    EXPECT_EQ(tvr::platform::recordedMessageBoxes().size(), boxes) << "no core load was tried";
}

TEST_F(SceneHook, WorldStateWithoutACoreThatLoadsIsNotHandedToAnyone) {
    host->newDocument();
    host->world().SetString(kStored, String("<samplecore/>"));
    const std::size_t logged = tvr::util::Log::contents().size();
    const std::size_t boxes = tvr::platform::recordedMessageBoxes().size();
    sendInfo(1001);
    host->advance(40);  // no installation: the core does not load, and nothing crashes
    EXPECT_GT(tvr::platform::recordedMessageBoxes().size(), boxes) << "a core load is tried first";
    EXPECT_NE(tvr::util::Log::contents().substr(logged).find(
                  "(ERROR): The stored core state is not handed over: no core is attached"),
              std::string::npos);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
