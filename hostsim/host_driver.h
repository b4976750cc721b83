// What a session needs from a host. Each operation answers an empty string on
// success or the reason it failed; output goes to the stream given.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace hostsim {

class HostDriver {
public:
    virtual ~HostDriver() = default;

    virtual std::string newDocument() = 0;
    virtual std::string openDocument(const std::string& file) = 0;
    virtual std::string saveDocument(const std::string& file) = 0;
    virtual std::string closeDocument() = 0;
    virtual std::string activateDocument(std::int64_t index) = 0;
    virtual std::string runCommand(std::int64_t id) = 0;
    // Lets virtual time pass, running the host's event loop in timer steps.
    virtual std::string run(double seconds) = 0;
    // Presses undo or redo `times` times, then lets the host's event loop catch up.
    virtual std::string undo(std::int64_t times) = 0;
    virtual std::string redo(std::int64_t times) = 0;
    virtual std::string printTree(std::ostream& out) = 0;
    virtual std::string printConsole(std::ostream& out) = 0;
    virtual std::string printJournal(std::ostream& out) = 0;
    // Hands one line to the sample core's command channel and prints its answer.
    virtual std::string coreCommand(const std::string& line, std::ostream& out) = 0;
    // Pictures: the active document as its camera sees it, and one object's curves.
    virtual std::string drawView(const std::string& file, std::ostream& out) = 0;
    // Prints the host side of the first object of that name in the active document.
    virtual std::string inspect(const std::string& object, std::ostream& out) = 0;
    virtual std::string drawCurves(const std::string& object, const std::string& file, std::ostream& out) = 0;
    // The active document's undo stack as the host keeps it, and beside it the
    // module's undo steps of that document.
    virtual std::string printHistory(std::ostream& out) {
        (void)out;
        return "this host cannot show its history";
    }
    // The host's document event `type` told to the active document's scene hooks.
    virtual std::string documentInfo(std::int64_t type, std::ostream& out) {
        (void)type, (void)out;
        return "this host cannot send document events";
    }
    // Adds a linear spline to the active document as its user would, one undo
    // step: "NAME PARENT X Y Z X Y Z ...", PARENT the name of an object or "-".
    virtual std::string drawSpline(const std::string& words, std::ostream& out) {
        (void)words, (void)out;
        return "this host cannot draw";
    }
    // Moves the active document's time from `from` to `to`, one frame a step,
    // letting the host evaluate and redraw at each, as a user scrubbing does.
    virtual std::string play(double from, double to, std::ostream& out) {
        (void)from, (void)to, (void)out;
        return "this host cannot play";
    }
};

}  // namespace hostsim
