// Receives the core message that the undo reference tag posts.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DUndoMessage : public MessageData {
public:
    Bool CoreMessage(LONG id, const BaseContainer& bc) override;
};

}  // namespace tvr::plr::adaptor::cinema4d
