#include <csignal>
#include <cstdio>
#include <regex>
#include <string>

#include "embedded_host/runtime/host_context.h"
#include "embedded_host/scene/document_node.h"
#include "test_support/host_fixture.h"

LONG linkedTestModuleMain(LONG action, void* p1, void* p2, void* p3);

namespace tvr::plr::embedded::testing {
namespace {

constexpr LONG kCommandId = 1000001;
constexpr LONG kTagId = 1000002;

// Console lines that begin with the prefix.
int consoleCount(EmbeddedHost& host, const std::string& prefix) {
  int n = 0;
  for (const auto& l : host.console()) n += l.rfind(prefix, 0) == 0;
  return n;
}

TEST(Loader, RefusesNonModulesAndModulesRefusingAnOldHost) {
  std::string error;
  {
    EmbeddedHost host(quietOptions());
    EXPECT_FALSE(host.loadModule(HOST_TEST_NO_ENTRY_PATH, &error));
    EXPECT_EQ(error, std::string(HOST_TEST_NO_ENTRY_PATH) + ": no c4d_main");
    EXPECT_EQ(consoleCount(host, error), 1);
    EXPECT_FALSE(host.loadModule("/nonexistent/module.so", &error));
    EXPECT_EQ(error.rfind("/nonexistent/module.so: cannot load", 0), 0u);
    EXPECT_FALSE(host.loadModule(nullptr, "linked", &error));
    EXPECT_EQ(host.moduleCount(), 0u);
  }
  HostOptions old = quietOptions();
  old.apiVersion = 10999;
  EmbeddedHost host(old);
  EXPECT_FALSE(host.loadModule(HOST_TEST_MODULE_PATH, &error));
  EXPECT_EQ(error, std::string(HOST_TEST_MODULE_PATH) + ": initialise answered -3");
  EXPECT_EQ(host.moduleCount(), 0u);
  EXPECT_TRUE(host.context().plugins.commands.empty());
}

class RoundTrip : public ::testing::TestWithParam<bool> {};

TEST_P(RoundTrip, CommandTagMessageAndSceneHook) {
  EmbeddedHost host(quietOptions());
  std::string error;
  ASSERT_TRUE(GetParam() ? host.loadModule(HOST_TEST_MODULE_PATH, &error)
                         : host.loadModule(linkedTestModuleMain, "linked test module", &error)) << error;
  // Initialised, asked its version, started.
  std::vector<std::string> protocol;
  for (const auto& e : host.journal().find("Module")) protocol.push_back(e.text.substr(0, e.text.find(' ')));
  EXPECT_EQ(protocol, (std::vector<std::string>{"initialise", "version", "start"}));
  EXPECT_EQ(host.journal().find("Module")[1].text.substr(host.journal().find("Module")[1].text.size() - 2), " 3");
  EXPECT_EQ(consoleCount(host, "version asked"), 1);
  BaseDocument* doc = host.newDocument("scene");
  host.runCycle();  // the new document's activation
  host.journal().clear();
  EXPECT_EQ(consoleCount(host, "hook message 604 with document"), 1);

  ASSERT_TRUE(host.runCommand(kCommandId));
  EXPECT_EQ(consoleCount(host, "command ran"), 1);
  BaseObject* op = doc->GetFirstObject();
  ASSERT_NE(op, nullptr);
  EXPECT_EQ(op->GetName().ToStd(), "made by command");
  BaseTag* tag = op->GetTag(kTagId);
  ASSERT_NE(tag, nullptr);
  EXPECT_NE(tag->GetNodeData(), nullptr);
  EXPECT_EQ(tag->GetObject(), op);

  // Cycle 1: the command's event evaluates; the tag runs and posts a special event.
  host.advance(40);
  EXPECT_EQ(tag->GetDataInstance()->GetLong(1), 1);
  EXPECT_EQ(consoleCount(host, "core message"), 0);
  EXPECT_EQ(consoleCount(host, "hook message 604"), 2);
  // Cycle 2: the message plug-in receives it with 'Mci1' and 'Mci2'; nothing evaluates.
  host.advance(40);
  EXPECT_EQ(consoleCount(host, "core message 7 from tag run 1"), 1);
  EXPECT_EQ(tag->GetDataInstance()->GetLong(1), 1);
  EXPECT_EQ(consoleCount(host, "hook message 604"), 2);

  // The command's group undoes as one step and takes the object away.
  EXPECT_TRUE(host.undo());
  EXPECT_EQ(doc->GetFirstObject(), nullptr);
  EXPECT_TRUE(host.redo());
  EXPECT_EQ(doc->GetFirstObject(), op);

  EXPECT_TRUE(host.sendPluginMessage(1, nullptr));
  EXPECT_FALSE(host.sendPluginMessage(2, nullptr));
  host.shutdown();
  EXPECT_EQ(consoleCount(host, "module end"), 1);
  EXPECT_TRUE(host.documents().empty());
}

INSTANTIATE_TEST_SUITE_P(Loaded, RoundTrip, ::testing::Values(true, false),
                         [](const ::testing::TestParamInfo<bool>& i) { return i.param ? "FromFile" : "Linked"; });

TEST(Registration, OnlyWhileStartingAndOncePerId) {
  EmbeddedHost host(quietOptions());
  ASSERT_TRUE(host.loadModule(HOST_TEST_MODULE_PATH));
  // After start: refused, and the host still frees the data it was handed.
  struct Cmd : CommandData {};
  EXPECT_FALSE(RegisterCommandPlugin(42, "late", 0, nullptr, "", new Cmd));
  // The same module again: every id is taken, so its start fails.
  std::string error;
  EXPECT_TRUE(host.loadModule(linkedTestModuleMain, "second copy", &error));
  EXPECT_EQ(error, "second copy: start answered 0");
  EXPECT_EQ(host.context().plugins.commands.size(), 1u);
  EXPECT_EQ(host.journal().count("Register"), 6u);  // four accepted, one late, one duplicate

  // A tag or scene hook without an allocator, or a command or message without data, is refused
  // when registered, and the id stays free.
  host.context().starting = true;
  host.journal().clear();
  EXPECT_FALSE(RegisterTagPlugin(77, "no code", TAG_EXPRESSION, nullptr, "", AutoBitmap("i.tif"), 0));
  EXPECT_FALSE(RegisterSceneHookPlugin(78, "no hook", 0, nullptr, 1000, 0));
  EXPECT_FALSE(RegisterCommandPlugin(79, "no command", 0, nullptr, "", nullptr));
  EXPECT_FALSE(RegisterMessagePlugin(80, "no message", 0, nullptr));
  EXPECT_TRUE(RegisterTagPlugin(77, "with code", 0, [] { return static_cast<NodeData*>(new TagData); }, "",
                                AutoBitmap("i.tif"), 0));
  host.context().starting = false;
  std::vector<std::string> lines;
  for (const auto& e : host.journal().entries()) lines.push_back(e.kind + " " + e.text);
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "Register Tag 77 'no code' refused: no allocator",
                       "GePrint RegisterTagPlugin 77 failed: no allocator",
                       "Register SceneHook 78 'no hook' refused: no allocator",
                       "GePrint RegisterSceneHookPlugin 78 failed: no allocator",
                       "Register Command 79 'no command' refused: no command data",
                       "GePrint RegisterCommandPlugin 79 failed: no command data",
                       "Register Message 80 'no message' refused: no message data",
                       "GePrint RegisterMessagePlugin 80 failed: no message data",
                       "Register Tag 77 'with code'"}));
}

