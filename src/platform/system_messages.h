// The system's texts for error numbers, as FormatMessageA gives them from the system table.
#pragma once

#include <cstdint>

namespace tvr::platform {

class LocalMemory;

// The text for an error number, ending in "\r\n"; null when the number is unknown.
const char* systemMessageText(std::uint32_t messageId);

// FormatMessageA over the table above. With FORMAT_MESSAGE_ALLOCATE_BUFFER *buffer receives a block
// from memory of at least `size` bytes; without it, `buffer` is the caller's char array of `size`
// bytes. Answers the length of the text (no terminator), or 0 with the error.
std::uint32_t formatSystemMessage(std::uint32_t flags, std::uint32_t messageId, char** buffer, std::uint32_t size,
                                  LocalMemory& memory, std::uint32_t& error);

}  // namespace tvr::platform
