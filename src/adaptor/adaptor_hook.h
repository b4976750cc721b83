// The scene hook through which the host reports the life of documents.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class AdaptorHook : public SceneHookData {
public:
    // The allocator registered with the host, which owns the result.
    static NodeData* Alloc();

    ~AdaptorHook() override = default;
};

}  // namespace tvr::plr::adaptor::cinema4d
