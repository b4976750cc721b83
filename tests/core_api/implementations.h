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

// Answers the host identity as the adaptor does in the host and records the
// name of every operation called, in order.
class TestAdaptor final : public core::AdaptorInterface {
public:
    int getInterfaceVersion() override { note("getInterfaceVersion"); return version; }
    const std::string& getDisplayName() override { note("getDisplayName"); return displayName; }
    const std::string& getAdaptorId() override { note("getAdaptorId"); return adaptorId; }
    const std::string& getHostName() override { note("getHostName"); return hostName; }
    const std::string& getHostVersion() override { note("getHostVersion"); return hostVersion; }
    void getHostIdentifiers(util::ReturnValue<StringList>* sink) override {
        note("getHostIdentifiers");
        identifierTarget = sink ? sink->get() : nullptr;
        if (sink) sink->set({hostName + "_" + hostVersion, hostName, ""});
    }
    int reservedQuery6() override { note("reservedQuery6"); return 0; }
    CoreNode* createCamera(CMaster*, const std::string&, CoreNode*, CNodePeer*) override {
        note("createCamera");
        return nullptr;
    }
    CoreNode* createMeshNode(CMaster*, const std::string&, CoreNode*, const util::CMesh&, CNodePeer*) override {
        note("createMeshNode");
        return nullptr;
    }
    CoreNode* createMesh(CMaster*, const std::string&, const util::CMesh&) override {
        note("createMesh");
        return nullptr;
    }
    CoreNode* findNode(CMaster*, const std::string&) override { note("findNode"); return nullptr; }
    void storeMasterState(CMaster*) override { note("storeMasterState"); }
    bool loadState() override { note("loadState"); return false; }
    void getNodes(util::ReturnValue<NodeList>*) override { note("getNodes"); }
    void getMasterNodes(CMaster*, util::ReturnValue<NodeList>*) override { note("getMasterNodes"); }
    void acquireNodes(const std::string&, const util::xml::Element&, util::ReturnValue<NodeList>*) override {
        note("acquireNodes");
    }
    void mergeFromFile(const std::string&, CMaster*) override { note("mergeFromFile"); }
    int beginUndo(const std::string&) override { note("beginUndo"); return 0; }
    int addUndo(CUndo*) override { note("addUndo"); return 1; }
    int acceptUndo() override { note("acceptUndo"); return 1; }
    int cancelUndo() override { note("cancelUndo"); return 1; }
    bool isAcceptingUndo() override { note("isAcceptingUndo"); return false; }
    bool undo() override { note("undo"); return false; }
    double getTime() override { note("getTime"); return 0.0; }
    void setTime(double) override { note("setTime"); }
    void reservedNotify25(int) override { note("reservedNotify25"); }
    std::pair<double, double> getTimeRange() override { note("getTimeRange"); return {0.0, 0.0}; }
    void setTimeRange(const double*) override { note("setTimeRange"); }
    double getFrameRate() override { note("getFrameRate"); return 0.0; }
    double getFrameDuration() override { note("getFrameDuration"); return 0.0; }
    void refreshScene() override { note("refreshScene"); }
    void reservedNotify31() override { note("reservedNotify31"); }
    void reservedNotify32() override { note("reservedNotify32"); }
    int prepareDirectRecording(util::ReturnValue<MasterList>*) override { note("prepareDirectRecording"); return 1; }
    int prepareCacheRecording(void*) override { note("prepareCacheRecording"); return 1; }
    int stopRecording() override { note("stopRecording"); return 0; }
    int reservedQuery36() override { note("reservedQuery36"); return 0; }
    int getAdaptorData(util::ReturnValue<util::xml::Element>*) override { note("getAdaptorData"); return 0; }
    void reservedNotify38(int) override { note("reservedNotify38"); }

    int version = 9201;
    std::string displayName = "Cinema 4D R10 Adaptor";
    std::string adaptorId = "adaptor_c4dr11";
    std::string hostName = "CINEMA4D";
    std::string hostVersion = "R 11008";
    std::vector<std::string> calls;
    // Where the last identifier sink pointed.
    const StringList* identifierTarget = nullptr;

private:
    void note(const char* operation) { calls.push_back(operation); }
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
