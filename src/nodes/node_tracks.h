// Keys on a node object's transform tracks.
#pragma once

#include <vector>

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

// The object's track for each of `ids`, or null where it has none. Tracks are
// looked up afresh rather than trusted from a list: the user or an undo may
// have removed one since.
std::vector<CTrack*> liveTracks(BaseObject* op, const std::vector<DescID>& ids, std::size_t count);

// Keys the nine transform tracks at `time` with the object's position,
// rotation and scale, linear; stops at the first track that gives no key.
void keyTransform(BaseObject* op, const std::vector<CTrack*>& tracks, const BaseTime& time);

}  // namespace tvr::plr::adaptor::cinema4d
