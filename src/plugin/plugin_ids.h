// The module's block of host ids, 1023567 to 1023579.
#pragma once

#include <cstdint>

namespace tvr::plr::adaptor::cinema4d {

constexpr std::int32_t kDoUndoMessageId = 1023569;
constexpr std::int32_t kUndoMessageId = 1023570;
constexpr std::int32_t kUndoTagId = 1023572;
constexpr std::int32_t kCommandId = 1023575;
constexpr std::int32_t kSceneHookId = 1023578;
constexpr std::int32_t kStoredStateId = 1023579;

constexpr std::int32_t kMinimumApiVersion = 11000;

}  // namespace tvr::plr::adaptor::cinema4d