TEST(Evaluation, ExpressionTagsRunDepthFirstAndHooksComeOncePerDocument) {
  EmbeddedHost host(quietOptions());
  ASSERT_TRUE(host.loadModule(linkedTestModuleMain, "linked test module"));
  BaseDocument* first = host.newDocument("first");
  BaseDocument* second = host.newDocument("second");
  auto hooks = [](BaseDocument* d) { return static_cast<DocumentNode*>(nodeOf(d))->hooks; };
  static_cast<DocumentNode*>(nodeOf(first))->ensureSceneHooks();  // again: no second hook
  ASSERT_EQ(hooks(first).size(), 1u);
  ASSERT_EQ(hooks(second).size(), 1u);
  EXPECT_NE(hooks(first)[0]->nodeData(), hooks(second)[0]->nodeData());

  // a { a1 { a11 } a2 } b, each with an expression tag (a with two); one more in the other document.
  std::vector<BaseTag*> expected;
  auto add = [&](BaseDocument* doc, BaseObject* parent, BaseObject* pred, int tags) {
    BaseObject* op = BaseObject::Alloc(Onull);
    doc->InsertObject(op, parent, pred);
    op->InsertTag(BaseTag::Alloc(Tuvw));  // no plug-in, no expression: never runs
    for (BaseTag* last = nullptr; tags-- > 0;) {
      BaseTag* t = BaseTag::Alloc(kTagId);
      op->InsertTag(t, last);
      last = t;
      if (doc == first) expected.push_back(t);
    }
    return op;
  };
  // A plug-in tag registered without the expression flag is never executed.
  struct Plain : TagData {
    LONG Execute(BaseTag*, BaseDocument*, BaseObject*, BaseThread*, LONG, LONG) override {
      SpecialEventAdd(99);
      return EXECUTION_RESULT_OK;
    }
  };
  constexpr LONG kPlainTag = 1000050;
  host.context().starting = true;
  ASSERT_TRUE(RegisterTagPlugin(kPlainTag, "Plain", TAG_VISIBLE, [] { return static_cast<NodeData*>(new Plain); }, "",
                                nullptr, 0));
  host.context().starting = false;
  BaseObject* a = add(first, nullptr, nullptr, 2);
  a->MakeTag(kPlainTag);
  BaseObject* a1 = add(first, a, nullptr, 1);
  add(first, a1, nullptr, 1);
  add(first, a, a1, 1);
  add(first, nullptr, a, 1);
  add(second, nullptr, nullptr, 1);

  host.journal().clear();
  EXPECT_TRUE(first->ExecutePasses(nullptr, true, false, false));
  EXPECT_EQ(host.journal().count("SpecialEventAdd"), 0u);  // animation only
  EXPECT_TRUE(first->ExecutePasses(nullptr, false, true, false));
  std::vector<std::string> ran, order;
  for (const auto& e : host.journal().find("SpecialEventAdd")) ran.push_back(e.text);
  for (BaseTag* t : expected) order.push_back("1000003 7 " + std::to_string(reinterpret_cast<VULONG>(t)));
  EXPECT_EQ(ran, order);
}

