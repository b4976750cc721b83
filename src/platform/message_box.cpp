#include "platform/message_box.h"

#include <atomic>
#include <cstdio>

#include "platform/error_codes.h"

namespace tvr::platform {
namespace {

std::atomic<MessageBoxSink> currentSink{nullptr};

}  // namespace

void setMessageBoxSink(MessageBoxSink sink) { currentSink.store(sink); }

MessageBoxSink messageBoxSink() { return currentSink.load(); }

int printMessageBox(const char* text, const char* caption, std::uint32_t) {
    std::printf("[MessageBox] %s: %s\n", caption ? caption : "Error", text ? text : "");
    std::fflush(stdout);
    return IdOk;
}

}  // namespace tvr::platform
