#pragma once
// The table the host hands to a module's c4d_main (action 1, p1). Every call
// from the module into the host that is not a virtual call on a host object
// goes through it. New services are only ever appended at the end.
#include <cstddef>
#include <cstdint>

#include "host_api/c4d_types.h"

using DataAllocator = NodeData*();

struct C4D_HostTable {
    std::int32_t apiVersion;  // first 32-bit word: the host's API version

    // Memory for the module's allocations.
    void* (*alloc)(std::size_t size);
    void (*free)(void* block);

    // Slots the module may swap for its own hooks (chaining to what was there).
    void (*crashHandler)(char* info);
    LONG (*docAddUndo)(BaseDocument* doc, void* element, LONG type);

    // Objects, tags, links, tracks, documents.
    BaseObject* (*objectAlloc)(LONG type);
    void (*objectFree)(BaseObject* op);
    BaseTag* (*tagAlloc)(LONG type, LONG count);
    void (*tagFree)(BaseTag* tag);
    BaseLink* (*linkAlloc)();
    void (*linkFree)(BaseLink* link);
    CTrack* (*trackAlloc)(BaseList2D* owner, const DescID& id);
    void (*trackFree)(CTrack* track);
    BaseDocument* (*documentAlloc)();
    void (*documentFree)(BaseDocument* doc);
    void (*insertBaseDocument)(BaseDocument* doc);
    void (*setActiveDocument)(BaseDocument* doc);

    // Documents and events.
    BaseDocument* (*getActiveDocument)();
    BaseDocument* (*getFirstDocument)();
    void (*eventAdd)(LONG flags);
    Bool (*drawViews)(LONG flags, BaseDraw* bd);
    Bool (*geSyncMessage)(LONG messageId, LONG destId, VULONG p1, VULONG p2);
    void (*specialEventAdd)(LONG messageId, VULONG p1, VULONG p2);
    void (*gePrint)(const String& text);
    void (*messageDialog)(const String& text);
    void (*stopAllThreads)();
    LONG (*getC4DVersion)();
    BaseContainer* (*getWorldContainerInstance)();

    // Plug-in registration.
    Bool (*registerCommandPlugin)(LONG id, const String& name, LONG info, BaseBitmap* icon, const String& help,
                                  CommandData* data);
    Bool (*registerSceneHookPlugin)(LONG id, const String& name, LONG info, DataAllocator* allocator, LONG priority,
                                    LONG diskLevel, void* emulation);
    Bool (*registerTagPlugin)(LONG id, const String& name, LONG info, DataAllocator* allocator,
                              const String& description, BaseBitmap* icon, LONG diskLevel);
    Bool (*registerMessagePlugin)(LONG id, const String& name, LONG info, MessageData* data);

    // Geometry services.
    GeRayCollider* (*rayColliderAlloc)();
    void (*rayColliderFree)(GeRayCollider* rc);

    // Releases what the host loaded for the calling module from its resource
    // folder (string tables, icons); the module calls it once, at its last end.
    void (*freeResource)();

    // Room for services added later; a host fills unused slots with null.
    void* reserved[31];
};

// The table this binary was given (hidden visibility gives each binary its own).
inline C4D_HostTable*& C4DOS() {
    static C4D_HostTable* table = nullptr;
    return table;
}

// The module's single exported entry point.
using C4DMainFunction = LONG (*)(LONG action, void* p1, void* p2, void* p3);

// Memory through the host; null when no table is installed.
inline void* GeAlloc(std::size_t size) {
    C4D_HostTable* t = C4DOS();
    return t && t->alloc ? t->alloc(size) : nullptr;
}
inline void GeFree(void* block) {
    C4D_HostTable* t = C4DOS();
    if (block && t && t->free) t->free(block);
}
