#include "undo/c4d_undo_tag.h"

#include <new>

#include "plugin/plugin_ids.h"
#include "undo/undo_ids.h"

namespace tvr::plr::adaptor::cinema4d {

NodeData* C4DUndoTag::Alloc() { return new (std::nothrow) C4DUndoTag; }

LONG C4DUndoTag::Execute(BaseTag* tag, BaseDocument*, BaseObject* op, BaseThread*, LONG, LONG) {
    if (!tag || !op) return EXECUTION_RESULT_OK;
    const LONG objectValue = op->GetDataInstance()->GetLong(kContainerPositionKey);
    const LONG tagValue = tag->GetDataInstance()->GetLong(kTagPositionKey);
    if (objectValue == tagValue) return EXECUTION_RESULT_OK;
    // The tag keeps its own number: it posts at every evaluation until the
    // message has been handled.
    SpecialEventAdd(kUndoMessageId, static_cast<VULONG>(static_cast<ULONG>(objectValue)),
                    reinterpret_cast<VULONG>(tag));
    return EXECUTION_RESULT_OK;
}

}  // namespace tvr::plr::adaptor::cinema4d
