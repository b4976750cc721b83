#pragma once
// GeListNode and BaseList2D: the host's list nodes. Abstract; the host implements them.
#include "host_api/c4d_basecontainer.h"
#include "host_api/c4d_descid.h"

class GeListNode {
public:
    GeListNode* GetNext() { return NodeNext(); }
    GeListNode* GetPred() { return NodePred(); }
    GeListNode* GetUp() { return NodeUp(); }
    GeListNode* GetDown() { return NodeDown(); }
    GeListNode* GetDownLast() { return NodeDownLast(); }

    // Insertion takes the node out of wherever it was first.
    virtual void InsertBefore(GeListNode* bl) = 0;
    virtual void InsertAfter(GeListNode* bl) = 0;
    virtual void InsertUnder(GeListNode* bl) = 0;
    virtual void InsertUnderLast(GeListNode* bl) = 0;
    // Unlinks from tree and document; the node stays alive, owned by the caller.
    virtual void Remove() = 0;

    virtual Bool Message(LONG type, void* data = nullptr) = 0;
    virtual BaseDocument* GetDocument() = 0;
    // The plug-in data of a plug-in node (tag, scene hook); null otherwise.
    virtual NodeData* GetNodeData() = 0;

protected:
    GeListNode() = default;
    virtual ~GeListNode() = default;
    GeListNode(const GeListNode&) = delete;
    GeListNode& operator=(const GeListNode&) = delete;

    virtual GeListNode* NodeNext() = 0;
    virtual GeListNode* NodePred() = 0;
    virtual GeListNode* NodeUp() = 0;
    virtual GeListNode* NodeDown() = 0;
    virtual GeListNode* NodeDownLast() = 0;
};

class BaseList2D : public GeListNode {
public:
    BaseList2D* GetNext() { return static_cast<BaseList2D*>(NodeNext()); }
    BaseList2D* GetPred() { return static_cast<BaseList2D*>(NodePred()); }

    virtual String GetName() const = 0;
    virtual void SetName(const String& name) = 0;
    // The live container of the node's data.
    virtual BaseContainer* GetDataInstance() = 0;
    BaseContainer GetData() { return *GetDataInstance(); }
    void SetData(const BaseContainer& bc, Bool add = true) {
        if (!add) GetDataInstance()->FlushAll();
        GetDataInstance()->MergeContainer(bc);
    }
    virtual LONG GetType() const = 0;
    virtual Bool IsInstanceOf(LONG type) const = 0;

    virtual Bool GetParameter(const DescID& id, GeData& t_data, LONG flags) = 0;
    virtual Bool SetParameter(const DescID& id, const GeData& t_data, LONG flags) = 0;

    // Animation tracks of the node, in order.
    virtual CTrack* GetFirstCTrack() = 0;
    virtual CTrack* FindCTrack(const DescID& id) = 0;
    virtual void InsertTrackSorted(CTrack* track) = 0;

protected:
    BaseList2D() = default;
    ~BaseList2D() override = default;
};
