// The node extensions: group selection, animation switches, the master's
// query, renaming as an undoable step, cloning under a given parent.
#include <string>

#include "core_api/master.h"
#include "nodes/c4d_node.h"
#include "nodes/node_support.h"

namespace tvr::plr::adaptor::cinema4d {

using tvr::util::Log;

std::intptr_t CC4DNode::executeExtension(int code, void* argument) {
    // Every line of one call goes into one entry.
    Log log(Log::Notice);
    C4DAdaptorInterface* adaptor = theAdaptor();
    switch (code) {
    case kBeginGroupSelect:
        log.write("execute extension NODE_BEGIN_GROUP_SELECT", -1);
        if (groupSelection.active) return 0;
        groupSelection.active = true;
        groupSelection.ownsUndo = false;
        // An open bracket is the caller's: the group joins it and leaves it open.
        if (!adaptor->isAcceptingUndo()) {
            groupSelection.ownsUndo = true;
            adaptor->beginUndo("NODE_BEGIN_GROUP_SELECT");
        }
        groupSelection.selectionMode = SELECTION_ADD;
        return 1;
    case kGroupSelect:
        log.write("execute extension NODE_GROUP_SELECT", -1);
        if (!groupSelection.active) return 0;
        if (groupSelection.ownsUndo) adaptor->acceptUndo();
        groupSelection = GroupSelection();
        return 1;
    case kIsNotAnimated:
        log.write("execute extension NODE_IS_NOT_ANIMATED", -1);
        animated = false;
        return 1;
    case kLensIsNotAnimated:
        log.write("execute extension NODE_LENS_IS_NOT_ANIMATED", -1);
        lensAnimated = false;
        return 1;
    case kMasterQuery: {
        auto* asker = static_cast<tvr::plr::core::CMaster*>(argument);
        return asker && asker->query(tvr::plr::core::kMasterNodeQuery, this) ? 1 : 0;
    }
    case kSetLabel:
        // Answers 0 although the name changed; the core expects exactly that.
        adaptor->beginUndo("NODE_SETLABEL");
        setName(argument ? *static_cast<const std::string*>(argument) : std::string());
        adaptor->acceptUndo();
        return 0;
    case kCloneWithChildren:
        return reinterpret_cast<std::intptr_t>(cloneUnder(static_cast<tvr::plr::core::CoreNode*>(argument), true));
    default:
        log.write("Extension not implemented: " + std::to_string(code), Log::Warning);
        return 0;
    }
}

}  // namespace tvr::plr::adaptor::cinema4d
