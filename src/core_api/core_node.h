#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "core_api/cextendable.h"
#include "core_api/cnode.h"

namespace tvr::plr {
class CTransformSnapshot;
class CLensSnapshot;
class CShapeSnapshot;
class CMeshSnapshot;
class CHelperSnapshot;
}  // namespace tvr::plr

namespace tvr::plr::core {

class CMaster;

// The scene node as the core sees it. The core calls these operations by
// position, so their order is fixed. Numbered as the core counts them, the
// primary virtual table is:
//
//    1 executeExtension        13 ~CoreNode              25 releaseLensSnapshot
//    2 getSupportedExtensions  14 getExtension           26 releaseMeshSnapshot
//    3 isExtensionSupported    15 exportExtensions       27 releaseHelperSnapshot
//    4 show                    16 release                28 releaseSnapshot
//    5 hide                    17 reacquire              29 isSameNode
//    6 isVisible               18 detach                 30 setParent
//    7 select                  19 acquireSnapshot        31 truncateKeys
//    8 isReleased              20 createHelperSnapshot   32 setName
//    9 acquireParent           21 acquireMeshSnapshot    33 getName
//   10 getChildCount           22 acquireLensSnapshot    34 deleteNode
//   11 acquireChild            23 acquireShape           35 cloneNode
//   12 releaseNode            24 releaseShape
//
// 1-3 come from CNode, the primary base. The destructor, getExtension and
// exportExtensions override CExtendable (the second base, which keeps its
// own table: destructor, getExtension, exportExtensions); redeclaring them
// here, in this order, gives them their entries 13-15 in the primary table
// as well. The Windows compiler gives a destructor one entry, g++ two
// (complete and deleting), so on g++ every entry from 14 on sits one place
// further; module and core are built by the same compiler, so both sides
// agree.
//
// Operations that change the scene answer non-zero when they refused to act
// (an undo or redo is being replayed, or the object is gone).
class CoreNode : public CNode, public CExtendable {
public:
    // The three operations every snapshot kind begins with.
    // Virtual table order: executeExtension, getSupportedExtensions,
    // isExtensionSupported; the kinds (csnapshot.h) continue it.
    class Snapshot {
    public:
        virtual std::intptr_t executeExtension(int code, void* argument) = 0;
        virtual std::vector<int>& getSupportedExtensions(std::vector<int>& codes) = 0;
        virtual bool isExtensionSupported(int code) {
            std::vector<int> codes;
            getSupportedExtensions(codes);
            return std::find(codes.begin(), codes.end(), code) != codes.end();
        }

    protected:
        Snapshot() = default;
        Snapshot(const Snapshot&) = default;
        Snapshot& operator=(const Snapshot&) = default;
        ~Snapshot() = default;
    };

    CoreNode() = default;
    CoreNode(CMaster* master, std::string name) : CNode(master, std::move(name)) {}

    bool isExtensionSupported(int code) override {
        std::vector<int> codes;
        getSupportedExtensions(codes);
        return std::find(codes.begin(), codes.end(), code) != codes.end();
    }

    virtual int show() = 0;
    virtual int hide() = 0;
    virtual bool isVisible() = 0;
    virtual int select() = 0;
    virtual bool isReleased() = 0;
    // The acquire operations hand the caller a new node; it gives it back
    // with releaseNode or the node's own release.
    virtual CoreNode* acquireParent() = 0;
    virtual std::int32_t getChildCount() = 0;
    virtual CoreNode* acquireChild(std::int32_t index) = 0;
    virtual void releaseNode(CoreNode* node) = 0;

    ~CoreNode() override = default;

    void* getExtension(const std::string& key) override { return CExtendable::getExtension(key); }
    void exportExtensions(CExtensionVisitor* visitor) override { CExtendable::exportExtensions(visitor); }

    // Deletes this node.
    virtual void release() = 0;
    virtual CoreNode* reacquire(CMaster* master, const std::string& name) = 0;
    virtual void detach() = 0;

    virtual CTransformSnapshot* acquireSnapshot(double seconds) = 0;
    virtual CHelperSnapshot* createHelperSnapshot() = 0;
    virtual CMeshSnapshot* acquireMeshSnapshot(double seconds) = 0;
    virtual CLensSnapshot* acquireLensSnapshot(double seconds) = 0;
    virtual CShapeSnapshot* acquireShape(double seconds) = 0;
    virtual void releaseShape(CShapeSnapshot* snapshot) = 0;
    virtual void releaseLensSnapshot(CLensSnapshot* snapshot) = 0;
    virtual void releaseMeshSnapshot(CMeshSnapshot* snapshot) = 0;
    virtual void releaseHelperSnapshot(CHelperSnapshot* snapshot) = 0;
    virtual void releaseSnapshot(CTransformSnapshot* snapshot) = 0;

    virtual bool isSameNode(CoreNode* other) = 0;
    // 0 done, 1 refused.
    virtual int setParent(CoreNode* newParent) = 0;
    virtual int truncateKeys(double seconds) = 0;
    virtual int setName(const std::string& name) = 0;
    virtual std::string getName() = 0;
    virtual int deleteNode(bool removeObject) = 0;
    virtual CoreNode* cloneNode(bool withChildren) = 0;

protected:
    CoreNode(const CoreNode&) = default;
    CoreNode& operator=(const CoreNode&) = default;
};

}  // namespace tvr::plr::core
