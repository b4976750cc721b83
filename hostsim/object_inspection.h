// hostsim's `inspect NAME`: the host side of one object, as a user checks
// what the module did to it.
#pragma once

#include <string>

#include "host_api/c4d.h"

namespace hostsim {

// Type, name, parent, global matrix, position, rotation and scale, modes,
// selection, lens (cameras), point and polygon counts, tags, and tracks with
// their key counts; one fact a line.
std::string describeObject(BaseObject* op, bool selected);

}  // namespace hostsim
