#pragma once
// Events modules and the scene post to the running host; its event loop
// delivers them on the next cycle.
#include "host_api/c4d.h"

namespace tvr::plr::embedded {

// SpecialEventAdd: delivered to message plug-ins as a core message.
struct SpecialEvent {
  LONG id;
  VULONG p1, p2;
};

// EventAdd without a journal line: the scene changed and wants an evaluation cycle
// (nothing when no host runs).
void postEvent();

}  // namespace tvr::plr::embedded
