#include "hostsim/script.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace hostsim {

namespace {

struct VerbInfo {
    const char* name;
    Verb verb;
    enum { None, Text, Integer, Seconds, Line, NameAndFile, Name, Span, Count } argument;
    const char* usage;  // the arguments and one line of what it does, for help
};

constexpr VerbInfo kVerbs[] = {
    {"new", Verb::New, VerbInfo::None, "                 makes a new document and activates it"},
    {"open", Verb::Open, VerbInfo::Text, "FILE           opens a scene file as a new active document"},
    {"save", Verb::Save, VerbInfo::Text, "FILE           saves the active document"},
    {"close", Verb::Close, VerbInfo::None, "               closes the active document"},
    {"activate", Verb::Activate, VerbInfo::Integer, "N           activates the Nth open document (from 1)"},
    {"command", Verb::Command, VerbInfo::Integer, "ID           runs a command plug-in (1023575: the core's main window)"},
    {"run", Verb::Run, VerbInfo::Seconds, "SECONDS         lets time pass: events, timers and the core's run loop"},
    {"undo", Verb::Undo, VerbInfo::Count, "[N]             presses the host's undo N times (1), then lets the host catch up"},
    {"redo", Verb::Redo, VerbInfo::Count, "[N]             presses the host's redo N times (1), then lets the host catch up"},
    {"history", Verb::History, VerbInfo::None, "             the host's undo stack and the module's undo steps of the active document"},
    {"tree", Verb::Tree, VerbInfo::None, "                prints the active document's objects"},
    {"console", Verb::Console, VerbInfo::None, "             prints the host's console"},
    {"journal", Verb::Journal, VerbInfo::None, "             prints every host call the modules made"},
    {"core", Verb::Core, VerbInfo::Line, "LINE            hands LINE to the core's command channel (core help lists its verbs)"},
    {"view", Verb::View, VerbInfo::Text, "FILE.svg        draws the active document from its camera (or the front)"},
    {"curves", Verb::Curves, VerbInfo::NameAndFile, "NAME FILE.svg draws an object's animation tracks and keys"},
    {"inspect", Verb::Inspect, VerbInfo::Name, "NAME         prints the host side of one object: place, modes, lens, tags, tracks"},
    {"info", Verb::Info, VerbInfo::Integer, "N               tells the active document's scene hooks document event N (1000-1008)"},
    {"play", Verb::Play, VerbInfo::Span, "A B             scrubs the active document's time from A to B seconds, frame by frame"},
    {"spline", Verb::Spline, VerbInfo::Line, "NAME PARENT X Y Z X Y Z... draws a linear spline through the points (host units) under PARENT ('-': at the top), as a user does"},
    {"help", Verb::Help, VerbInfo::None, "                lists these commands"},
    {"quit", Verb::Quit, VerbInfo::None, "                ends the session"},
};

// More presses than this at once is surely a typing error.
constexpr std::int64_t kMaxPresses = 100000;

// A run longer than a day of virtual time is surely a typing error.
constexpr double kMaxRunSeconds = 86400.0;

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string trim(const std::string& s) {
    std::size_t b = 0, e = s.size();
    while (b < e && isSpace(s[b])) ++b;
    while (e > b && isSpace(s[e - 1])) --e;
    return s.substr(b, e - b);
}

bool parseInteger(const std::string& s, std::int64_t& out) {
    if (s.empty()) return false;
    errno = 0;
    char* end = nullptr;
    const long long v = std::strtoll(s.c_str(), &end, 10);
    if (errno != 0 || end != s.c_str() + s.size()) return false;
    out = v;
    return true;
}

bool parseSeconds(const std::string& s, double& out) {
    if (s.empty()) return false;
    char* end = nullptr;
    const double v = std::strtod(s.c_str(), &end);
    if (end != s.c_str() + s.size() || !std::isfinite(v)) return false;
    out = v;
    return true;
}

}  // namespace

std::string helpText() {
    std::string text;
    for (const VerbInfo& v : kVerbs) text += std::string("  ") + v.name + " " + v.usage + "\n";
    return text + "  # starts a comment\n";
}

