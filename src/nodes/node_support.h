// Small helpers the node and its snapshots share.
#pragma once

#include <string>

#include "adaptor/c4d_adaptor_interface.h"
#include "host_api/c4d.h"
#include "undo/undo_guard.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

inline C4DAdaptorInterface* theAdaptor() { return C4DAdaptorInterface::instance(); }

// The object behind a link, when it is still alive (in a document or not).
inline BaseObject* resolveObject(const BaseLink* link) {
    return link ? static_cast<BaseObject*>(link->GetLink(nullptr, Obase)) : nullptr;
}

// Where undo records and insertions for `op` go: its own document, else the active one.
inline BaseDocument* documentFor(BaseObject* op) {
    BaseDocument* doc = op ? op->GetDocument() : nullptr;
    return doc ? doc : GetActiveDocument();
}

// Records an undo step for `element` when there is a document to record it in.
inline void addUndo(BaseDocument* doc, LONG type, void* element) {
    if (doc) doc->AddUndo(type, element);
}

// The time value the host uses for a time in seconds.
inline BaseTime hostTime(double seconds) { return BaseTime(static_cast<Real>(seconds)); }

// A log line at `level` inside whatever entry is open.
inline void logLine(const std::string& text, std::int32_t level = tvr::util::Log::Notice) {
    tvr::util::Log(level).write(text, -1);
}

}  // namespace tvr::plr::adaptor::cinema4d
