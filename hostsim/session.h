// Plays commands against a host and reports failures with their line.
#pragma once

#include <istream>
#include <ostream>

#include "hostsim/host_driver.h"
#include "hostsim/script.h"

namespace hostsim {

class Session {
public:
    Session(HostDriver& host, std::ostream& out, std::ostream& err) : host_(host), out_(out), err_(err) {}

    // Runs one command; false when it failed (the reason is on err). Sets
    // quitRequested() for quit.
    bool execute(const Command& command);

    // Parses the whole script first: a bad line runs nothing. Returns the exit
    // status: 0 when every command succeeded, 1 when one failed or the script is bad.
    int playScript(std::istream& in, const std::string& name);

    // Reads commands one line at a time until quit or end of input; a bad line
    // is reported and skipped.
    int interact(std::istream& in, bool prompt);

    bool quitRequested() const { return quit_; }

private:
    void report(const Command& command, const std::string& error);

    HostDriver& host_;
    std::ostream& out_;
    std::ostream& err_;
    std::string scriptName_;
    bool quit_ = false;
};

}  // namespace hostsim
