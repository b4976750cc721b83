// Answers the core message that asks for one host undo entry.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class DoUndoMsg : public MessageData {
public:
    Bool CoreMessage(LONG id, const BaseContainer& bc) override;
};

}  // namespace tvr::plr::adaptor::cinema4d
