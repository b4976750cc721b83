// The user's menu command that brings up the core.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DAdaptorCommand : public CommandData {
public:
    ~C4DAdaptorCommand() override = default;
    Bool Execute(BaseDocument* doc) override;
};

}  // namespace tvr::plr::adaptor::cinema4d
