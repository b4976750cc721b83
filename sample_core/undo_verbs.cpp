// The undo bracket verbs (begin, accept, cancel, undo) and the edits of the
// core's own data (count, note), each its own undo group unless one is open.
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "sample_core/command_channel.h"
#include "sample_core/sample_core.h"

namespace tvr::plr::core::sample {

namespace {

using Args = std::vector<std::string>;

// Flushed at once: the host's console and the tests read it while the process runs.
void say(const std::string& line) {
    std::fputs(("core: " + line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

CommandResult answer(const std::string& verb, int value) { return {true, verb + ": " + std::to_string(value)}; }

CommandResult begin(SampleCore& core, const Args& args) {
    if (args.size() != 1) return commandError("usage: begin NAME");
    return answer("begin " + args[0], core.adaptor()->beginUndo(args[0]));
}

CommandResult accept(SampleCore& core, const Args& args) {
    if (!args.empty()) return commandError("usage: accept");
    return answer("accept", core.adaptor()->acceptUndo());
}

CommandResult cancel(SampleCore& core, const Args& args) {
    if (!args.empty()) return commandError("usage: cancel");
    return answer("cancel", core.adaptor()->cancelUndo());
}

CommandResult undo(SampleCore& core, const Args& args) {
    if (!args.empty()) return commandError("usage: undo");
    return {true, std::string("undo: ") + (core.adaptor()->undo() ? "true" : "false")};
}

// One edit as one step, inside its own group unless the core has one open.
CommandResult edit(SampleCore& core, const std::string& group, long long delta, const std::string& note) {
    AdaptorInterface* adaptor = core.adaptor();
    const bool own = !adaptor->isAcceptingUndo();
    if (own) adaptor->beginUndo(group);
    CoreStep* step = core.undoBook().add(delta, note);
    const int recorded = adaptor->addUndo(step);
    if (own) adaptor->acceptUndo();
    return {true, step->what() + (recorded == 0 ? "" : " (not undoable: the adaptor refused the step)")};
}

CommandResult count(SampleCore& core, const Args& args) {
    char* end = nullptr;
    const long long delta = args.size() == 1 ? std::strtoll(args[0].c_str(), &end, 10) : 0;
    if (args.size() != 1 || args[0].empty() || *end != '\0') return commandError("usage: count N (a whole number)");
    return edit(core, "Count", delta, "");
}

CommandResult note(SampleCore& core, const Args& args) {
    if (args.size() != 1 || args[0].empty()) return commandError("usage: note TEXT");
    return edit(core, "Note", 0, args[0]);
}

CommandResult undostate(SampleCore& core, const Args& args) {
    if (!args.empty()) return commandError("usage: undostate");
    return {true, core.undoBook().describe()};
}

}  // namespace

void CoreStep::apply() {
    if (note_.empty()) {
        book_.counter += delta_;
    } else {
        book_.notes.push_back(note_);
    }
    applied_ = true;
}

int CoreStep::undo(bool) {
    if (!applied_) return 0;
    if (note_.empty()) {
        book_.counter -= delta_;
    } else {
        // The last of its kind: steps of another document may have come after it.
        for (auto it = book_.notes.rbegin(); it != book_.notes.rend(); ++it) {
            if (*it == note_) {
                book_.notes.erase(std::next(it).base());
                break;
            }
        }
    }
    applied_ = false;
    say("undo " + what());
    return 1;
}

int CoreStep::redo() {
    if (applied_) return 0;
    apply();
    say("redo " + what());
    return 1;
}

std::string CoreStep::what() const {
    if (!note_.empty()) return "note " + note_;
    return std::string("count ") + (delta_ < 0 ? "" : "+") + std::to_string(delta_);
}

CoreStep* UndoBook::add(long long delta, const std::string& note) {
    steps_.push_back(std::make_unique<CoreStep>(*this, delta, note));
    steps_.back()->apply();
    return steps_.back().get();
}

std::string UndoBook::describe() const {
    std::string text = "counter " + std::to_string(counter) + "\nnotes:";
    for (const std::string& n : notes) text += " " + n;
    text += "\n";
    for (std::size_t i = 0; i < steps_.size(); ++i)
        text += "step " + std::to_string(i + 1) + " " + steps_[i]->what() + (steps_[i]->applied() ? " applied" : " undone") + "\n";
    return text;
}

std::vector<VerbEntry> undoVerbs() {
    return {
        {"begin", "NAME - opens an undo group (nested groups make one host entry)", &begin},
        {"accept", "- closes the innermost undo group", &accept},
        {"cancel", "- cancels the innermost undo group", &cancel},
        {"undo", "- asks the adaptor for one undo in the active document", &undo},
        {"count", "N - adds N to the core's counter, one undo step", &count},
        {"note", "TEXT - appends a note to the core's notes, one undo step", &note},
        {"undostate", "- the core's counter, notes and its own undo steps", &undostate},
    };
}

}  // namespace tvr::plr::core::sample
