#include "undo/c4d_undo_manager.h"

#include <algorithm>

#include "adaptor/c4d_adaptor_interface.h"
#include "plugin/plugin_ids.h"
#include "undo/undo_ids.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

namespace {

// Far outside any working scene, so the hidden object never gets in the way.
constexpr Real kOutOfTheWay = 99999.0f;

TavreloUndoWrapper* stepAt(const documentUndoContainer& record, std::uint32_t index) {
    return index < record.steps.size() ? record.steps[index] : nullptr;
}

}  // namespace

documentUndoContainer::documentUndoContainer(BaseDocument* doc) : document(doc) {
    if (!doc) return;
    documentName = doc->GetDocumentName().GetString();
    documentLink = BaseLink::Alloc();
    if (documentLink) documentLink->SetLink(doc);
}

documentUndoContainer::~documentUndoContainer() {
    for (TavreloUndoWrapper* step : steps) C4DUndoManager::discard(step);
    BaseLink::Free(containerObjectLink);
    BaseLink::Free(undoTagLink);
    BaseLink::Free(documentLink);
}

BaseObject* documentUndoContainer::containerObject() const {
    return containerObjectLink ? static_cast<BaseObject*>(containerObjectLink->ForceGetLink()) : nullptr;
}

BaseTag* documentUndoContainer::undoTag() const {
    return undoTagLink ? static_cast<BaseTag*>(undoTagLink->ForceGetLink()) : nullptr;
}

C4DUndoManager::C4DUndoManager() {
    // The adaptor is made first so that it is ended after the manager: the
    // steps the manager frees at the end unregister their nodes with it.
    C4DAdaptorInterface::instance();
    Log(Log::Notice).write("Creating undomanager", -1);
}

C4DUndoManager::~C4DUndoManager() = default;

void C4DUndoManager::discard(TavreloUndoWrapper* step) {
    if (!step) return;
    if (step->ownsStep && step->step) step->step->release();
    delete step;
}

documentUndoContainer* C4DUndoManager::findRecord(BaseDocument* doc) {
    for (std::size_t i = 0; i < records_.size(); ++i) {
        documentUndoContainer& record = *records_[i];
        if (record.document != doc) continue;
        // The document this record was made for is gone and another took its
        // address: the old record's links and steps mean nothing here.
        if (record.documentLink && record.documentLink->ForceGetLink() != doc) {
            dropRecord(i);
            return nullptr;
        }
        return &record;
    }
    return nullptr;
}

void C4DUndoManager::dropRecord(std::size_t index) {
    records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(index));
}

documentUndoContainer* C4DUndoManager::getDocumentContainer(BaseDocument* doc) {
    if (!doc) doc = GetActiveDocument();
    if (!doc) return nullptr;
    if (documentUndoContainer* record = findRecord(doc)) return record;
    records_.push_back(std::make_unique<documentUndoContainer>(doc));
    return records_.back().get();
}

bool C4DUndoManager::hasDocumentContainer(BaseDocument* doc) {
    if (!doc) doc = GetActiveDocument();
    return doc && findRecord(doc) != nullptr;
}

void C4DUndoManager::makeContainerObject(documentUndoContainer& record) {
    // Made once: an object the user deleted is not rebuilt (its name asks not to).
    if (record.containerObjectLink || !record.document) return;
    BaseObject* object = BaseObject::Alloc(Opolygon);
    if (!object) return;
    record.document->InsertObject(object, nullptr, nullptr, true);
    object->SetName(String(kContainerObjectName));
    BaseContainer* data = object->GetDataInstance();
    data->SetLong(kContainerMarkerKey, kContainerMarkerValue);
    data->SetLong(kContainerPositionKey, static_cast<LONG>(record.position));

    // Without its tag the object stays behind unlinked, and the next request makes another.
    BaseTag* tag = BaseTag::Alloc(kUndoTagId);
    if (!tag) return;
    object->InsertTag(tag);
    tag->GetDataInstance()->SetLong(kTagPositionKey, static_cast<LONG>(record.position));
    object->SetPos(Vector(kOutOfTheWay, kOutOfTheWay, kOutOfTheWay));

    record.undoTagLink = BaseLink::Alloc();
    if (record.undoTagLink) record.undoTagLink->SetLink(tag);
    record.containerObjectLink = BaseLink::Alloc();
    if (record.containerObjectLink) record.containerObjectLink->SetLink(object);
}

void C4DUndoManager::ensureContainerObject(BaseDocument* doc) {
    if (documentUndoContainer* record = getDocumentContainer(doc)) makeContainerObject(*record);
}

