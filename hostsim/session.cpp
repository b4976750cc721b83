#include "hostsim/session.h"

#include <string>

namespace hostsim {

void Session::report(const Command& command, const std::string& error) {
    if (!scriptName_.empty()) err_ << scriptName_ << ": ";
    err_ << "line " << command.line << ": " << verbName(command.verb) << ": " << error << "\n";
    err_.flush();
}

bool Session::execute(const Command& command) {
    std::string error;
    switch (command.verb) {
    case Verb::New: error = host_.newDocument(); break;
    case Verb::Open: error = host_.openDocument(command.text); break;
    case Verb::Save: error = host_.saveDocument(command.text); break;
    case Verb::Close: error = host_.closeDocument(); break;
    case Verb::Activate: error = host_.activateDocument(command.number); break;
    case Verb::Command: error = host_.runCommand(command.number); break;
    case Verb::Run: error = host_.run(command.seconds); break;
    case Verb::Undo: error = host_.undo(command.number); break;
    case Verb::Redo: error = host_.redo(command.number); break;
    case Verb::History: error = host_.printHistory(out_); break;
    case Verb::Tree: error = host_.printTree(out_); break;
    case Verb::Console: error = host_.printConsole(out_); break;
    case Verb::Journal: error = host_.printJournal(out_); break;
    case Verb::Core: error = host_.coreCommand(command.text, out_); break;
    case Verb::View: error = host_.drawView(command.text, out_); break;
    case Verb::Curves: error = host_.drawCurves(command.text, command.file, out_); break;
    case Verb::Inspect: error = host_.inspect(command.text, out_); break;
    case Verb::Help: out_ << helpText(); break;
    case Verb::Info: error = host_.documentInfo(command.number, out_); break;
    case Verb::Spline: error = host_.drawSpline(command.text, out_); break;
    case Verb::Play: error = host_.play(command.seconds, command.until, out_); break;
    case Verb::Quit: quit_ = true; break;
    }
    out_.flush();
    if (error.empty()) return true;
    report(command, error);
    return false;
}

int Session::playScript(std::istream& in, const std::string& name) {
    scriptName_ = name;
    const Script script = parseScript(in);
    if (!script.error.empty()) {
        err_ << name << ": " << script.error << "\n";
        return 1;
    }
    int status = 0;
    for (const Command& command : script.commands) {
        if (!execute(command)) status = 1;
        if (quit_) break;
    }
    return status;
}

int Session::interact(std::istream& in, bool prompt) {
    int status = 0;
    std::string line;
    int number = 0;
    while (!quit_) {
        if (prompt) {
            out_ << "hostsim> ";
            out_.flush();
        }
        if (!std::getline(in, line)) break;
        ++number;
        const ParseResult parsed = parseLine(line, number);
        if (!parsed.error.empty()) {
            err_ << location(number, parsed.column) << ": " << parsed.error << "\n";
            status = 1;
            continue;
        }
        if (parsed.command && !execute(*parsed.command)) status = 1;
    }
    return status;
}

}  // namespace hostsim