const char* verbName(Verb verb) {
    for (const VerbInfo& v : kVerbs) {
        if (v.verb == verb) return v.name;
    }
    return "?";
}

std::string location(int line, int column) {
    return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

ParseResult parseLine(const std::string& raw, int lineNumber) {
    ParseResult result;
    std::string line = raw;
    if (const std::size_t hash = line.find('#'); hash != std::string::npos) line.erase(hash);
    std::size_t start = 0;
    while (start < line.size() && isSpace(line[start])) ++start;
    line = trim(line);
    if (line.empty()) return result;

    std::size_t split = 0;
    while (split < line.size() && !isSpace(line[split])) ++split;
    const std::string word = line.substr(0, split);
    std::size_t argumentAt = split;
    while (argumentAt < line.size() && isSpace(line[argumentAt])) ++argumentAt;
    const std::string argument = trim(line.substr(split));
    // Columns count from 1, as editors show them.
    result.column = static_cast<int>(start + (argument.empty() ? 0 : argumentAt)) + 1;

    const VerbInfo* info = nullptr;
    for (const VerbInfo& v : kVerbs) {
        if (word == v.name) info = &v;
    }
    if (!info) {
        result.column = static_cast<int>(start) + 1;
        result.error = "unknown command \"" + word + "\" (help lists the commands)";
        return result;
    }

    Command command;
    command.verb = info->verb;
    command.line = lineNumber;
    switch (info->argument) {
    case VerbInfo::None:
        if (!argument.empty()) result.error = word + " takes no argument";
        break;
    case VerbInfo::Text:
        if (argument.empty()) result.error = word + " needs a file name";
        command.text = argument;
        break;
    case VerbInfo::Name:
        if (argument.empty()) result.error = word + " needs an object name";
        command.text = argument;
        break;
    case VerbInfo::Line:
        if (argument.empty()) result.error = word + " needs a line for the core (try: core help)";
        command.text = argument;
        break;
    case VerbInfo::NameAndFile: {
        // The file is the last word, so that an object's name may hold blanks.
        std::size_t cut = argument.size();
        while (cut > 0 && !isSpace(argument[cut - 1])) --cut;
        command.text = trim(argument.substr(0, cut));
        command.file = argument.substr(cut);
        if (command.text.empty() || command.file.empty()) result.error = word + " needs an object name and a file name";
        break;
    }
    case VerbInfo::Count:
        command.number = 1;
        if (!argument.empty() && (!parseInteger(argument, command.number) || command.number < 1 ||
                                  command.number > kMaxPresses))
            result.error = word + " needs a number of presses from 1 to " + std::to_string(kMaxPresses) + ", not \"" +
                           argument + "\"";
        break;
    case VerbInfo::Integer:
        if (!parseInteger(argument, command.number) || command.number < 0 ||
            command.number > INT32_MAX)
            result.error = word + " needs a whole number, not \"" + argument + "\"";
        break;
    case VerbInfo::Span: {
        std::size_t cut = 0;
        while (cut < argument.size() && !isSpace(argument[cut])) ++cut;
        if (!parseSeconds(argument.substr(0, cut), command.seconds) ||
            !parseSeconds(trim(argument.substr(cut)), command.until) || std::fabs(command.until - command.seconds) > kMaxRunSeconds)
            result.error = word + " needs two times in seconds, not \"" + argument + "\"";
        break;
    }
    case VerbInfo::Seconds:
        if (!parseSeconds(argument, command.seconds) || command.seconds < 0 || command.seconds > kMaxRunSeconds)
            result.error = word + " needs seconds between 0 and 86400, not \"" + argument + "\"";
        break;
    }
    if (result.error.empty()) result.command = command;
    return result;
}

Script parseScript(std::istream& in) {
    Script script;
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        ParseResult parsed = parseLine(line, number);
        if (!parsed.error.empty()) {
            script.commands.clear();
            script.error = location(number, parsed.column) + ": " + parsed.error;
            return script;
        }
        if (parsed.command) script.commands.push_back(*parsed.command);
    }
    return script;
}

}  // namespace hostsim
