// Session scripts: one command a line, '#' starts a comment.
#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace hostsim {

enum class Verb { New, Open, Save, Close, Activate, Command, Run, Undo, Redo, Tree, Console, Journal, Quit, Core, View, Curves, Help, Inspect, Info, Play, History, Spline };

struct Command {
    Verb verb = Verb::Quit;
    std::string text;        // file name of open, save and view; the line handed to the core; the object of curves and inspect; the words of spline
    std::string file;        // the picture file of curves
    std::int64_t number = 0;  // document index of activate, plug-in id of command, presses of undo and redo, info type
    double seconds = 0.0;     // run; where play starts
    double until = 0.0;       // where play ends
    int line = 0;             // 1-based line in the script
};

struct ParseResult {
    std::optional<Command> command;  // empty for a blank or comment line
    std::string error;               // set when the line is not a command
    int column = 1;                  // where the error lies, from 1
};

// "line L, column C", as errors name a place in a script.
std::string location(int line, int column);

// Every command with one line of what it does.
std::string helpText();

// Parses one line. A blank line or a comment gives neither command nor error.
ParseResult parseLine(const std::string& line, int lineNumber);

struct Script {
    std::vector<Command> commands;
    std::string error;  // "line N, column C: ..." for the first bad line; no commands then
};

// Parses a whole script; a bad line rejects the script before anything runs.
Script parseScript(std::istream& in);

const char* verbName(Verb verb);

}  // namespace hostsim
