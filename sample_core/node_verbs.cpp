// Verbs that build and edit the scene through the adaptor's node operations.
#include "command_channel.h"

namespace tvr::plr::core::sample {

std::vector<VerbEntry> nodeVerbs() { return {}; }

}  // namespace tvr::plr::core::sample
