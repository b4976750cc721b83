#pragma once
// BaseLink: a weak reference that never resolves to a freed node.
#include "host_api/c4d_host_table.h"

class BaseLink {
public:
    static BaseLink* Alloc() {
        C4D_HostTable* t = C4DOS();
        return t && t->linkAlloc ? t->linkAlloc() : nullptr;
    }
    static void Free(BaseLink*& link) {
        C4D_HostTable* t = C4DOS();
        if (link && t && t->linkFree) t->linkFree(link);
        link = nullptr;
    }

    virtual void SetLink(BaseList2D* node) = 0;
    // The node if alive and (when doc is given) inserted in doc and (when instanceOf != 0) of that type.
    virtual BaseList2D* GetLink(const BaseDocument* doc, LONG instanceOf = 0) const = 0;
    // The node if alive, wherever it is.
    virtual BaseList2D* ForceGetLink() const = 0;
    virtual BaseLink* GetClone(LONG flags = 0, AliasTrans* trn = nullptr) const = 0;
    virtual Bool CopyTo(BaseLink* dest, LONG flags = 0, AliasTrans* trn = nullptr) const = 0;

protected:
    BaseLink() = default;
    virtual ~BaseLink() = default;
    BaseLink(const BaseLink&) = delete;
    BaseLink& operator=(const BaseLink&) = delete;
};
