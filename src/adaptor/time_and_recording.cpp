// The document's time as the core plays and records over it.
#include <algorithm>
#include <unordered_set>
#include <vector>

#include "adaptor/c4d_adaptor_interface.h"
#include "adaptor/state_links.h"
#include "core_api/cundo.h"
#include "core_api/master.h"
#include "host_api/c4d.h"
#include "undo/undo_guard.h"
#include "util/log.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

namespace {

constexpr LONG kRedrawForTime = 0x8000;
constexpr LONG kRedrawForRefresh = 0x8002;
constexpr LONG kForcedRedraw = 1;
constexpr LONG kDocumentUpdate = 5;

BaseTime secondsToTime(double seconds) { return BaseTime(static_cast<Real>(seconds)); }

// The host's time-changed broadcast.
void broadcast(LONG code) { GeSyncMessage(code, 0, 0, 0); }

}  // namespace

double C4DAdaptorInterface::getTime() {
    BaseDocument* doc = GetActiveDocument();
    return doc ? doc->GetTime().Get() : 0.0;
}

void C4DAdaptorInterface::setTime(double seconds) {
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return;
    doc->SetTime(secondsToTime(seconds));
    DrawViews(kRedrawForTime);
    broadcast(EVMSG_TIMECHANGED);
    broadcast(EVMSG_CHANGE);
    EventAdd(kForcedRedraw);
    EventAdd(0);
}

std::pair<double, double> C4DAdaptorInterface::getTimeRange() {
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return {0.0, 0.0};
    return {doc->GetMinTime().Get(), doc->GetMaxTime().Get()};
}

void C4DAdaptorInterface::setTimeRange(std::pair<double, double> range) {
    if (undoReplayInProgress()) return;
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return;
    doc->SetMinTime(secondsToTime(range.first));
    doc->SetMaxTime(secondsToTime(range.second));
    doc->SetLoopMinTime(secondsToTime(range.first));
    doc->SetLoopMaxTime(secondsToTime(range.second));
}

double C4DAdaptorInterface::getFrameRate() {
    BaseDocument* doc = GetActiveDocument();
    return doc ? static_cast<double>(doc->GetFps()) : 0.0;
}

double C4DAdaptorInterface::getFrameDuration() {
    BaseDocument* doc = GetActiveDocument();
    // A document always has a positive rate; the guard only keeps a broken one from dividing by zero.
    if (!doc || doc->GetFps() <= 0) return 0.0;
    return 1.0 / static_cast<double>(doc->GetFps());
}

void C4DAdaptorInterface::refreshScene() {
    if (undoReplayInProgress()) return;
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return;
    doc->ExecutePasses(nullptr, true, true, false);
    broadcast(EVMSG_TIMECHANGED);
    EventAdd(kForcedRedraw);
    DrawViews(kRedrawForRefresh);
    doc->Message(kDocumentUpdate);
    EventAdd(kForcedRedraw);
    EventAdd(0);
}

int C4DAdaptorInterface::prepareDirectRecording(tvr::util::ReturnValue<core::MasterList>* masters) {
    BaseDocument* doc = GetActiveDocument();
    core::MasterList list;
    if (masters && masters->get()) list = *masters->get();

    // Masters with a node outside the active document are not recorded; those
    // that also have a node inside it are split across documents and told so.
    std::unordered_set<core::CMaster*> inside;
    for (CC4DNode* node : nodes) {
        BaseObject* op = nodeObject(node);
        if (op && doc && op->GetDocument() == doc) inside.insert(nodeMaster(node));
    }
    std::vector<core::CMaster*> split;
    std::unordered_set<core::CMaster*> outside;
    for (CC4DNode* node : nodes) {
        BaseObject* op = nodeObject(node);
        if (op && doc && op->GetDocument() == doc) continue;
        core::CMaster* master = nodeMaster(node);
        if (!outside.insert(master).second) continue;
        list.erase(std::remove(list.begin(), list.end(), master), list.end());
        if (master && inside.count(master)) split.push_back(master);
    }
    for (core::CMaster* master : split)
        if (master->query(core::kMasterDocumentGone, nullptr)) master->message(core::kMasterDocumentGone, nullptr);
    if (masters) masters->set(list);

    Log scope("Adaptor Prepare Direct Recording", Log::Notice);
    recording = true;
    if (!doc) return 1;
    // Undoing the recording brings the time back; the undo manager owns the step.
    if (tvr::plr::CUndo* restore = makeSetTimeRestore(getTime())) recordOwnStep(restore);
    const std::vector<CC4DNode*> held = nodes;
    for (CC4DNode* node : held) prepareNodeRecording(node, doc);
    return 1;
}

int C4DAdaptorInterface::prepareCacheRecording(void*) {
    Log scope("Adaptor Prepare Cache Recording", Log::Notice);
    return 1;
}

int C4DAdaptorInterface::stopRecording() {
    Log scope("Adaptor stops Recording", Log::Notice);
    if (recording) recording = false;
    return 0;
}

}  // namespace tvr::plr::adaptor::cinema4d
