#pragma once

#include <string>

namespace tvr::plr::core {

class CoreNode;

// Messages the adaptor sends a master through `CMaster::message`.
// The document that holds the master's nodes is going away; data is null.
constexpr int kMasterDocumentGone = 43;
// Fill the xml::Element passed as data (named "masternodes") with the
// master's saved state.
constexpr int kMasterStoreState = 56;

// Extension code under which a node hands itself to a master's query.
constexpr int kMasterNodeQuery = 31;

// Static description of a kind of master; the adaptor reads the name from it
// without a virtual call.
struct CMasterDescriptor {
    std::string name;
};

// A tool of the core ("master"). The adaptor treats it as opaque: it compares
// masters by identity, sends them messages and queries, and reads their name
// through the descriptor that is the first data member.
// Virtual table order: message, reserved, query, then the destructor.
class CMaster {
public:
    explicit CMaster(const CMasterDescriptor* descriptor = nullptr) : descriptor(descriptor) {}

    virtual int message(int code, void* data) = 0;
    virtual void masterReserved1() {}
    // Asked with kMasterDocumentGone and no node before a direct recording
    // when the master's nodes lie in several documents, and with
    // kMasterNodeQuery and the node for node extension 31.
    virtual bool query(int code, CoreNode* node) = 0;
    virtual ~CMaster() = default;

    // Empty for a master without a descriptor.
    std::string name() const { return descriptor ? descriptor->name : std::string(); }

    const CMasterDescriptor* descriptor;

protected:
    CMaster(const CMaster&) = default;
    CMaster& operator=(const CMaster&) = default;
};

}  // namespace tvr::plr::core
