#pragma once
// BaseDocument: a scene with its objects, time settings and undo stack.
#include "host_api/c4d_baselist.h"

class BaseThread {
public:
    virtual Bool TestBreak() = 0;

protected:
    virtual ~BaseThread() = default;
};

// The record carried by MSG_DOCUMENTINFO.
struct DocumentInfoData {
    LONG type = 0;
    BaseDocument* doc = nullptr;
    Filename filename;
};

class BaseDocument : public BaseList2D {
public:
    static BaseDocument* Alloc() {
        C4D_HostTable* t = C4DOS();
        return t && t->documentAlloc ? t->documentAlloc() : nullptr;
    }
    static void Free(BaseDocument*& doc) {
        C4D_HostTable* t = C4DOS();
        if (doc && t && t->documentFree) t->documentFree(doc);
        doc = nullptr;
    }

    BaseDocument* GetNext() { return static_cast<BaseDocument*>(NodeNext()); }
    BaseDocument* GetPred() { return static_cast<BaseDocument*>(NodePred()); }

    virtual Filename GetDocumentName() = 0;
    virtual void SetDocumentName(const Filename& name) = 0;
    virtual Filename GetDocumentPath() = 0;
    virtual void SetDocumentPath(const Filename& path) = 0;

    // Objects: after pred when given, else first child of parent, else first object.
    virtual BaseObject* GetFirstObject() = 0;
    virtual void InsertObject(BaseObject* op, BaseObject* parent, BaseObject* pred, Bool checkNames = false) = 0;
    virtual BaseObject* GetActiveObject() = 0;
    virtual void SetActiveObject(BaseObject* op, LONG mode = SELECTION_NEW) = 0;

    // Time.
    virtual BaseTime GetTime() const = 0;
    virtual void SetTime(const BaseTime& t) = 0;
    virtual LONG GetFps() const = 0;
    virtual void SetFps(LONG fps) = 0;
    virtual BaseTime GetMinTime() const = 0;
    virtual void SetMinTime(const BaseTime& t) = 0;
    virtual BaseTime GetMaxTime() const = 0;
    virtual void SetMaxTime(const BaseTime& t) = 0;
    virtual BaseTime GetLoopMinTime() const = 0;
    virtual void SetLoopMinTime(const BaseTime& t) = 0;
    virtual BaseTime GetLoopMaxTime() const = 0;
    virtual void SetLoopMaxTime(const BaseTime& t) = 0;

    // Undo.
    virtual Bool StartUndo() = 0;
    virtual Bool EndUndo() = 0;
    // Goes through the host table's add-undo slot, so a hook installed there sees it.
    Bool AddUndo(LONG type, void* element) {
        C4D_HostTable* t = C4DOS();
        return t && t->docAddUndo ? t->docAddUndo(this, element, type) != 0 : false;
    }
    virtual Bool DoUndo(Bool multiple = false) = 0;
    virtual Bool DoRedo() = 0;

    // Evaluates the scene: tracks into parameters, expressions, caches.
    virtual Bool ExecutePasses(BaseThread* bt, Bool animation, Bool expressions, Bool caches) = 0;
    // Marks the document as changed (argument unused by this host beyond the journal).
    virtual void SetChanged() = 0;
    virtual Bool GetChanged() = 0;

protected:
    BaseDocument() = default;
    ~BaseDocument() override = default;
};
