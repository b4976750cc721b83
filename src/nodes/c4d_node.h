// The scene node the core works with: one host object reached through a link,
// never owned. Every operation resolves the link first and gives its neutral
// answer when the object is gone.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core_api/core_node.h"
#include "host_api/c4d.h"

namespace tvr::plr::adaptor::cinema4d {

class C4DAdaptorInterface;

class CC4DNode : public tvr::plr::core::CoreNode {
public:
    // The snapshot kinds; each is defined in a header of its own.
    class CC4DSnapshot;
    class CC4DSnapshot_Lens;
    class CC4DSnapshot_Shape;
    class CC4DSnapshot_Mesh;
    class CC4DSnapshot_Helper;

    // Extension codes the node handles.
    enum Extension : int {
        kBeginGroupSelect = 10,
        kGroupSelect = 11,
        kIsNotAnimated = 17,
        kLensIsNotAnimated = 18,
        kMasterQuery = 31,
        kSetLabel = 32,
        kCloneWithChildren = 37,
    };

    // Selection state shared by every node: a group selection adds each
    // selected object to the selection instead of replacing it.
    struct GroupSelection {
        bool active = false;
        // The group selection opened the undo bracket and closes it again.
        bool ownsUndo = false;
        LONG selectionMode = SELECTION_NEW;
    };
    static GroupSelection groupSelection;
    // Raised while a node moves its own object in the hierarchy, so that such
    // moves can be told from the user's.
    static bool internalMove;

    // The creating constructor: names the object after the master and `name`
    // and, with `reparent`, inserts it under the parent node's object (or at
    // the top of the document) as an undoable new object; then registers the
    // node with the adaptor. During an undo replay the node stays empty.
    CC4DNode(tvr::plr::core::CMaster* master, const std::string& name, tvr::plr::core::CoreNode* parentNode,
             BaseObject* object, bool reparent);
    // The linking constructor, for nodes handed out by acquireParent and
    // acquireChild: takes over `link`, is never registered, and borrows its
    // name and master from the live node of the same object when there is one.
    CC4DNode(tvr::plr::core::CoreNode* parentNode, BaseLink* link);

    CC4DNode(const CC4DNode&) = delete;
    CC4DNode& operator=(const CC4DNode&) = delete;

    // ---- The core's operations, in the order of its table.
    std::intptr_t executeExtension(int code, void* argument) override;
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override;
    int show() override;
    int hide() override;
    bool isVisible() override;
    int select() override;
    bool isReleased() override;
    tvr::plr::core::CoreNode* acquireParent() override;
    std::int32_t getChildCount() override;
    tvr::plr::core::CoreNode* acquireChild(std::int32_t index) override;
    void releaseNode(tvr::plr::core::CoreNode* node) override;
    ~CC4DNode() override;
    void release() override;
    tvr::plr::core::CoreNode* reacquire(tvr::plr::core::CMaster* master, const std::string& name) override;
    void detach() override;
    tvr::plr::CTransformSnapshot* acquireSnapshot(double seconds) override;
    tvr::plr::CHelperSnapshot* createHelperSnapshot() override;
    tvr::plr::CMeshSnapshot* acquireMeshSnapshot(double seconds) override;
    tvr::plr::CLensSnapshot* acquireLensSnapshot(double seconds) override;
    tvr::plr::CShapeSnapshot* acquireShape(double seconds) override;
    void releaseShape(tvr::plr::CShapeSnapshot* snapshot) override;
    void releaseLensSnapshot(tvr::plr::CLensSnapshot* snapshot) override;
    void releaseMeshSnapshot(tvr::plr::CMeshSnapshot* snapshot) override;
    void releaseHelperSnapshot(tvr::plr::CHelperSnapshot* snapshot) override;
    void releaseSnapshot(tvr::plr::CTransformSnapshot* snapshot) override;
    bool isSameNode(tvr::plr::core::CoreNode* other) override;
    int setParent(tvr::plr::core::CoreNode* newParent) override;
    int truncateKeys(double seconds) override;
    int setName(const std::string& name) override;
    std::string getName() override;
    int deleteNode(bool removeObject) override;
    tvr::plr::core::CoreNode* cloneNode(bool withChildren) override;

    // ---- For the adaptor and the undo steps.
    // Called for every live node when a direct recording is prepared: makes
    // the tracks and records the object's state for undo. 1 when the object is gone.
    int prepareRecording(BaseDocument* document);
    // Finds or makes the eleven tracks and keys the transform at the current time.
    void ensureTracks();
    // The wrapped object, or null when it is gone.
    BaseObject* object() const;
    BaseLink* link() const { return objectLink; }
    // Null when the node has none.
    tvr::plr::core::CNodePeer* nodePeer() const { return peer; }
    const std::vector<CTrack*>& trackList() const { return tracks; }
    const std::vector<DescID>& trackIdList() const { return *trackIds; }

    bool lensAnimated = true;
    bool recordable = false;
    bool released = false;

private:
    tvr::plr::core::CoreNode* cloneUnder(tvr::plr::core::CoreNode* parent, bool withChildren);
    // Shows or hides: both modes set, each after an undo record.
    int setModes(LONG mode);

    BaseLink* objectLink = nullptr;
    std::vector<CTrack*> tracks;
    // Always the eleven ids of nodeTrackIds(), shared rather than copied into every node.
    const std::vector<DescID>* trackIds;
    std::vector<std::unique_ptr<CC4DSnapshot>> transformPool;
    // Kept beside the transform pool; nothing hands snapshots out of it.
    std::vector<std::unique_ptr<CC4DSnapshot>> sparePool;
    std::vector<std::unique_ptr<CC4DSnapshot_Lens>> lensPool;
    std::vector<std::unique_ptr<CC4DSnapshot_Shape>> shapePool;
};

// The node of a core node pointer. The core only ever holds nodes that this
// adaptor made, so the conversion is static.
inline CC4DNode* asC4DNode(tvr::plr::core::CoreNode* node) { return static_cast<CC4DNode*>(node); }

// The eleven animated parameters of a node: position, rotation and scale X,
// Y, Z, then the camera's field of view (1008) and its second lens value (1010).
const std::vector<DescID>& nodeTrackIds();

}  // namespace tvr::plr::adaptor::cinema4d
