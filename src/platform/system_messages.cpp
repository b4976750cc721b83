#include "platform/system_messages.h"

#include <cstring>

#include "platform/error_codes.h"
#include "platform/local_memory.h"

namespace tvr::platform {
namespace {

constexpr std::uint32_t AllocateBuffer = 0x100;
constexpr std::uint32_t FromString = 0x400;
constexpr std::uint32_t FromSystem = 0x1000;

struct Entry {
    std::uint32_t id;
    const char* text;
};

constexpr Entry Messages[] = {
    {0, "The operation completed successfully.\r\n"},
    {1, "Incorrect function.\r\n"},
    {2, "The system cannot find the file specified.\r\n"},
    {3, "The system cannot find the path specified.\r\n"},
    {5, "Access is denied.\r\n"},
    {6, "The handle is invalid.\r\n"},
    {8, "Not enough memory resources are available to process this command.\r\n"},
    {87, "The parameter is incorrect.\r\n"},
    {122, "The data area passed to a system call is too small.\r\n"},
    {126, "The specified module could not be found.\r\n"},
    {127, "The specified procedure could not be found.\r\n"},
    {193, "%1 is not a valid Win32 application.\r\n"},
    {234, "More data is available.\r\n"},
    {317, "The system cannot find message text for message number 0x%1 in the message file for %2.\r\n"},
    {1400, "Invalid window handle.\r\n"},
    {1407, "Cannot find window class.\r\n"},
    {1410, "Class already exists.\r\n"},
    {1411, "Class does not exist.\r\n"},
    {1412, "Class still has open windows.\r\n"},
};

}  // namespace

const char* systemMessageText(std::uint32_t messageId) {
    for (const Entry& e : Messages)
        if (e.id == messageId) return e.text;
    return nullptr;
}

std::uint32_t formatSystemMessage(std::uint32_t flags, std::uint32_t messageId, char** buffer, std::uint32_t size,
                                  LocalMemory& memory, std::uint32_t& error) {
    if (!(flags & FromSystem) || (flags & FromString) || !buffer) {
        error = ErrorInvalidParameter;
        return 0;
    }
    const char* text = systemMessageText(messageId);
    if (!text) {
        error = ErrorMessageNotFound;
        return 0;
    }
    std::size_t length = std::strlen(text);
    if (flags & AllocateBuffer) {
        std::size_t bytes = length + 1 > size ? length + 1 : size;
        auto* block = static_cast<char*>(memory.alloc(bytes, error));
        if (!block) return 0;
        std::memcpy(block, text, length + 1);
        *buffer = block;
    } else {
        if (size < length + 1) {
            error = ErrorInsufficientBuffer;
            return 0;
        }
        std::memcpy(reinterpret_cast<char*>(buffer), text, length + 1);
    }
    return static_cast<std::uint32_t>(length);
}

}  // namespace tvr::platform
