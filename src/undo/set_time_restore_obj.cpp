#include "undo/set_time_restore_obj.h"

#include "adaptor/c4d_adaptor_interface.h"

namespace tvr::plr::adaptor::cinema4d {

namespace {
std::uint32_t nextSequence = 0;
constexpr LONG kDrawTimeChange = 0x8000;
}  // namespace

CSetTimeRestoreObj::CSetTimeRestoreObj(double seconds) : sequence_(nextSequence++), time_(seconds) {}

// The host's own conversion of single-precision seconds does exactly this:
// clamp to 1e15 s either way, milliseconds rounded, the fraction reduced.
BaseTime CSetTimeRestoreObj::hostTime(double seconds) { return BaseTime(static_cast<Real>(seconds)); }

int CSetTimeRestoreObj::undo(bool full) {
    C4DAdaptorInterface* adaptor = C4DAdaptorInterface::instance();
    if (!adaptor) return 0;
    if (!full) {
        adaptor->setTime(time_);
        return 1;
    }
    BaseDocument* doc = GetActiveDocument();
    if (!doc) return 0;
    const double now = adaptor->getTime();
    doc->SetTime(hostTime(time_));
    doc->ExecutePasses(nullptr, false, false, true);
    GeSyncMessage(EVMSG_TIMECHANGED, 0, 0, 0);
    EventAdd(EVENT_FORCEREDRAW);
    DrawViews(kDrawTimeChange);
    time_ = now;
    return 1;
}

int CSetTimeRestoreObj::redo() { return undo(true); }

}  // namespace tvr::plr::adaptor::cinema4d
