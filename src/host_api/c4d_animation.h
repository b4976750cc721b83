#pragma once
// Animation: a track (CTrack) on a parameter holds a curve (CCurve) of keys (CKey).
#include "host_api/c4d_baselist.h"

class CKey {
public:
    virtual BaseTime GetTime() const = 0;
    // Moving a key keeps the curve sorted.
    virtual void SetTime(CCurve* seq, const BaseTime& t) = 0;
    virtual Real GetValue() const = 0;
    virtual void SetValue(CCurve* seq, Real v) = 0;
    virtual LONG GetInterpolation() const = 0;
    virtual void SetInterpolation(CCurve* seq, LONG inter) = 0;

protected:
    CKey() = default;
    virtual ~CKey() = default;
    CKey(const CKey&) = delete;
    CKey& operator=(const CKey&) = delete;
};

class CCurve {
public:
    virtual LONG GetKeyCount() const = 0;
    virtual CKey* GetKey(LONG index) = 0;
    // Keeps keys sorted; a key already at that exact time is answered instead of a second one.
    virtual CKey* AddKey(const BaseTime& time, LONG* nidx = nullptr) = 0;
    // match FINDANIM_EXACT: exact time only; not found answers null and leaves *idx alone.
    virtual CKey* FindKey(const BaseTime& time, LONG* idx = nullptr, LONG match = FINDANIM_EXACT) = 0;
    // An index outside the keys is ignored and answers false.
    virtual Bool DelKey(LONG index) = 0;
    virtual CTrack* GetTrack() = 0;
    virtual Real GetValue(const BaseTime& time, LONG fps) = 0;

protected:
    CCurve() = default;
    virtual ~CCurve() = default;
    CCurve(const CCurve&) = delete;
    CCurve& operator=(const CCurve&) = delete;
};

class CTrack : public BaseList2D {
public:
    // A new track for parameter id of owner; not inserted (see InsertTrackSorted).
    static CTrack* Alloc(BaseList2D* owner, const DescID& id) {
        C4D_HostTable* t = C4DOS();
        return t && t->trackAlloc ? t->trackAlloc(owner, id) : nullptr;
    }
    static void Free(CTrack*& track) {
        C4D_HostTable* t = C4DOS();
        if (track && t && t->trackFree) t->trackFree(track);
        track = nullptr;
    }

    CTrack* GetNext() { return static_cast<CTrack*>(NodeNext()); }
    CTrack* GetPred() { return static_cast<CTrack*>(NodePred()); }

    virtual DescID GetDescriptionID() const = 0;
    virtual CCurve* GetCurve(LONG type = CCURVE_CURVE, Bool create = true) = 0;
    // The value at time: 0 without keys; held before the first and after the last key.
    virtual Real GetValue(BaseDocument* doc, const BaseTime& time, LONG fps) = 0;
    virtual BaseList2D* GetObject() = 0;

protected:
    CTrack() = default;
    ~CTrack() override = default;
};
