// The two message plug-ins of the undo integration: each reacts to the core
// message posted under its own plug-in id.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

// Answers the core message that asks for one host undo entry (1023569).
class DoUndoMsg : public MessageData {
public:
    Bool CoreMessage(LONG id, const BaseContainer& bc) override;
};

// Receives the message that the undo reference tag posts (1023570) and runs
// the core's steps back or forth to the number the host restored. Also hands
// out the listing of the active document's steps (1023577).
class C4DUndoMessage : public MessageData {
public:
    Bool CoreMessage(LONG id, const BaseContainer& bc) override;
};

}  // namespace tvr::plr::adaptor::cinema4d
