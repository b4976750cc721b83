// The transform snapshot: a node object's placement at one time, in the
// core's axes and units. Pooled by its node; while the adaptor records,
// writes set keys at the snapshot's time.
#pragma once

#include <vector>

#include "core_api/csnapshot.h"
#include "host_api/c4d.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode::CC4DSnapshot : public tvr::plr::CTransformSnapshot {
public:
    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    void setLocalMatrix(const tvr::util::Matrix4d& m) override;
    tvr::util::Matrix4d getLocalMatrix() override;
    tvr::util::Matrix4d getGlobalMatrix() override;
    void setGlobalMatrix(const tvr::util::Matrix4d& m) override;
    double getTime() override { return seconds; }
    ~CC4DSnapshot() override = default;

    // Fills the snapshot for one acquisition.
    void take(const CC4DNode& node, BaseObject* op, double atSeconds);

    BaseTime time;
    double seconds = 0.0;
    BaseObject* object = nullptr;
    BaseLink* objectLink = nullptr;  // the node's, shared
    // Handed to the host when the snapshot's own tracks are evaluated; never set.
    BaseDocument* document = nullptr;
    std::vector<CTrack*> tracks;
    const std::vector<DescID>* trackIds = &nodeTrackIds();  // the node's, shared

private:
    // Refreshes `object` from the link; null when it is gone.
    BaseObject* resolve();
    // The host-side local matrix from the nine transform tracks at `time`.
    Matrix localFromTracks(BaseObject* op);
    // Keys the nine transform tracks with the object's new placement.
    void keyTransform(BaseObject* op);
};

// The local matrix of an object at `time`, from its own transform tracks when
// it has a position X track, else its current one. A missing component counts as 0.
Matrix evaluatedLocalMatrix(BaseObject* op, const BaseTime& time);

}  // namespace tvr::plr::adaptor::cinema4d
