// Joins the core's undo steps to the host's undo stack. Per document it keeps
// the steps in order and how many of them are applied (the position), and
// mirrors the position into a hidden container object: every added step
// records a small host undo of that object before raising its number, so the
// host's own undo and redo bring the number back, and the undo reference tag
// on the object turns the difference into DoUndo or DoRedo here.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host_api/c4d.h"
#include "undo/tavrelo_undo_wrapper.h"
#include "util/singleton.h"

namespace tvr::plr::adaptor::cinema4d {

// One document's undo record.
class documentUndoContainer {
public:
    explicit documentUndoContainer(BaseDocument* doc);
    virtual ~documentUndoContainer();
    documentUndoContainer(const documentUndoContainer&) = delete;
    documentUndoContainer& operator=(const documentUndoContainer&) = delete;

    BaseDocument* document = nullptr;
    BaseLink* containerObjectLink = nullptr;
    BaseLink* undoTagLink = nullptr;
    String documentName;
    std::uint32_t position = 0;
    // Entries below position are applied. An entry may be null where a step
    // could not be stored while the position still moved on.
    std::vector<TavreloUndoWrapper*> steps;
    bool inUndoRedo = false;
    // Tells a record of a closed document from one of a new document that the
    // host happened to allocate at the same address.
    BaseLink* documentLink = nullptr;

    // The container object and its tag when they are alive (wherever they are).
    BaseObject* containerObject() const;
    BaseTag* undoTag() const;
};

class C4DUndoManager : public tvr::util::Singleton<C4DUndoManager> {
public:
    // A null document stands for the active one throughout.
    documentUndoContainer* getDocumentContainer(BaseDocument* doc);
    bool hasDocumentContainer(BaseDocument* doc);
    void ensureContainerObject(BaseDocument* doc);

    // 1 when stored, 0 otherwise; the step goes to the active document's record.
    int AddUndo(BaseDocument* doc, TavreloUndoWrapper* step);
    // Run the active document's steps back or forth until its position is target.
    int DoUndo(std::uint32_t target);
    int DoRedo(std::uint32_t target);
    bool isInUndoRedo();

    void setDocumentName(const String& name);
    void detachContainerObject(BaseDocument* doc);
    void attachContainerObject(BaseDocument* doc);
    void removeDocument(BaseDocument* doc);

    // The active document's steps, one line each, for people looking at the
    // history; empty when the document has no record.
    std::vector<std::string> describeActiveDocument();

    // Destroys a wrapper the manager no longer keeps, and with it the step
    // when it is one of the adaptor's own.
    static void discard(TavreloUndoWrapper* step);

private:
    friend class tvr::util::Singleton<C4DUndoManager>;
    C4DUndoManager();
    ~C4DUndoManager() override;

    documentUndoContainer* findRecord(BaseDocument* doc);
    void makeContainerObject(documentUndoContainer& record);
    void dropRecord(std::size_t index);

    std::vector<std::unique_ptr<documentUndoContainer>> records_;
};

}  // namespace tvr::plr::adaptor::cinema4d
