// Keys on a node object's transform tracks.
#pragma once

#include <array>
#include <vector>

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

// A node's eleven tracks by position; null where the object has none.
using TrackSet = std::array<CTrack*, 11>;

// The first `count` of `cached` that the object still has, each looked up
// by its id when it is gone from the object: the user or an undo may have
// removed a track since the list was made. One walk over the object's tracks.
TrackSet checkedTracks(BaseObject* op, const std::vector<CTrack*>& cached, const std::vector<DescID>& ids,
                       std::size_t count);

// The object's own tracks for the first `count` of `ids`.
TrackSet foundTracks(BaseObject* op, const std::vector<DescID>& ids, std::size_t count);

// Keys the nine transform tracks at `time` with the object's position,
// rotation and scale, linear; stops at the first track that gives no key.
void keyTransform(BaseObject* op, const TrackSet& tracks, const BaseTime& time);

}  // namespace tvr::plr::adaptor::cinema4d
