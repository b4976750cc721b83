#include "sample_core/sample_core.h"

#include <cstdio>
#include <memory>

namespace tvr::plr::core::sample {

namespace {
const char* const kStateName = "samplecore";

// One line on stdout, flushed at once: the host's console and the test
// harness read it while the process runs.
void say(const std::string& line) {
    std::fputs(line.c_str(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}
}  // namespace

PlrSampleCoreStats& stats() {
    static PlrSampleCoreStats counters{};
    return counters;
}

SampleCore::SampleCore(AdaptorInterface* adaptor) : counted_(adaptor) {}

void SampleCore::saveState(util::xml::Element& state) {
    tools_.storeAll();
    util::xml::Tag saved(kStateName);
    saved.setAttribute("timeSlices", std::to_string(timeSlices_));
    if (!kept_.isEmpty()) {
        // Our own element comes back as it was saved: carry its children over
        // rather than nest it, so save and load cycles do not grow the state.
        if (kept_.kind() == util::xml::kTag && kept_.name() == kStateName) {
            for (const auto& child : kept_.children()) saved.addChild(*child);
        } else {
            saved.addChild(kept_);
        }
    }
    state = saved;
    ++stats().statesSaved;
}

void SampleCore::loadState(const util::xml::Element& state) {
    kept_ = state;
    ++stats().statesLoaded;
    say("core: state loaded (" + (state.isEmpty() ? std::string("empty") : state.name()) + ")");
    if (state.kind() == util::xml::kTag && state.name() == "PLT") {
        const std::string report = tools_.rebuild(state);
        if (!report.empty()) std::fputs(report.c_str(), stdout);
        std::fflush(stdout);
    }
}

void SampleCore::showMain(int) {
    ++stats().mainWindowsOpened;
    const int version = adaptor_->getInterfaceVersion();
    if (version != kExpectedInterfaceVersion) {
        say("core: adaptor interface version " + std::to_string(version) + ", expected " +
            std::to_string(kExpectedInterfaceVersion));
    }
    const std::string displayName = adaptor_->getDisplayName();
    const std::string hostName = adaptor_->getHostName();
    const std::string hostVersion = adaptor_->getHostVersion();
    hostIdentifiers_.clear();
    adaptor_->getHostIdentifiers(&identifierSink_);
    stats().hostIdentifiers = static_cast<std::int32_t>(hostIdentifiers_.size());
    say("core: main window opened in " + hostName + " " + hostVersion + " (" + displayName + ")");
}

void SampleCore::runLoopStep() {
    ++timeSlices_;
    ++stats().timeSlices;
    if (timeSlices_ % kReportEvery == 0) say("core: " + std::to_string(timeSlices_) + " time slices");
}

}  // namespace tvr::plr::core::sample
