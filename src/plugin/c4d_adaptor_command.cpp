#include "plugin/c4d_adaptor_command.h"

#include "adaptor/c4d_adaptor_interface.h"
#include "plugin/core_loader.h"

namespace tvr::plr::adaptor::cinema4d {

Bool C4DAdaptorCommand::Execute(BaseDocument*) {
    C4DAdaptorInterface* adaptor = C4DAdaptorInterface::instance();
    if (!adaptor) return true;
    // A failed load leaves no core behind, so every run tries again.
    if (!adaptor->getCore()) loadCore(adaptor);
    if (core::CoreInterface* core = adaptor->getCore()) {
        core->showMain(0);
    } else {
        MessageDialog("CORE is not attached to adaptor");
    }
    return true;
}

}  // namespace tvr::plr::adaptor::cinema4d
