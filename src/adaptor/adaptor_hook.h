// The scene hook through which the host reports the life of documents.
#pragma once

#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class AdaptorHook : public SceneHookData {
public:
    // The allocator registered with the host, which owns the result.
    static NodeData* Alloc();

    ~AdaptorHook() override = default;

    // Follows documents being loaded, saved, switched and removed; always true.
    Bool Message(GeListNode* node, LONG type, void* data) override;

    // Set when the active document is left; the next call of Message, of any
    // kind, reloads the state of the document then active.
    static bool pendingStateReload;
};

}  // namespace tvr::plr::adaptor::cinema4d
