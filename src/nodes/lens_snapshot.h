// The lens snapshot: a camera's field of view and second lens value at one
// time. Pooled by its node; while the adaptor records, writes set keys.
#pragma once

#include <vector>

#include "core_api/csnapshot.h"
#include "host_api/c4d.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode::CC4DSnapshot_Lens : public tvr::plr::CLensSnapshot {
public:
    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    void setFov(double degrees) override;
    double getFov() override;
    std::int32_t getFovType() override;
    void setFovType(std::int32_t type) override;
    void setLensValue(double value) override;
    double getLensValue() override;
    double getTime() override { return seconds; }
    tvr::util::Matrix4d& getPerspective(tvr::util::Matrix4d& result) override;
    ~CC4DSnapshot_Lens() override = default;

    void take(const CC4DNode& node, BaseObject* op, double atSeconds);

    BaseObject* object = nullptr;
    BaseLink* objectLink = nullptr;  // the node's, shared
    BaseTime time;
    double seconds = 0.0;
    std::vector<CTrack*> tracks;

private:
    BaseObject* resolve();
    // Keys the lens track of `parameter` (while recording) or sets the parameter.
    void write(LONG parameter, std::size_t trackIndex, Real value);
};

}  // namespace tvr::plr::adaptor::cinema4d
