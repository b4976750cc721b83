#pragma once
// BaseContainer: LONG ids mapped to GeData, kept in insertion order.
#include <utility>
#include <vector>

#include "host_api/c4d_gedata.h"

class BaseContainer {
public:
    BaseContainer() = default;
    explicit BaseContainer(LONG id) : id_(id) {}

    LONG GetId() const { return id_; }
    void SetId(LONG id) { id_ = id; }

    // Missing ids and values of another type answer the preset.
    LONG GetLong(LONG id, LONG preset = 0) const { return Typed(id, DA_LONG) ? Find(id)->GetLong() : preset; }
    Bool GetBool(LONG id, Bool preset = false) const { return Typed(id, DA_LONG) ? Find(id)->GetBool() : preset; }
    Real GetReal(LONG id, Real preset = 0) const { return Typed(id, DA_REAL) ? Find(id)->GetReal() : preset; }
    LReal GetLReal(LONG id, LReal preset = 0) const { return Typed(id, DA_LREAL) ? Find(id)->GetLReal() : preset; }
    Vector GetVector(LONG id, const Vector& preset = Vector()) const {
        return Typed(id, DA_VECTOR) ? Find(id)->GetVector() : preset;
    }
    Matrix GetMatrix(LONG id, const Matrix& preset = Matrix()) const {
        return Typed(id, DA_MATRIX) ? Find(id)->GetMatrix() : preset;
    }
    String GetString(LONG id, const String& preset = String()) const {
        return Typed(id, DA_STRING) ? Find(id)->GetString() : preset;
    }
    Filename GetFilename(LONG id, const Filename& preset = Filename()) const {
        return Typed(id, DA_STRING) ? Find(id)->GetFilename() : preset;
    }
    BaseTime GetTime(LONG id, const BaseTime& preset = BaseTime()) const {
        return Typed(id, DA_TIME) ? Find(id)->GetTime() : preset;
    }
    void* GetVoid(LONG id, void* preset = nullptr) const { return Typed(id, DA_VOID) ? Find(id)->GetVoid() : preset; }
    BaseList2D* GetLink(LONG id, const BaseDocument* doc, LONG instanceOf = 0) const {
        const GeData* d = Find(id);
        return d ? d->GetLink(doc, instanceOf) : nullptr;
    }
    BaseLink* GetBaseLink(LONG id) const {
        const GeData* d = Find(id);
        return d ? d->GetBaseLink() : nullptr;
    }
    const GeData& GetData(LONG id) const {
        static const GeData nil;
        const GeData* d = Find(id);
        return d ? *d : nil;
    }
    const GeData* GetDataPointer(LONG id) const { return Find(id); }

    void SetData(LONG id, const GeData& value) {
        if (GeData* d = Find(id))
            *d = value;
        else
            entries_.emplace_back(id, value);
    }
    void SetLong(LONG id, LONG v) { SetData(id, GeData(v)); }
    void SetBool(LONG id, Bool v) { SetData(id, GeData(v)); }
    void SetReal(LONG id, Real v) { SetData(id, GeData(v)); }
    void SetLReal(LONG id, LReal v) { SetData(id, GeData(v)); }
    void SetVector(LONG id, const Vector& v) { SetData(id, GeData(v)); }
    void SetMatrix(LONG id, const Matrix& v) { SetData(id, GeData(v)); }
    void SetString(LONG id, const String& v) { SetData(id, GeData(v)); }
    void SetFilename(LONG id, const Filename& v) { SetData(id, GeData(v.GetString())); }
    void SetTime(LONG id, const BaseTime& v) { SetData(id, GeData(v)); }
    void SetVoid(LONG id, void* v) { SetData(id, GeData(v)); }
    // Stores a link to node (a null node stores an empty link).
    void SetLink(LONG id, BaseList2D* node) {
        BaseLink* l = BaseLink::Alloc();
        if (!l) return;
        l->SetLink(node);
        SetData(id, GeData(*l));
        BaseLink::Free(l);
    }

    Bool RemoveData(LONG id) {
        for (auto it = entries_.begin(); it != entries_.end(); ++it)
            if (it->first == id) {
                entries_.erase(it);
                return true;
            }
        return false;
    }
    void FlushAll() { entries_.clear(); }

    // Ids by position, in insertion order; NOTOK past the end.
    LONG GetIndexId(LONG index) const {
        return index >= 0 && size_t(index) < entries_.size() ? entries_[size_t(index)].first : NOTOK;
    }
    const GeData* GetIndexData(LONG index) const {
        return index >= 0 && size_t(index) < entries_.size() ? &entries_[size_t(index)].second : nullptr;
    }
    LONG FindIndex(LONG id) const {
        for (size_t i = 0; i < entries_.size(); ++i)
            if (entries_[i].first == id) return LONG(i);
        return NOTOK;
    }
    LONG GetCount() const { return LONG(entries_.size()); }

    BaseContainer GetClone() const { return *this; }
    void CopyTo(BaseContainer* dest) const {
        if (dest) *dest = *this;
    }
    // Adds or replaces every entry of src.
    void MergeContainer(const BaseContainer& src) {
        for (const auto& e : src.entries_) SetData(e.first, e.second);
    }

    friend bool operator==(const BaseContainer& a, const BaseContainer& b) {
        return a.id_ == b.id_ && a.entries_ == b.entries_;
    }
    friend bool operator!=(const BaseContainer& a, const BaseContainer& b) { return !(a == b); }

private:
    const GeData* Find(LONG id) const {
        for (const auto& e : entries_)
            if (e.first == id) return &e.second;
        return nullptr;
    }
    GeData* Find(LONG id) {
        for (auto& e : entries_)
            if (e.first == id) return &e.second;
        return nullptr;
    }
    bool Typed(LONG id, LONG type) const {
        const GeData* d = Find(id);
        return d && d->GetType() == type;
    }

    LONG id_ = 0;
    std::vector<std::pair<LONG, GeData>> entries_;
};
