// A message-box sink that keeps every box it is shown, for tests that check
// what a user would have seen. Install it with setMessageBoxSink.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tvr::platform {

struct MessageBoxRecord {
    std::string caption;
    std::string text;
    std::uint32_t type = 0;
};

// Keeps the box and answers IdOk.
int recordMessageBox(const char* text, const char* caption, std::uint32_t type);
// The boxes recordMessageBox has taken, oldest first.
std::vector<MessageBoxRecord> recordedMessageBoxes();
void clearRecordedMessageBoxes();

}  // namespace tvr::platform
