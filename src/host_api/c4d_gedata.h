#pragma once
// GeData: one value of the host's data types.
#include <utility>
#include <variant>

#include "host_api/c4d_baselink.h"
#include "host_api/c4d_basetime.h"
#include "host_api/c4d_string.h"
#include "host_api/c4d_vector.h"

enum {
    DA_NIL = 0,
    DA_VOID = 14,
    DA_LONG = 15,
    DA_REAL = 19,
    DA_LREAL = 20,
    DA_TIME = 22,
    DA_VECTOR = 23,
    DA_MATRIX = 25,
    DA_STRING = 130,
    DA_ALIASLINK = 133,
};

class GeData {
public:
    GeData() = default;
    GeData(int v) : value_(LONG(v)) {}
    GeData(long v) : value_(LONG(v)) {}
    GeData(bool v) : value_(LONG(v ? 1 : 0)) {}
    GeData(Real v) : value_(v) {}
    GeData(LReal v) : value_(v) {}
    GeData(const Vector& v) : value_(v) {}
    GeData(const Matrix& v) : value_(v) {}
    GeData(const String& v) : value_(v) {}
    GeData(const char* v) : value_(String(v)) {}
    GeData(const BaseTime& v) : value_(v) {}
    GeData(void* v) : value_(v) {}
    GeData(const BaseLink& v) : value_(Link{v.GetClone()}) {}

    GeData(const GeData& o) = default;
    GeData(GeData&& o) noexcept : value_(std::move(o.value_)) {}
    GeData& operator=(const GeData& o) {
        if (this != &o) value_ = o.value_;
        return *this;
    }
    GeData& operator=(GeData&& o) noexcept {
        value_ = std::move(o.value_);
        return *this;
    }

    LONG GetType() const {
        static const LONG types[] = {DA_NIL,    DA_LONG,   DA_REAL, DA_LREAL, DA_VECTOR,
                                     DA_MATRIX, DA_STRING, DA_TIME, DA_VOID,  DA_ALIASLINK};
        return types[value_.index()];
    }
    void SetNil() { value_ = std::monostate(); }

    // Typed getters answer the zero value for another type.
    LONG GetLong() const { return Get<LONG>(0); }
    Bool GetBool() const { return GetLong() != 0; }
    Real GetReal() const { return Get<Real>(0); }
    LReal GetLReal() const { return Get<LReal>(0); }
    Vector GetVector() const { return Get<Vector>(Vector()); }
    Matrix GetMatrix() const { return Get<Matrix>(Matrix()); }
    String GetString() const { return Get<String>(String()); }
    Filename GetFilename() const { return Filename(GetString()); }
    BaseTime GetTime() const { return Get<BaseTime>(BaseTime()); }
    void* GetVoid() const { return Get<void*>(nullptr); }
    BaseLink* GetBaseLink() const {
        const Link* l = std::get_if<Link>(&value_);
        return l ? l->link : nullptr;
    }
    BaseList2D* GetLink(const BaseDocument* doc, LONG instanceOf = 0) const {
        BaseLink* l = GetBaseLink();
        return l ? l->GetLink(doc, instanceOf) : nullptr;
    }

    void SetLong(LONG v) { value_ = v; }
    void SetReal(Real v) { value_ = v; }
    void SetLReal(LReal v) { value_ = v; }
    void SetVector(const Vector& v) { value_ = v; }
    void SetMatrix(const Matrix& v) { value_ = v; }
    void SetString(const String& v) { value_ = v; }
    void SetFilename(const Filename& v) { value_ = v.GetString(); }
    void SetBaseTime(const BaseTime& v) { value_ = v; }
    void SetVoid(void* v) { value_ = v; }
    void SetBaseLink(const BaseLink& v) { value_ = Link{v.GetClone()}; }

    // Links compare by what they resolve to (anywhere).
    friend bool operator==(const GeData& a, const GeData& b) {
        if (a.value_.index() != b.value_.index()) return false;
        if (const Link* la = std::get_if<Link>(&a.value_)) {
            const Link& lb = std::get<Link>(b.value_);
            BaseList2D* na = la->link ? la->link->ForceGetLink() : nullptr;
            BaseList2D* nb = lb.link ? lb.link->ForceGetLink() : nullptr;
            return na == nb;
        }
        return a.value_ == b.value_;
    }
    friend bool operator!=(const GeData& a, const GeData& b) { return !(a == b); }

private:
    // Owns a host link; copies clone it.
    struct Link {
        BaseLink* link = nullptr;
        Link() = default;
        explicit Link(BaseLink* l) : link(l) {}
        Link(const Link& o) : link(o.link ? o.link->GetClone() : nullptr) {}
        Link(Link&& o) noexcept : link(std::exchange(o.link, nullptr)) {}
        Link& operator=(const Link& o) {
            if (this != &o) {
                Link tmp(o);
                std::swap(link, tmp.link);
            }
            return *this;
        }
        Link& operator=(Link&& o) noexcept {
            std::swap(link, o.link);
            return *this;
        }
        ~Link() { BaseLink::Free(link); }
        friend bool operator==(const Link& a, const Link& b) { return a.link == b.link; }
    };

    template <class T>
    T Get(T fallback) const {
        const T* v = std::get_if<T>(&value_);
        return v ? *v : fallback;
    }

    std::variant<std::monostate, LONG, Real, LReal, Vector, Matrix, String, BaseTime, void*, Link> value_;
};
