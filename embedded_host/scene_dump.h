#pragma once
// Canonical text of a scene: one line per node with its identity and own state,
// tags, tracks and children indented below. Equal text means equal scenes.
#include <string>

#include "host_node.h"

namespace tvr::plr::embedded {

std::string dumpTree(const HostNode* root);

}  // namespace tvr::plr::embedded
