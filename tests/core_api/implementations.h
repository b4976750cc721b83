// One concrete class for each interface shared with the core. Every pure
// operation is overridden with `override`, so an operation that is missing,
// renamed or given another signature in the headers breaks the build.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "core_api/cnode.h"
#include "core_api/core_interface.h"
#include "core_api/core_node.h"
#include "core_api/csnapshot.h"
#include "core_api/cundo.h"
#include "core_api/master.h"
#include "core_api/node_peer.h"

namespace tvr::plr::test {

using core::CMaster;
using core::CNodePeer;
using core::CoreNode;
using core::MasterList;
using core::NodeList;
using core::StringList;

class TestAdaptor final : public core::AdaptorInterface {
public:
    int getInterfaceVersion() override { return 9201; }
    const std::string& getDisplayName() override { return text; }
    const std::string& getAdaptorId() override { return text; }
    const std::string& getHostName() override { return text; }
    const std::string& getHostVersion() override { return text; }
    void getHostIdentifiers(util::ReturnValue<StringList>*) override {}
    int reservedQuery6() override { return 0; }
    CoreNode* createCamera(CMaster*, const std::string&, CoreNode*, CNodePeer*) override { return nullptr; }
    CoreNode* createMeshNode(CMaster*, const std::string&, CoreNode*, const util::CMesh&, CNodePeer*) override {
        return nullptr;
    }
    CoreNode* createMesh(CMaster*, const std::string&, const util::CMesh&) override { return nullptr; }
    CoreNode* findNode(CMaster*, const std::string&) override { return nullptr; }
    void storeMasterState(CMaster*) override {}
    bool loadState() override { return false; }
    void getNodes(util::ReturnValue<NodeList>*) override {}
    void getMasterNodes(CMaster*, util::ReturnValue<NodeList>*) override {}
    void acquireNodes(const std::string&, const util::xml::Element&, util::ReturnValue<NodeList>*) override {}
    void mergeFromFile(const std::string&, CMaster*) override {}
    int beginUndo(const std::string&) override { return 0; }
    int addUndo(CUndo*) override { return 1; }
    int acceptUndo() override { return 1; }
    int cancelUndo() override { return 1; }
    bool isAcceptingUndo() override { return false; }
    bool undo() override { return false; }
    double getTime() override { return 0.0; }
    void setTime(double) override {}
    void reservedNotify25(int) override {}
    std::pair<double, double> getTimeRange() override { return {0.0, 0.0}; }
    void setTimeRange(const double*) override {}
    double getFrameRate() override { return 0.0; }
    double getFrameDuration() override { return 0.0; }
    void refreshScene() override {}
    void reservedNotify31() override {}
    void reservedNotify32() override {}
    int prepareDirectRecording(util::ReturnValue<MasterList>*) override { return 1; }
    int prepareCacheRecording(void*) override { return 1; }
    int stopRecording() override { return 0; }
    int reservedQuery36() override { return 0; }
    int getAdaptorData(util::ReturnValue<util::xml::Element>*) override { return 0; }
    void reservedNotify38(int) override {}

    std::string text;
};

// A node whose supported extensions are set by the test; counts destruction.
class TestNode final : public CoreNode {
public:
    TestNode(CMaster* master, std::string name, int* destroyed = nullptr)
        : CoreNode(master, std::move(name)), destroyed(destroyed) {}
    ~TestNode() override {
        if (destroyed) ++*destroyed;
    }