TEST(Events, JournalRecordsHostCallsInOrder) {
  EmbeddedHost host(quietOptions());
  BaseDocument* doc = host.newDocument("d");
  BaseObject* op = BaseObject::Alloc(Onull);
  op->SetName("n");
  doc->InsertObject(op, nullptr, nullptr);
  host.journal().clear();
  EventAdd(EVENT_FORCEREDRAW);
  DrawViews(0x8002);
  GeSyncMessage(EVMSG_TIMECHANGED);
  SpecialEventAdd(5, 1, 2);
  GePrint("hello");
  MessageDialog("careful");
  StopAllThreads();
  op->Message(MSG_UPDATE);  // object messages name what they were sent to
  EXPECT_EQ(host.journal().toString(),
            "EventAdd 1\nDrawViews 32770\nGeSyncMessage 1952671847 0 0 0\nSpecialEventAdd 5 1 2\nGePrint hello\n"
            "MessageDialog careful\nStopAllThreads\nMessage object:5140 'n' 604\n");
  EXPECT_EQ(host.dialogs(), std::vector<std::string>{"careful"});
  EXPECT_EQ(host.console(), (std::vector<std::string>{"hello", "careful"}));  // what a dialog said stays readable
  host.journal().clear();
  doc->Message(MSG_UPDATE);
  EXPECT_TRUE(std::regex_match(host.journal().toString(), std::regex("DocumentMessage [^\n]* 604\n"))) << host.journal().toString();
  EXPECT_EQ(GetWorldContainerInstance()->GetLong(WPREF_UNITS_BASIC), UNIT_CM);
}

TEST(Events, PumpRunsEachCycleOnTheVirtualClock) {
  EmbeddedHost host(quietOptions());
  std::vector<std::uint64_t> ticks;
  host.setMessagePump([&ticks](std::uint64_t now) { ticks.push_back(now); });
  host.advance(100);  // steps at 40 and 80
  host.advance(20);   // crosses 120
  EXPECT_EQ(ticks, (std::vector<std::uint64_t>{40, 80, 120}));
  EXPECT_EQ(host.nowMs(), 120u);
  host.runCycle();
  EXPECT_EQ(ticks.back(), 120u);
}

void recordingCrashSlot(char* info) {
  std::fprintf(stderr, "crash slot called: %s\n", info);
  std::fflush(stderr);
}

TEST(CrashHandlerDeathTest, FatalSignalCallsTheSlot) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        HostOptions o;
        o.crashHandlers = true;
        EmbeddedHost host(o);
        host.table().crashHandler = recordingCrashSlot;
        std::raise(SIGSEGV);
      },
      "crash slot called: fatal signal SIGSEGV");
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
