#pragma once
// BaseTag, the plug-in tag and the UVW tag. Abstract; the host implements them.
#include "host_api/c4d_baselist.h"

class BaseTag : public BaseList2D {
public:
    static BaseTag* Alloc(LONG type) {
        C4D_HostTable* t = C4DOS();
        return t && t->tagAlloc ? t->tagAlloc(type, 0) : nullptr;
    }
    static void Free(BaseTag*& tag) {
        C4D_HostTable* t = C4DOS();
        if (tag && t && t->tagFree) t->tagFree(tag);
        tag = nullptr;
    }

    BaseTag* GetNext() { return static_cast<BaseTag*>(NodeNext()); }
    BaseTag* GetPred() { return static_cast<BaseTag*>(NodePred()); }

    virtual BaseObject* GetObject() = 0;
    virtual BaseTag* GetClone(LONG flags = 0, AliasTrans* trn = nullptr) = 0;

protected:
    BaseTag() = default;
    ~BaseTag() override = default;
};

// A tag whose behaviour comes from a registered TagData.
// Its data: static_cast<TagData*>(tag->GetNodeData()).
class PluginTag : public BaseTag {
protected:
    ~PluginTag() override = default;
};

struct UVWStruct {
    Vector a, b, c, d;
    UVWStruct() = default;
    UVWStruct(const Vector& ia, const Vector& ib, const Vector& ic, const Vector& id) : a(ia), b(ib), c(ic), d(id) {}
    friend bool operator==(const UVWStruct& x, const UVWStruct& y) {
        return x.a == y.a && x.b == y.b && x.c == y.c && x.d == y.d;
    }
};

// Four Vectors per polygon.
class UVWTag : public BaseTag {
public:
    static UVWTag* Alloc(LONG count) {
        C4D_HostTable* t = C4DOS();
        return t && t->tagAlloc ? static_cast<UVWTag*>(t->tagAlloc(Tuvw, count)) : nullptr;
    }

    virtual LONG GetDataCount() const = 0;
    virtual const void* GetDataAddressR() const = 0;
    virtual void* GetDataAddressW() = 0;
    virtual UVWStruct GetSlow(LONG i) const = 0;
    virtual void SetSlow(LONG i, const UVWStruct& s) = 0;
    virtual Bool Resize(LONG count) = 0;

    // Reads entry i of an address from GetDataAddressR.
    static void Get(const void* dataptr, LONG i, UVWStruct& res) { res = static_cast<const UVWStruct*>(dataptr)[i]; }
    static void Set(void* dataptr, LONG i, const UVWStruct& s) { static_cast<UVWStruct*>(dataptr)[i] = s; }

protected:
    ~UVWTag() override = default;
};
