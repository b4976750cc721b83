// Tracks of a node: made for recording, keyed, truncated.
#include "nodes/node_tracks.h"

#include "nodes/c4d_node.h"
#include "nodes/node_support.h"

namespace tvr::plr::adaptor::cinema4d {

TrackSet checkedTracks(BaseObject* op, const std::vector<CTrack*>& cached, const std::vector<DescID>& ids,
                       std::size_t count) {
    TrackSet result{};
    if (!op) return result;
    constexpr std::size_t kSeen = 32;
    CTrack* present[kSeen];
    std::size_t seen = 0;
    for (CTrack* t = op->GetFirstCTrack(); t && seen < kSeen; t = t->GetNext()) present[seen++] = t;
    for (std::size_t i = 0; i < count && i < cached.size() && i < ids.size() && i < result.size(); ++i) {
        bool there = false;
        for (std::size_t k = 0; k < seen && !there; ++k) there = present[k] == cached[i];
        result[i] = there ? cached[i] : op->FindCTrack(ids[i]);
    }
    return result;
}

TrackSet foundTracks(BaseObject* op, const std::vector<DescID>& ids, std::size_t count) {
    TrackSet result{};
    for (std::size_t i = 0; op && i < count && i < ids.size() && i < result.size(); ++i)
        result[i] = op->FindCTrack(ids[i]);
    return result;
}

void keyTransform(BaseObject* op, const TrackSet& tracks, const BaseTime& time) {
    const Vector parts[3] = {op->GetPos(), op->GetRot(), op->GetScale()};
    for (std::size_t i = 0; i < 9; ++i) {
        CCurve* curve = tracks[i] ? tracks[i]->GetCurve(CCURVE_CURVE, true) : nullptr;
        CKey* key = curve ? curve->AddKey(time) : nullptr;
        if (!key) return;
        const Vector& v = parts[i / 3];
        const Real value = i % 3 == 0 ? v.x : (i % 3 == 1 ? v.y : v.z);
        key->SetValue(curve, value);
        key->SetInterpolation(curve, CINTERPOLATION_LINEAR);
    }
}

void CC4DNode::ensureTracks() {
    if (undoReplayInProgress() || !master) return;
    BaseObject* op = object();
    if (!op) return;
    tracks.clear();
    BaseDocument* doc = documentFor(op);
    for (const DescID& id : *trackIds) {
        CTrack* track = op->FindCTrack(id);
        if (!track) {
            track = CTrack::Alloc(op, id);
            if (!track) continue;
            addUndo(doc, UNDO_CHANGE, op);
            op->InsertTrackSorted(track);
        }
        tracks.push_back(track);
    }
    if (tracks.size() >= 9) keyTransform(op, foundTracks(op, *trackIds, 9), hostTime(theAdaptor()->getTime()));
}

int CC4DNode::prepareRecording(BaseDocument* document) {
    if (undoReplayInProgress()) return 0;
    BaseObject* op = object();
    if (!op) return 1;
    if (animated) ensureTracks();
    addUndo(document, UNDO_CHANGE_NOCHILDS, op);
    return 0;
}

int CC4DNode::truncateKeys(double seconds) {
    if (undoReplayInProgress()) return 1;
    if (!recordable || !animated || !lensAnimated) return 0;
    BaseObject* op = object();
    if (!op) return 1;
    const BaseTime time = hostTime(seconds);
    const TrackSet live = checkedTracks(op, tracks, *trackIds, tracks.size());
    for (std::size_t i = 0; i < tracks.size() && i < live.size(); ++i) {
        if (!live[i] || live[i] != tracks[i]) continue;  // gone since it was made
        CCurve* curve = live[i]->GetCurve(CCURVE_CURVE, true);
        if (!curve) continue;
        const LONG count = curve->GetKeyCount();
        // Without a key at that time, the last key before it stands in.
        LONG found = -1;
        for (LONG k = 0; k < count; ++k) {
            CKey* key = curve->GetKey(k);
            if (key && key->GetTime() <= time) found = k;
        }
        curve->FindKey(time, &found, FINDANIM_EXACT);
        // From the count down: the first index holds no key, as it always has.
        for (LONG k = count; k >= found + 1; --k) curve->DelKey(k);
    }
    theAdaptor()->refreshScene();
    return 0;
}

}  // namespace tvr::plr::adaptor::cinema4d
