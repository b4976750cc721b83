// The session's host: the embedded host, with the user's view of it.
#pragma once

#include <string>

#include "embedded_host/runtime/embedded_host.h"
#include "hostsim/host_driver.h"

namespace hostsim {

class EmbeddedDriver : public HostDriver {
public:
    // realTime: `run` waits for real time instead of moving the virtual clock
    // (the system's own timers only fire in real time).
    EmbeddedDriver(tvr::plr::embedded::EmbeddedHost& host, bool realTime) : host_(host), realTime_(realTime) {}

    std::string newDocument() override;
    std::string openDocument(const std::string& file) override;
    std::string saveDocument(const std::string& file) override;
    std::string closeDocument() override;
    std::string activateDocument(std::int64_t index) override;
    std::string runCommand(std::int64_t id) override;
    std::string run(double seconds) override;
    std::string undo(std::int64_t times) override;
    std::string redo(std::int64_t times) override;
    std::string printHistory(std::ostream& out) override;
    std::string printTree(std::ostream& out) override;
    std::string printConsole(std::ostream& out) override;
    std::string printJournal(std::ostream& out) override;
    std::string coreCommand(const std::string& line, std::ostream& out) override;
    std::string documentInfo(std::int64_t type, std::ostream& out) override;
    std::string play(double from, double to, std::ostream& out) override;
    std::string drawSpline(const std::string& words, std::ostream& out) override;
    std::string drawView(const std::string& file, std::ostream& out) override;
    std::string drawCurves(const std::string& object, const std::string& file, std::ostream& out) override;
    std::string inspect(const std::string& object, std::ostream& out) override;

private:
    tvr::plr::embedded::EmbeddedHost& host_;
    bool realTime_;
};

}  // namespace hostsim
