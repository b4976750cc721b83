#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "core_api/core_interface.h"
#include "sample_core/coverage.h"
#include "sample_core/node_book.h"
#include "sample_core/stats.h"
#include "sample_core/tools.h"
#include "sample_core/undo_book.h"
#include "util/return_value.h"
#include "util/xml/element.h"

namespace tvr::plr::core::sample {

// Counters shared by every core object of the library.
PlrSampleCoreStats& stats();

// The core object that attach hands the adaptor.
class SampleCore final : public CoreInterface {
public:
    // The slice count at which runLoopStep reports: once a second at 40 ms.
    static constexpr std::int64_t kReportEvery = 25;
    static constexpr int kExpectedInterfaceVersion = 9201;

    explicit SampleCore(AdaptorInterface* adaptor);

    // Stores every tool's state in the document, then writes a "samplecore"
    // element with the slice count and whatever state was handed over last.
    void saveState(util::xml::Element& state) override;
    // Keeps the element; a "PLT" tree also rebuilds the tools it holds.
    void loadState(const util::xml::Element& state) override;
    // Reads the host's identity from the adaptor and reports the window.
    void showMain(int mode) override;
    void runLoopStep() override;

    std::int64_t timeSlices() const { return timeSlices_; }
    const std::vector<std::string>& hostIdentifiers() const { return hostIdentifiers_; }
    const util::xml::Element& keptState() const { return kept_; }
    // The adaptor, its calls counted.
    AdaptorInterface* adaptor() const { return adaptor_; }
    NodeBook& nodes() { return nodes_; }
    ToolBook& tools() { return tools_; }
    UndoBook& undoBook() { return undoBook_; }

private:
    // Every call to the adaptor goes through the count.
    CountingAdaptor counted_;
    AdaptorInterface* adaptor_ = &counted_;
    std::vector<std::string> hostIdentifiers_;
    // The adaptor writes the identifiers into hostIdentifiers_ through this.
    util::ReturnValue<std::vector<std::string>> identifierSink_{&hostIdentifiers_};
    std::int64_t timeSlices_ = 0;
    util::xml::Element kept_;
    ToolBook tools_{adaptor_, &nodes_};
    UndoBook undoBook_;
    // Declared last: its nodes go back to the adaptor first when the core goes.
    NodeBook nodes_;
};

}  // namespace tvr::plr::core::sample
