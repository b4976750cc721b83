// Session scripts: parsing each command and the errors a user sees, and how a
// session plays them against a host.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "hostsim/session.h"

namespace hostsim {
namespace {

TEST(Script, ParsesEveryCommandWithItsArgument) {
    std::istringstream in(
        "# a comment\n"
        "\n"
        "new\n"
        "open scenes/my scene.json   # trailing comment\n"
        "save out.json\n"
        "close\n"
        "activate 2\n"
        "command 1023575\n"
        "run 0.5\n"
        "\tundo\r\n"
        "redo 12\n"
        "tree\nconsole\njournal\nquit\n");
    const Script script = parseScript(in);
    ASSERT_EQ(script.error, "");
    ASSERT_EQ(script.commands.size(), 13u);
    EXPECT_EQ(script.commands[0].verb, Verb::New);
    EXPECT_EQ(script.commands[0].line, 3);
    EXPECT_EQ(script.commands[1].verb, Verb::Open);
    EXPECT_EQ(script.commands[1].text, "scenes/my scene.json");
    EXPECT_EQ(script.commands[2].text, "out.json");
    EXPECT_EQ(script.commands[4].number, 2);
    EXPECT_EQ(script.commands[5].number, 1023575);
    EXPECT_DOUBLE_EQ(script.commands[6].seconds, 0.5);
    EXPECT_EQ(script.commands[7].verb, Verb::Undo);
    EXPECT_EQ(script.commands[7].line, 10);
    EXPECT_EQ(script.commands[7].number, 1);
    EXPECT_EQ(script.commands[8].number, 12);
    EXPECT_EQ(script.commands[12].verb, Verb::Quit);
}

TEST(Script, BadLinesAreNamedWithTheirNumber) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"new\n  fly away\n", "line 2, column 3: unknown command \"fly\" (help lists the commands)"},
        {"open\n", "line 1, column 1: open needs a file name"},
        {"new doc\n", "line 1, column 5: new takes no argument"},
        {"\n\ncommand   abc\n", "line 3, column 11: command needs a whole number, not \"abc\""},
        {"activate -1\n", "line 1, column 10: activate needs a whole number, not \"-1\""},
        {"command 99999999999\n", "line 1, column 9: command needs a whole number, not \"99999999999\""},
        {"run -1\n", "line 1, column 5: run needs seconds between 0 and 86400, not \"-1\""},
        {"\trun nan\n", "line 1, column 6: run needs seconds between 0 and 86400, not \"nan\""},
        {"curves c.svg\n", "line 1, column 8: curves needs an object name and a file name"},
        {"core\n", "line 1, column 1: core needs a line for the core (try: core help)"},
        {"undo 0\n", "line 1, column 6: undo needs a number of presses from 1 to 100000, not \"0\""},
        {"history all\n", "line 1, column 9: history takes no argument"},
    };
    for (const auto& c : cases) {
        std::istringstream in(c.text);
        const Script script = parseScript(in);
        EXPECT_EQ(script.error, c.error) << c.text;
        EXPECT_TRUE(script.commands.empty()) << c.text;
    }
}

// Records what the session asks and fails where told to.
class FakeHost : public HostDriver {
public:
    std::vector<std::string> calls;
    std::string failing;

    std::string answer(const std::string& call) {
        calls.push_back(call);
        return call.rfind(failing, 0) == 0 && !failing.empty() ? "it broke" : "";
    }
    std::string newDocument() override { return answer("new"); }
    std::string openDocument(const std::string& f) override { return answer("open " + f); }
    std::string saveDocument(const std::string& f) override { return answer("save " + f); }
    std::string closeDocument() override { return answer("close"); }
    std::string activateDocument(std::int64_t i) override { return answer("activate " + std::to_string(i)); }
    std::string runCommand(std::int64_t id) override { return answer("command " + std::to_string(id)); }
    std::string run(double s) override { return answer("run " + std::to_string(s)); }
    std::string undo(std::int64_t times) override { return answer("undo " + std::to_string(times)); }
    std::string redo(std::int64_t times) override { return answer("redo " + std::to_string(times)); }
    std::string printTree(std::ostream& out) override {
        out << "the tree\n";
        return answer("tree");
    }
    std::string printConsole(std::ostream&) override { return answer("console"); }
    std::string printJournal(std::ostream&) override { return answer("journal"); }
    std::string coreCommand(const std::string& line, std::ostream&) override { return answer("core " + line); }
    std::string drawView(const std::string& file, std::ostream&) override { return answer("view " + file); }
    std::string inspect(const std::string& object, std::ostream&) override { return answer("inspect " + object); }
    std::string drawCurves(const std::string& object, const std::string& file, std::ostream&) override {
        return answer("curves " + object + " | " + file);
    }
};

TEST(Session, PlaysUntilQuitAndReportsFailuresWithTheirLine) {
    FakeHost host;
    host.failing = "save";
    std::ostringstream out, err;
    Session session(host, out, err);
    std::istringstream in(
        "new\nsave a.json\ntree\ncore  select \"a b\" c \ncurves Big Cube  c.svg\nview v.svg\nundo 3\nquit\nundo\n");
    EXPECT_EQ(session.playScript(in, "s.session"), 1);
    const std::vector<std::string> expected = {"new",          "save a.json", "tree", "core select \"a b\" c",
                                               "curves Big Cube | c.svg", "view v.svg", "undo 3"};
    EXPECT_EQ(host.calls, expected);
    EXPECT_EQ(out.str(), "the tree\n");
    EXPECT_EQ(err.str(), "s.session: line 2: save: it broke\n");
}

}  // namespace
}  // namespace hostsim
