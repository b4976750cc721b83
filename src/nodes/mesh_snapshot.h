// The mesh snapshot: a polygon object's geometry exchanged as a triangle
// mesh, and ray tests against it. Made anew for each request and owned by the
// core, so it keeps a link of its own and outlives its node safely.
#pragma once

#include <string>

#include "core_api/csnapshot.h"
#include "host_api/c4d.h"
#include "nodes/c4d_node.h"

namespace tvr::plr::adaptor::cinema4d {

class CC4DNode::CC4DSnapshot_Mesh : public tvr::plr::CMeshSnapshot {
public:
    // Logs its making; holds no object when the link does not resolve.
    CC4DSnapshot_Mesh(BaseLink* nodeLink, double seconds);

    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    void setMesh(const tvr::util::CMesh& mesh) override;
    tvr::util::CMesh getMeshValue() override;
    bool intersectRay(const double* origin, const double* direction, double* distance, double* hit) override;
    ~CC4DSnapshot_Mesh() override;
    bool getMesh(tvr::util::ReturnValue<tvr::util::CMesh>* result) override;

    bool holdsObject() const { return objectLink != nullptr; }

    BaseTime time;

private:
    BaseObject* resolve() const;

    BaseLink* objectLink = nullptr;  // owned copy of the node's link
    // Read into before it is handed over; kept, so reading again reuses its memory.
    tvr::util::CMesh scratch_;
};

// Writes `mesh` into `op` (a polygon object): points as given, triangles with
// their texture coordinates into the object's UVW tag. A mesh whose triangles
// name points or coordinates it does not have is refused with a log line and
// nothing is written. Shared by the mesh and the helper snapshot.
// `recordUndo` false when the caller has recorded the object's change itself.
void writeMesh(BaseObject* op, const tvr::util::CMesh& mesh, bool recordUndo = true);

// Why `mesh` cannot be written (a triangle naming a point or coordinate it
// does not have, index lists that do not match), or empty when it can.
std::string meshFault(const tvr::util::CMesh& mesh);

// Reads `op` into `mesh` in the core's axes; false when it has no geometry.
bool readMesh(BaseObject* op, tvr::util::CMesh& mesh);

}  // namespace tvr::plr::adaptor::cinema4d
