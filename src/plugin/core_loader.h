// Finding the installation, loading and attaching the core, and the hidden
// window whose timer gives the core its time slices on the host's main thread.
#pragma once

#include <cstdint>
#include <string>

#include "platform/platform.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DAdaptorInterface;

// Registry value "path" of the installation key, followed by the folder that
// belongs to the key ("data", "plugin", "doc", "prm", "" and "plr"); an
// unknown key gives the bare value. "" when the registry has no string value.
std::string installPath(const std::string& key);

// Loads core.dll from the installation, attaches it to the adaptor and starts
// the run-loop timer. 0 on success, 1 on failure (the user has seen why).
std::int32_t loadCore(C4DAdaptorInterface* adaptor);

// Destroys the run-loop window, detaches the core and frees its library.
// Does nothing while no core is attached. Always 0.
std::int32_t detachCore(C4DAdaptorInterface* adaptor);

// Window procedure of the hidden run-loop window.
std::intptr_t runLoopWindowProc(tvr::platform::WindowHandle window, std::uint32_t msg, std::uintptr_t wParam,
                                std::intptr_t lParam);

// Shows "<function> failed with error <n>: <system text>" in an error box.
void showLastError(const std::string& functionName);

// The latest run-loop window, or null.
tvr::platform::WindowHandle runLoopWindow();

}  // namespace tvr::plr::adaptor::cinema4d