    std::intptr_t executeExtension(int, void*) override { return 0; }
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override {
        codes = supported;
        return codes;
    }
    int show() override { return 0; }
    int hide() override { return 0; }
    bool isVisible() override { return true; }
    int select() override { return 0; }
    bool isReleased() override { return false; }
    CoreNode* acquireParent() override { return nullptr; }
    std::int32_t getChildCount() override { return 0; }
    CoreNode* acquireChild(std::int32_t) override { return nullptr; }
    void releaseNode(CoreNode* node) override { delete node; }
    void release() override { delete this; }
    CoreNode* reacquire(CMaster*, const std::string&) override { return nullptr; }
    void detach() override {}
    CTransformSnapshot* acquireSnapshot(double) override { return nullptr; }
    CHelperSnapshot* createHelperSnapshot() override { return nullptr; }
    CMeshSnapshot* acquireMeshSnapshot(double) override { return nullptr; }
    CLensSnapshot* acquireLensSnapshot(double) override { return nullptr; }
    CShapeSnapshot* acquireShape(double) override { return nullptr; }
    void releaseShape(CShapeSnapshot*) override {}
    void releaseLensSnapshot(CLensSnapshot*) override {}
    void releaseMeshSnapshot(CMeshSnapshot*) override {}
    void releaseHelperSnapshot(CHelperSnapshot*) override {}
    void releaseSnapshot(CTransformSnapshot*) override {}
    bool isSameNode(CoreNode* other) override { return other == this; }
    int setParent(CoreNode*) override { return 1; }
    int truncateKeys(double) override { return 0; }
    int setName(const std::string&) override { return 0; }
    std::string getName() override { return name; }
    int deleteNode(bool) override { return 0; }
    CoreNode* cloneNode(bool) override { return nullptr; }

    std::vector<int> supported;
    int* destroyed;
};

// The extension operations every snapshot kind shares.
template <class Kind>
class SnapshotBase : public Kind {
public:
    std::intptr_t executeExtension(int, void*) override { return 0; }
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override {
        codes = supported;
        return codes;
    }
    std::vector<int> supported;
};

class TestTransformSnapshot final : public SnapshotBase<CTransformSnapshot> {
public:
    void setLocalMatrix(const util::Matrix4d&) override {}
    util::Matrix4d getLocalMatrix() override { return {}; }
    util::Matrix4d getGlobalMatrix() override { return {}; }
    void setGlobalMatrix(const util::Matrix4d&) override {}
    double getTime() override { return 0.0; }
};

class TestLensSnapshot final : public SnapshotBase<CLensSnapshot> {
public:
    void setFov(double) override {}
    double getFov() override { return 0.0; }
    std::int32_t getFovType() override { return FOV_TYPE_WIDTH; }
    void setFovType(std::int32_t) override {}
    void setLensValue(double) override {}
    double getLensValue() override { return 0.0; }
    double getTime() override { return 0.0; }
    util::Matrix4d& getPerspective(util::Matrix4d& result) override { return result; }
};

class TestShapeSnapshot final : public SnapshotBase<CShapeSnapshot> {
public:
    std::int32_t getShapeKind() override { return 1; }
    std::int32_t getShapeIndex() override { return 0; }
    void setShapeIndex(std::int32_t) override {}
    double getLength() override { return 0.0; }
    util::Vec3d getPoint(double) override { return {}; }
    util::Vec3d getTangent(double) override { return {}; }
};

class TestMeshSnapshot final : public SnapshotBase<CMeshSnapshot> {
public:
    void setMesh(const util::CMesh&) override {}
    util::CMesh getMeshValue() override { return {}; }
    bool intersectRay(const double*, const double*, double*, double*) override { return false; }
    bool getMesh(util::ReturnValue<util::CMesh>*) override { return false; }
};

class TestHelperSnapshot final : public SnapshotBase<CHelperSnapshot> {
public:
    void setHelperMesh(const util::CMesh&) override {}
    void setHelperColor(float, float, float) override {}
    void setWireframeMode(bool) override {}
    void setBackfaceCulling(bool) override {}
};

class TestUndo final : public CUndo {
public:
    explicit TestUndo(int* destroyed) : destroyed(destroyed) {}
    ~TestUndo() override { ++*destroyed; }
    int undo(bool) override { return 0; }
    int redo() override { return 0; }
    int* destroyed;
};

class TestMaster final : public CMaster {
public:
    using CMaster::CMaster;
    int message(int, void*) override { return 0; }
    bool query(int, CoreNode*) override { return false; }
};

class TestPeer final : public CNodePeer {
public:
    void nodeLeaves(CoreNode*) override {}
    void nodeReturns(CoreNode*) override {}
};

class TestVisitor final : public CExtensionVisitor {
public:
    void visitExtensions(const ExtensionMap& extensions) override {
        seen = extensions;
        ++visits;
    }
    ExtensionMap seen;
    int visits = 0;
};

class TestCore final : public core::CoreInterface {
public:
    void saveState(util::xml::Element&) override {}
    void loadState(const util::xml::Element&) override {}
    void showMain(int) override {}
    void runLoopStep() override {}
};

}  // namespace tvr::plr::test
