#pragma once
// Plug-in data base classes for nodes. Header-only: the module derives from
// them and the host calls them through their virtual tables. The slot order is
// fixed: destructor, four node operations, Message, further operations.
#include "host_api/c4d_basedocument.h"

class BaseData {
public:
    virtual ~BaseData() = default;
};

class NodeData : public BaseData {
public:
    virtual Bool Init(GeListNode* node) {
        (void)node;
        return true;
    }
    virtual void Free(GeListNode* node) { (void)node; }
    virtual Bool Read(GeListNode* node, HyperFile* hf, LONG level) {
        (void)node;
        (void)hf;
        (void)level;
        return true;
    }
    virtual Bool Write(GeListNode* node, HyperFile* hf) {
        (void)node;
        (void)hf;
        return true;
    }
    virtual Bool Message(GeListNode* node, LONG type, void* data) {
        (void)node;
        (void)type;
        (void)data;
        return true;
    }
    virtual Bool CopyTo(NodeData* dest, GeListNode* snode, GeListNode* dnode, LONG flags, AliasTrans* trn) {
        (void)dest;
        (void)snode;
        (void)dnode;
        (void)flags;
        (void)trn;
        return true;
    }
    virtual BaseDocument* GetDocument(GeListNode* node) { return node ? node->GetDocument() : nullptr; }
    virtual Bool GetDDescription(GeListNode* node, Description* description, LONG& flags) {
        (void)node;
        (void)description;
        (void)flags;
        return true;
    }
    virtual Bool GetDParameter(GeListNode* node, const DescID& id, GeData& t_data, LONG& flags) {
        (void)node;
        (void)id;
        (void)t_data;
        (void)flags;
        return true;
    }
    virtual Bool SetDParameter(GeListNode* node, const DescID& id, const GeData& t_data, LONG& flags) {
        (void)node;
        (void)id;
        (void)t_data;
        (void)flags;
        return true;
    }
    virtual Bool GetDEnabling(GeListNode* node, const DescID& id, const GeData& t_data, LONG flags,
                              const BaseContainer* itemdesc) {
        (void)node;
        (void)id;
        (void)t_data;
        (void)flags;
        (void)itemdesc;
        return true;
    }
};

class TagData : public NodeData {
public:
    virtual Bool Draw(BaseTag* tag, BaseObject* op, BaseDraw* bd, BaseDrawHelp* bh) {
        (void)tag;
        (void)op;
        (void)bd;
        (void)bh;
        return true;
    }
    // Runs during document evaluation for tags registered with TAG_EXPRESSION.
    virtual LONG Execute(BaseTag* tag, BaseDocument* doc, BaseObject* op, BaseThread* bt, LONG priority, LONG flags) {
        (void)tag;
        (void)doc;
        (void)op;
        (void)bt;
        (void)priority;
        (void)flags;
        return EXECUTION_RESULT_OK;
    }
    virtual Bool AddToExecution(BaseTag* tag, PriorityList* list) {
        (void)tag;
        (void)list;
        return false;
    }
};

// The node of a scene hook: one per document and registered hook.
class BaseSceneHook : public BaseList2D {
protected:
    ~BaseSceneHook() override = default;
};

class SceneHookData : public NodeData {
public:
    virtual LONG Execute(BaseSceneHook* node, BaseDocument* doc, BaseThread* bt, LONG priority, LONG flags) {
        (void)node;
        (void)doc;
        (void)bt;
        (void)priority;
        (void)flags;
        return EXECUTION_RESULT_OK;
    }
    virtual Bool AddToExecution(BaseSceneHook* node, PriorityList* list) {
        (void)node;
        (void)list;
        return false;
    }
    virtual Bool Draw(BaseSceneHook* node, BaseDocument* doc, BaseDraw* bd, BaseDrawHelp* bh, BaseThread* bt,
                      LONG flags) {
        (void)node;
        (void)doc;
        (void)bd;
        (void)bh;
        (void)bt;
        (void)flags;
        return true;
    }
    virtual Bool InitSceneHook(BaseSceneHook* node, BaseDocument* doc, BaseThread* bt) {
        (void)node;
        (void)doc;
        (void)bt;
        return true;
    }
    virtual void FreeSceneHook(BaseSceneHook* node, BaseDocument* doc) {
        (void)node;
        (void)doc;
    }
};
