#pragma once

#include "util/xml/element.h"

namespace tvr::plr::core {

class AdaptorInterface;

// The core's own object, returned by its "attach" export. The adaptor calls
// four of its operations, by position: 17 saveState, 18 loadState,
// 20 showMain, 40 runLoopStep. The other slots belong to the core; they are
// declared here only so that the numbers hold.
class CoreInterface {
public:
    virtual void reserved0() {}
    virtual void reserved1() {}
    virtual void reserved2() {}
    virtual void reserved3() {}
    virtual void reserved4() {}
    virtual void reserved5() {}
    virtual void reserved6() {}
    virtual void reserved7() {}
    virtual void reserved8() {}
    virtual void reserved9() {}
    virtual void reserved10() {}
    virtual void reserved11() {}
    virtual void reserved12() {}
    virtual void reserved13() {}
    virtual void reserved14() {}
    virtual void reserved15() {}
    virtual void reserved16() {}
    /* 17 */ virtual void saveState(util::xml::Element& state) = 0;
    /* 18 */ virtual void loadState(const util::xml::Element& state) = 0;
    virtual void reserved19() {}
    // Always called with 0.
    /* 20 */ virtual void showMain(int mode) = 0;
    virtual void reserved21() {}
    virtual void reserved22() {}
    virtual void reserved23() {}
    virtual void reserved24() {}
    virtual void reserved25() {}
    virtual void reserved26() {}
    virtual void reserved27() {}
    virtual void reserved28() {}
    virtual void reserved29() {}
    virtual void reserved30() {}
    virtual void reserved31() {}
    virtual void reserved32() {}
    virtual void reserved33() {}
    virtual void reserved34() {}
    virtual void reserved35() {}
    virtual void reserved36() {}
    virtual void reserved37() {}
    virtual void reserved38() {}
    virtual void reserved39() {}
    // One time slice, every 40 ms from the adaptor's run-loop timer.
    /* 40 */ virtual void runLoopStep() = 0;

    // After the last slot, so it moves none of them.
    virtual ~CoreInterface() = default;
};

// The core library's two exports, looked up by name.
extern "C" {
using AttachFn = CoreInterface* (*)(AdaptorInterface* adaptor);
using DetachFn = void (*)(CoreInterface* core);
}

}  // namespace tvr::plr::core
