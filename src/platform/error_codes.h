// Win32 error numbers that the platform layer sets and the module reads back.
#pragma once

#include <cstdint>

namespace tvr::platform {

constexpr std::uint32_t ErrorFileNotFound = 2;            // ERROR_FILE_NOT_FOUND
constexpr std::uint32_t ErrorInvalidHandle = 6;           // ERROR_INVALID_HANDLE
constexpr std::uint32_t ErrorNotEnoughMemory = 8;         // ERROR_NOT_ENOUGH_MEMORY
constexpr std::uint32_t ErrorInvalidParameter = 87;       // ERROR_INVALID_PARAMETER
constexpr std::uint32_t ErrorInsufficientBuffer = 122;    // ERROR_INSUFFICIENT_BUFFER
constexpr std::uint32_t ErrorModNotFound = 126;           // ERROR_MOD_NOT_FOUND
constexpr std::uint32_t ErrorProcNotFound = 127;          // ERROR_PROC_NOT_FOUND
constexpr std::uint32_t ErrorBadExeFormat = 193;          // ERROR_BAD_EXE_FORMAT
constexpr std::uint32_t ErrorMoreData = 234;              // ERROR_MORE_DATA
constexpr std::uint32_t ErrorMessageNotFound = 317;       // ERROR_MR_MID_NOT_FOUND
constexpr std::uint32_t ErrorInvalidWindowHandle = 1400;  // ERROR_INVALID_WINDOW_HANDLE
constexpr std::uint32_t ErrorCannotFindClass = 1407;      // ERROR_CANNOT_FIND_WND_CLASS
constexpr std::uint32_t ErrorClassAlreadyExists = 1410;   // ERROR_CLASS_ALREADY_EXISTS
constexpr std::uint32_t ErrorClassDoesNotExist = 1411;    // ERROR_CLASS_DOES_NOT_EXIST
constexpr std::uint32_t ErrorClassHasWindows = 1412;      // ERROR_CLASS_HAS_WINDOWS

constexpr std::uint32_t RegSz = 1;     // REG_SZ
constexpr std::uint32_t RegDword = 4;  // REG_DWORD
constexpr int IdOk = 1;                // IDOK

}  // namespace tvr::platform
