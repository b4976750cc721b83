#include "platform/message_box.h"

#include <atomic>
#include <cstdio>
#include <deque>
#include <mutex>

#include "platform/error_codes.h"

namespace tvr::platform {
namespace {

constexpr std::size_t MaxRecords = 4096;

std::atomic<MessageBoxSink> currentSink{nullptr};

std::mutex& recordsMutex() {
    static std::mutex m;
    return m;
}
std::deque<MessageBoxRecord>& records() {
    static auto* r = new std::deque<MessageBoxRecord>();  // outlives static destruction
    return *r;
}

}  // namespace

void setMessageBoxSink(MessageBoxSink sink) { currentSink.store(sink); }

MessageBoxSink messageBoxSink() { return currentSink.load(); }

int printAndRecordMessageBox(const char* text, const char* caption, std::uint32_t type) {
    MessageBoxRecord r{caption ? caption : "Error", text ? text : "", type};
    std::fprintf(stderr, "[MessageBox] %s: %s\n", r.caption.c_str(), r.text.c_str());
    std::fflush(stderr);
    std::lock_guard<std::mutex> lock(recordsMutex());
    records().push_back(std::move(r));
    if (records().size() > MaxRecords) records().pop_front();
    return IdOk;
}

std::vector<MessageBoxRecord> recordedMessageBoxes() {
    std::lock_guard<std::mutex> lock(recordsMutex());
    return {records().begin(), records().end()};
}

void clearRecordedMessageBoxes() {
    std::lock_guard<std::mutex> lock(recordsMutex());
    records().clear();
}

}  // namespace tvr::platform
