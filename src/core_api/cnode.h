#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tvr::plr {

namespace core {
class CMaster;
class CNodePeer;
class CoreNode;
}  // namespace core

// Fields of a scene node that the core reads directly, and the three
// extension operations that open the node's virtual table.
// Virtual table order: executeExtension, getSupportedExtensions,
// isExtensionSupported. CNode has no virtual destructor of its own: one
// here would take the slots that the node's operations need; the node
// declares it at its own place (see CoreNode).
class CNode {
public:
    CNode() = default;
    CNode(core::CMaster* master, std::string name) : name(std::move(name)), master(master) {}

    // Runs a node extension. The answer is a status, except where an
    // extension hands back an object (a clone), which comes as its address.
    virtual std::intptr_t executeExtension(int code, void* argument) = 0;
    // Fills `codes` with the supported extension codes and returns it.
    virtual std::vector<int>& getSupportedExtensions(std::vector<int>& codes) = 0;
    virtual bool isExtensionSupported(int code) = 0;

    // The node's name as the core knows it.
    std::string name;
    // The pointer-sized word after the name: the core-side peer that follows
    // this node, or null.
    core::CNodePeer* peer = nullptr;
    // The tool that created the node, or null.
    core::CMaster* master = nullptr;
    // The node through which this node was acquired, or null.
    core::CoreNode* parentNode = nullptr;
    bool animated = true;

protected:
    ~CNode() = default;
    CNode(const CNode&) = default;
    CNode& operator=(const CNode&) = default;
};

}  // namespace tvr::plr
