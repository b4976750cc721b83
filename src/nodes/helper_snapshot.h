// The helper snapshot: shows a mesh for the core in the node's own object and
// colours it. Made anew for each request and owned by the core.
#pragma once

#include "core_api/csnapshot.h"
#include "host_api/c4d.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode::CC4DSnapshot_Helper : public tvr::plr::CHelperSnapshot {
public:
    explicit CC4DSnapshot_Helper(BaseLink* nodeLink);

    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    void setHelperMesh(const tvr::util::CMesh& mesh) override;
    void setHelperColor(float red, float green, float blue) override;
    void setWireframeMode(bool on) override;
    void setBackfaceCulling(bool on) override;
    ~CC4DSnapshot_Helper() override;

private:
    BaseObject* resolve() const;

    BaseLink* objectLink = nullptr;  // owned copy of the node's link
};

}  // namespace tvr::plr::adaptor::cinema4d
