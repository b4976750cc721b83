#include "script.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace hostsim {

namespace {

struct VerbInfo {
    const char* name;
    Verb verb;
    enum { None, Text, Integer, Seconds, Line, NameAndFile } argument;
};

constexpr VerbInfo kVerbs[] = {
    {"new", Verb::New, VerbInfo::None},          {"open", Verb::Open, VerbInfo::Text},
    {"save", Verb::Save, VerbInfo::Text},        {"close", Verb::Close, VerbInfo::None},
    {"activate", Verb::Activate, VerbInfo::Integer}, {"command", Verb::Command, VerbInfo::Integer},
    {"run", Verb::Run, VerbInfo::Seconds},       {"undo", Verb::Undo, VerbInfo::None},
    {"redo", Verb::Redo, VerbInfo::None},        {"tree", Verb::Tree, VerbInfo::None},
    {"console", Verb::Console, VerbInfo::None},  {"journal", Verb::Journal, VerbInfo::None},
    {"quit", Verb::Quit, VerbInfo::None},        {"core", Verb::Core, VerbInfo::Line},
    {"view", Verb::View, VerbInfo::Text},        {"curves", Verb::Curves, VerbInfo::NameAndFile},
};

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

const char* verbName(Verb verb) {
    for (const VerbInfo& v : kVerbs) {
        if (v.verb == verb) return v.name;
    }
    return "?";
}

ParseResult parseLine(const std::string& raw, int lineNumber) {
    ParseResult result;
    std::string line = raw;
    if (const std::size_t hash = line.find('#'); hash != std::string::npos) line.erase(hash);
    line = trim(line);
    if (line.empty()) return result;

    std::size_t split = 0;
    while (split < line.size() && !isSpace(line[split])) ++split;
    const std::string word = line.substr(0, split);
    const std::string argument = trim(line.substr(split));

    const VerbInfo* info = nullptr;
    for (const VerbInfo& v : kVerbs) {
        if (word == v.name) info = &v;
    }
    if (!info) {
        result.error = "unknown command \"" + word + "\"";
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
    case VerbInfo::Integer:
        if (!parseInteger(argument, command.number) || command.number < 0 ||
            command.number > INT32_MAX)
            result.error = word + " needs a whole number, not \"" + argument + "\"";
        break;
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
            script.error = "line " + std::to_string(number) + ": " + parsed.error;
            return script;
        }
        if (parsed.command) script.commands.push_back(*parsed.command);
    }
    return script;
}

}  // namespace hostsim
