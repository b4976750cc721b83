// What a message box does when nobody is there to press its button. The system platform asks the
// sink in force; without one it shows a real box on Windows (unless the environment variable
// PLR_UNATTENDED is set) and prints it elsewhere. A real box under wine blocks for ever, so
// unattended programs install printMessageBox or set PLR_UNATTENDED.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace tvr::platform {

// Answers the button pressed (IdOk).
using MessageBoxSink = int (*)(const char* text, const char* caption, std::uint32_t type);

// Null restores the default behaviour.
PLR_PLATFORM_EXPORT void setMessageBoxSink(MessageBoxSink sink);
PLR_PLATFORM_EXPORT MessageBoxSink messageBoxSink();

// Prints "[MessageBox] <caption>: <text>" to the standard output, where a session's
// transcript goes, and answers IdOk.
PLR_PLATFORM_EXPORT int printMessageBox(const char* text, const char* caption, std::uint32_t type);

}  // namespace tvr::platform