int C4DUndoManager::AddUndo(BaseDocument*, TavreloUndoWrapper* step) {
    Log(Log::Notice).write("AddUndo", -1);
    // The active document's record takes the step, whichever document was named.
    BaseDocument* doc = GetActiveDocument();
    documentUndoContainer* record = doc ? getDocumentContainer(doc) : nullptr;
    if (!step || !record) return 0;
    makeContainerObject(*record);
    if (!record->containerObjectLink || !record->undoTagLink) return 0;

    // Raised before the object is checked: once the user has deleted the
    // hidden object or its tag, every step fails while the number still rises.
    ++record->position;
    BaseObject* object = record->containerObject();
    BaseTag* tag = record->undoTag();
    if (!object || !tag || object->GetDocument() != doc || tag->GetObject() != object) return 0;

    // The host keeps the old number in its open undo group.
    doc->AddUndo(UNDO_CHANGE_SMALL, object);
    BaseContainer* data = object->GetDataInstance();
    if (!data) return 0;
    data->SetLong(kContainerPositionKey, static_cast<LONG>(record->position));

    // A new step ends the redo branch.
    const std::size_t keep = record->position - 1;
    while (record->steps.size() > keep) {
        discard(record->steps.back());
        record->steps.pop_back();
    }
    // Positions that rose without a stored step keep their place as empty entries.
    record->steps.resize(keep, nullptr);
    step->index = record->position - 1;
    record->steps.push_back(step);

    // The tag sees no difference for a change the manager made itself.
    tag->GetDataInstance()->SetLong(kTagPositionKey, static_cast<LONG>(record->position));
    return 1;
}

int C4DUndoManager::DoUndo(std::uint32_t target) {
    Log(Log::Notice).write("DoUndo", -1);
    documentUndoContainer* record = getDocumentContainer(nullptr);
    if (!record) return 0;
    if (target > record->position) {
        Log(Log::Error)
            .write("DoUndo: target " + std::to_string(target) + " lies above the position " +
                       std::to_string(record->position),
                   -1);
        return 0;
    }
    while (record->position != target) {
        // Above the stored steps there is nothing to run.
        if (record->position > record->steps.size()) {
            record->position = std::max<std::uint32_t>(target, static_cast<std::uint32_t>(record->steps.size()));
            continue;
        }
        if (TavreloUndoWrapper* step = stepAt(*record, record->position - 1)) {
            record->inUndoRedo = true;
            step->undo(true);
            record->inUndoRedo = false;
        }
        --record->position;
    }
    return 1;
}

int C4DUndoManager::DoRedo(std::uint32_t target) {
    Log(Log::Notice).write("DoRedo", -1);
    documentUndoContainer* record = getDocumentContainer(nullptr);
    if (!record) return 0;
    if (target < record->position) {
        Log(Log::Error)
            .write("DoRedo: target " + std::to_string(target) + " lies below the position " +
                       std::to_string(record->position),
                   -1);
        return 0;
    }
    while (record->position != target) {
        if (record->position >= record->steps.size()) {
            record->position = target;
            break;
        }
        if (TavreloUndoWrapper* step = stepAt(*record, record->position)) {
            record->inUndoRedo = true;
            step->redo();
            record->inUndoRedo = false;
        }
        ++record->position;
    }
    return 1;
}

bool C4DUndoManager::isInUndoRedo() {
    documentUndoContainer* record = getDocumentContainer(nullptr);
    return record && record->inUndoRedo;
}

void C4DUndoManager::setDocumentName(const String& name) {
    if (documentUndoContainer* record = getDocumentContainer(nullptr)) record->documentName = name;
}

void C4DUndoManager::detachContainerObject(BaseDocument* doc) {
    if (!doc) doc = GetActiveDocument();
    documentUndoContainer* record = doc ? findRecord(doc) : nullptr;
    if (!record) return;
    if (BaseObject* object = record->containerObject()) object->Remove();
}

void C4DUndoManager::attachContainerObject(BaseDocument* doc) {
    if (!doc) doc = GetActiveDocument();
    documentUndoContainer* record = doc ? findRecord(doc) : nullptr;
    if (!record || !record->document) return;
    BaseObject* object = record->containerObject();
    if (object && object->GetDocument() != record->document) {
        object->Remove();  // out of whatever list still holds it: the host inserts only free nodes
        record->document->InsertObject(object, nullptr, nullptr, true);
    }
}

void C4DUndoManager::removeDocument(BaseDocument* doc) {
    if (!doc) doc = GetActiveDocument();
    if (!doc) return;
    for (std::size_t i = records_.size(); i-- > 0;) {
        documentUndoContainer& record = *records_[i];
        if (record.document != doc) continue;
        // Out of the scene the two would belong to nobody: they are freed.
        if (BaseTag* tag = record.undoTag()) {
            tag->Remove();
            BaseTag::Free(tag);
        }
        BaseLink::Free(record.undoTagLink);
        if (BaseObject* object = record.containerObject()) {
            object->Remove();
            BaseObject::Free(object);
        }
        BaseLink::Free(record.containerObjectLink);
        EventAdd();
        dropRecord(i);
    }
}

std::vector<std::string> C4DUndoManager::describeActiveDocument() {
    std::vector<std::string> lines;
    BaseDocument* doc = GetActiveDocument();
    documentUndoContainer* record = doc ? findRecord(doc) : nullptr;
    if (!record) return lines;
    const BaseObject* object = record->containerObject();
    lines.push_back("position " + std::to_string(record->position) + " of " + std::to_string(record->steps.size()) +
                    (object ? "" : ", hidden object gone"));
    for (std::size_t i = 0; i < record->steps.size(); ++i) {
        const TavreloUndoWrapper* step = record->steps[i];
        std::string line = std::to_string(i + 1) + (i < record->position ? " applied " : " undone  ");
        line += step ? "\"" + step->name.ToStd() + "\"" : "(not stored)";
        lines.push_back(line);
    }
    return lines;
}

}  // namespace tvr::plr::adaptor::cinema4d
