#include "test_support/message_box_records.h"

#include <mutex>

#include "platform/error_codes.h"

namespace tvr::platform {
namespace {

std::mutex& recordsMutex() {
    static std::mutex m;
    return m;
}

std::vector<MessageBoxRecord>& records() {
    static auto* r = new std::vector<MessageBoxRecord>();  // outlives static destruction
    return *r;
}

}  // namespace

int recordMessageBox(const char* text, const char* caption, std::uint32_t type) {
    std::lock_guard<std::mutex> lock(recordsMutex());
    records().push_back({caption ? caption : "Error", text ? text : "", type});
    return IdOk;
}

std::vector<MessageBoxRecord> recordedMessageBoxes() {
    std::lock_guard<std::mutex> lock(recordsMutex());
    return records();
}

void clearRecordedMessageBoxes() {
    std::lock_guard<std::mutex> lock(recordsMutex());
    records().clear();
}

}  // namespace tvr::platform
