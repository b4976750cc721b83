#pragma once
// BaseObject and its point, polygon and spline kinds. Abstract; the host implements them.
#include "host_api/c4d_baselist.h"

struct ObjectColorProperties {
    LONG usecolor = 0;  // ID_BASEOBJECT_USECOLOR_*
    Vector color{0.5f, 0.5f, 0.5f};
    Bool xray = false;
};

class BaseObject : public BaseList2D {
public:
    static BaseObject* Alloc(LONG type) {
        C4D_HostTable* t = C4DOS();
        return t && t->objectAlloc ? t->objectAlloc(type) : nullptr;
    }
    // Removes the object first; its tags, tracks and children go with it.
    static void Free(BaseObject*& op) {
        C4D_HostTable* t = C4DOS();
        if (op && t && t->objectFree) t->objectFree(op);
        op = nullptr;
    }

    BaseObject* GetNext() { return static_cast<BaseObject*>(NodeNext()); }
    BaseObject* GetPred() { return static_cast<BaseObject*>(NodePred()); }
    BaseObject* GetUp() { return static_cast<BaseObject*>(NodeUp()); }
    BaseObject* GetDown() { return static_cast<BaseObject*>(NodeDown()); }
    BaseObject* GetDownLast() { return static_cast<BaseObject*>(NodeDownLast()); }

    // Deep copy with tags, tracks and (unless COPY_NO_HIERARCHY) children; in no document.
    virtual BaseObject* GetClone(LONG flags = 0, AliasTrans* trn = nullptr) = 0;

    virtual Vector GetPos() const = 0;
    virtual void SetPos(const Vector& v) = 0;
    virtual Vector GetRot() const = 0;  // heading, pitch, bank in radians
    virtual void SetRot(const Vector& v) = 0;
    virtual Vector GetScale() const = 0;
    virtual void SetScale(const Vector& v) = 0;
    virtual Matrix GetMl() const = 0;
    virtual void SetMl(const Matrix& m, Bool flag = true) = 0;
    virtual Matrix GetMg() const = 0;
    virtual void SetMg(const Matrix& m, Bool flag = true) = 0;

    virtual LONG GetEditorMode() const = 0;
    virtual void SetEditorMode(LONG mode) = 0;
    virtual LONG GetRenderMode() const = 0;
    virtual void SetRenderMode(LONG mode) = 0;
    virtual void GetColorProperties(ObjectColorProperties* co) const = 0;
    virtual void SetColorProperties(ObjectColorProperties* co) = 0;

    virtual BaseTag* GetFirstTag() = 0;
    virtual BaseTag* GetTag(LONG type, LONG nr = 0) = 0;
    // After pred when given, else first.
    virtual void InsertTag(BaseTag* tag, BaseTag* pred = nullptr) = 0;
    // Allocates, inserts and answers a tag of that type (null on failure).
    virtual BaseTag* MakeTag(LONG type, BaseTag* pred = nullptr) = 0;
    virtual void KillTag(LONG type, LONG nr = 0) = 0;

    // The spline of a spline object; null for other objects.
    virtual SplineObject* GetRealSpline() = 0;

protected:
    BaseObject() = default;
    ~BaseObject() override = default;
};

class PointObject : public BaseObject {
public:
    virtual LONG GetPointCount() const = 0;
    virtual const Vector* GetPointR() const = 0;
    virtual Vector* GetPointW() = 0;

protected:
    ~PointObject() override = default;
};

// A triangle has c == d.
struct CPolygon {
    LONG a = 0, b = 0, c = 0, d = 0;
    CPolygon() = default;
    CPolygon(LONG ia, LONG ib, LONG ic) : a(ia), b(ib), c(ic), d(ic) {}
    CPolygon(LONG ia, LONG ib, LONG ic, LONG id) : a(ia), b(ib), c(ic), d(id) {}
    friend bool operator==(const CPolygon& x, const CPolygon& y) {
        return x.a == y.a && x.b == y.b && x.c == y.c && x.d == y.d;
    }
};

class PolygonObject : public PointObject {
public:
    static PolygonObject* Alloc(LONG pointCount, LONG polygonCount) {
        BaseObject* op = BaseObject::Alloc(Opolygon);
        if (!op) return nullptr;
        auto* poly = static_cast<PolygonObject*>(op);
        if (!poly->ResizeObject(pointCount, polygonCount)) {
            BaseObject::Free(op);
            return nullptr;
        }
        return poly;
    }

    virtual LONG GetPolygonCount() const = 0;
    virtual const CPolygon* GetPolygonR() const = 0;
    virtual CPolygon* GetPolygonW() = 0;
    // Keeps what fits; new entries are zero.
    virtual Bool ResizeObject(LONG pointCount, LONG polygonCount) = 0;
    // Clears a part of the object. Selector 0 removes the polygons and keeps the points; selector 1
    // removes the points and, as polygons refer to them, the polygons too. Tags stay as they are.
    // flags must be 0; any other selector or flags answers false and changes nothing.
    virtual Bool ClearPart(LONG selector, LONG flags) = 0;

protected:
    ~PolygonObject() override = default;
};

struct Segment {
    LONG cnt = 0;
    Bool closed = false;
};

class SplineObject : public PointObject {
public:
    static SplineObject* Alloc(LONG pointCount, LONG type = 0) {
        BaseObject* op = BaseObject::Alloc(Ospline);
        if (!op) return nullptr;
        auto* spline = static_cast<SplineObject*>(op);
        (void)type;  // linear splines only
        if (!spline->ResizeObject(pointCount, 1)) {
            BaseObject::Free(op);
            return nullptr;
        }
        return spline;
    }

    virtual LONG GetSegmentCount() const = 0;
    virtual const Segment* GetSegmentR() const = 0;
    virtual Segment* GetSegmentW() = 0;
    virtual Bool IsClosed() const = 0;
    virtual void SetClosed(Bool closed) = 0;
    virtual Bool ResizeObject(LONG pointCount, LONG segmentCount) = 0;

    virtual Bool InitLength(LONG segment = 0, const LONG* lineSetup = nullptr) = 0;
    virtual Real GetLength() const = 0;
    virtual Real UniformToNatural(Real t) const = 0;
    virtual void FreeLength() = 0;
    virtual Vector GetSplinePoint(Real t, LONG segment = 0, const Vector* padr = nullptr) = 0;
    // Unit length.
    virtual Vector GetSplineTangent(Real t, LONG segment = 0, const Vector* padr = nullptr) = 0;

protected:
    ~SplineObject() override = default;
};
