// What a message box does when nobody is there to press its button. The system platform asks the
// sink in force; without one it shows a real box on Windows (unless the environment variable
// PLR_UNATTENDED is set) and prints and records elsewhere. A real box under wine blocks for ever,
// so unattended programs install printAndRecordMessageBox.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace tvr::platform {

struct MessageBoxRecord {
    std::string caption;
    std::string text;
    std::uint32_t type = 0;
};

// Answers the button pressed (IdOk).
using MessageBoxSink = int (*)(const char* text, const char* caption, std::uint32_t type);

// Null restores the default behaviour.
PLR_PLATFORM_EXPORT void setMessageBoxSink(MessageBoxSink sink);
PLR_PLATFORM_EXPORT MessageBoxSink messageBoxSink();

// Prints "[MessageBox] <caption>: <text>" to stderr, records the box and answers IdOk.
PLR_PLATFORM_EXPORT int printAndRecordMessageBox(const char* text, const char* caption, std::uint32_t type);

// The boxes printAndRecordMessageBox has taken, oldest first (the latest few thousand).
PLR_PLATFORM_EXPORT std::vector<MessageBoxRecord> recordedMessageBoxes();
PLR_PLATFORM_EXPORT void clearRecordedMessageBoxes();

}  // namespace tvr::platform
