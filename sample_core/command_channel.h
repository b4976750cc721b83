// The sample core's text command channel: people (hostsim's `core LINE`) and
// tests drive the core with one line at a time. Not part of the core
// contract; the real core has no such thing.
#pragma once

#include <string>
#include <vector>

namespace tvr::plr::core::sample {

class SampleCore;

// What one verb answers: the text to print, and whether it succeeded. A
// failed verb must have changed nothing.
struct CommandResult {
    bool ok = true;
    std::string text;
};

inline CommandResult commandError(std::string text) { return {false, std::move(text)}; }

using VerbFn = CommandResult (*)(SampleCore& core, const std::vector<std::string>& args);

struct VerbEntry {
    const char* name;
    const char* usage;  // one line for `help`: the arguments and what the verb does
    VerbFn run;
};

// Each feature contributes its verbs in its own file; the channel knows the
// lists by name.
std::vector<VerbEntry> basicVerbs();
std::vector<VerbEntry> nodeVerbs();
std::vector<VerbEntry> interfaceVerbs();
std::vector<VerbEntry> stateVerbs();
std::vector<VerbEntry> undoVerbs();

// Splits a line into words; a double-quoted word may hold blanks. Answers
// false (and a reason in `error`) for an unterminated quote.
bool splitWords(const std::string& line, std::vector<std::string>& words, std::string& error);

// Runs one line against the core.
CommandResult runCommand(SampleCore& core, const std::string& line);

}  // namespace tvr::plr::core::sample
