// A module for the host's tests: a command, an expression tag, a message
// plug-in and a scene hook, reporting what they see on the host's console.
#include <string>

#include "host_api/c4d.h"

namespace {

constexpr LONG kCommandId = 1000001;
constexpr LONG kTagId = 1000002;
constexpr LONG kMessageId = 1000003;
constexpr LONG kHookId = 1000004;
constexpr LONG kExecCountKey = 1;

class TestCommand : public CommandData {
 public:
  Bool Execute(BaseDocument* doc) override {
    if (!doc) return false;
    BaseObject* op = BaseObject::Alloc(Onull);
    op->SetName("made by command");
    doc->StartUndo();
    doc->InsertObject(op, nullptr, nullptr);
    doc->AddUndo(UNDO_NEW, op);
    BaseTag* tag = BaseTag::Alloc(kTagId);
    op->InsertTag(tag);
    doc->AddUndo(UNDO_NEW, tag);
    doc->EndUndo();
    EventAdd();
    GePrint("command ran");
    return true;
  }
};

class TestTag : public TagData {
 public:
  LONG Execute(BaseTag* tag, BaseDocument* doc, BaseObject* op, BaseThread*, LONG, LONG) override {
    BaseContainer* bc = tag->GetDataInstance();
    bc->SetLong(kExecCountKey, bc->GetLong(kExecCountKey) + 1);
    if (doc && op) SpecialEventAdd(kMessageId, 7, reinterpret_cast<VULONG>(tag));
    return EXECUTION_RESULT_OK;
  }
};

class TestMessage : public MessageData {
 public:
  Bool CoreMessage(LONG id, const BaseContainer& bc) override {
    if (id != kMessageId) return true;
    auto p1 = reinterpret_cast<VULONG>(bc.GetVoid(BFM_CORE_PAR1));
    auto* tag = static_cast<BaseTag*>(bc.GetVoid(BFM_CORE_PAR2));
    std::string text = "core message " + std::to_string(p1);
    if (tag) text += " from tag run " + std::to_string(tag->GetDataInstance()->GetLong(kExecCountKey));
    GePrint(String(text));
    return true;
  }
};

class TestHook : public SceneHookData {
 public:
  Bool Message(GeListNode* node, LONG type, void*) override {
    BaseDocument* doc = node ? node->GetDocument() : nullptr;
    GePrint(String("hook message " + std::to_string(type) + (doc ? " with document" : " without document")));
    return true;
  }
};

NodeData* allocTag() { return new TestTag; }
NodeData* allocHook() { return new TestHook; }

Bool start() {
  return RegisterCommandPlugin(kCommandId, "Test command", 0, AutoBitmap("icon.tif"), "help", new TestCommand) &&
         RegisterTagPlugin(kTagId, "Test tag", TAG_VISIBLE | TAG_EXPRESSION, allocTag, "", AutoBitmap("icon.tif"), 0) &&
         RegisterMessagePlugin(kMessageId, "Test message", 0, new TestMessage) &&
         RegisterSceneHookPlugin(kHookId, "Test hook", 0, allocHook, 1000, 0);
}

}  // namespace

#ifdef TEST_MODULE_ENTRY
LONG TEST_MODULE_ENTRY(LONG action, void* p1, void*, void* p3)
#else
C4D_MAIN_EXPORT LONG c4d_main(LONG action, void* p1, void*, void* p3)
#endif
{
  switch (action) {
    case C4DPL_INIT_SYS: {
      auto* table = static_cast<C4D_HostTable*>(p1);
      if (!table || table->apiVersion < C4D_API_VERSION_R11 || !p3) return -3;
      C4DOS() = table;
      return 1;
    }
    case C4DPL_START: return start() ? 1 : 0;
    case C4DPL_END: GePrint("module end"); return 1;
    case C4DPL_INIT_VERSION:
      GePrint("version asked");
      return 3;
    case C4DPL_MESSAGE: return reinterpret_cast<VLONG>(p1) <= 1 ? 1 : -1;
    default: return -1;
  }
}
