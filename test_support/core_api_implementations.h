// One concrete class for each interface shared with the core. Every pure
// operation is overridden with `override`, so an operation that is missing,
// renamed or given another signature in the headers breaks the build; the
// static_asserts at the end catch a pure operation added without a
// counterpart here. Operations are listed in table order.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
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

using namespace core;  // NOLINT: the shared interfaces are the subject here
using util::CMesh;
using util::Matrix4d;
using util::ReturnValue;
using util::Vec3d;

// Answers the host identity as the adaptor does in the host and records the
// name of every operation called, in order.
class TestAdaptor final : public AdaptorInterface {
public:
    int getInterfaceVersion() override { note(__func__); return version; }
    const std::string& getDisplayName() override { note(__func__); return displayName; }
    const std::string& getAdaptorId() override { note(__func__); return adaptorId; }
    const std::string& getHostName() override { note(__func__); return hostName; }
    const std::string& getHostVersion() override { note(__func__); return hostVersion; }
    void getHostIdentifiers(ReturnValue<StringList>* sink) override {
        note(__func__);
        if (sink) sink->set({hostName + "_" + hostVersion, hostName, ""});
    }
    int reservedQuery6() override { return note(__func__); }
    // Nodes and stored state.
    CoreNode* createCamera(CMaster*, const std::string&, CoreNode*, CNodePeer*) override { return note(__func__); }
    CoreNode* createMeshNode(CMaster*, const std::string&, CoreNode*, const CMesh&, CNodePeer*) override {
        return note(__func__);
    }
    CoreNode* createMesh(CMaster*, const std::string&, const CMesh&) override { return note(__func__); }
    CoreNode* findNode(CMaster*, const std::string&) override { return note(__func__); }
    void storeMasterState(CMaster*) override { note(__func__); } bool loadState() override { return note(__func__); }
    void getNodes(ReturnValue<NodeList>*) override { note(__func__); }
    void getMasterNodes(CMaster*, ReturnValue<NodeList>*) override { note(__func__); }
    void acquireNodes(const std::string&, const util::xml::Element&, ReturnValue<NodeList>*) override {
        note(__func__);
    }
    void mergeFromFile(const std::string&, CMaster*) override { note(__func__); }
    // The undo bracket.
    int beginUndo(const std::string&) override { return note(__func__); }
    int addUndo(CUndo*) override { return note(__func__); } int acceptUndo() override { return note(__func__); }
    int cancelUndo() override { return note(__func__); } bool isAcceptingUndo() override { return note(__func__); }
    bool undo() override { return note(__func__); }
    // Time.
    double getTime() override { return note(__func__); } void setTime(double) override { note(__func__); }
    void reservedNotify25(int) override { note(__func__); }
    std::pair<double, double> getTimeRange() override { note(__func__); return timeRange; }
    void setTimeRange(std::pair<double, double> range) override { note(__func__); timeRange = range; }
    double getFrameRate() override { return note(__func__); }
    double getFrameDuration() override { return note(__func__); } void refreshScene() override { note(__func__); }
    void reservedNotify31() override { note(__func__); } void reservedNotify32() override { note(__func__); }
    // Recording.
    int prepareDirectRecording(ReturnValue<MasterList>*) override { return note(__func__); }
    int prepareCacheRecording(void*) override { return note(__func__); }
    int stopRecording() override { return note(__func__); } int reservedQuery36() override { return note(__func__); }
    int getAdaptorData(ReturnValue<util::xml::Element>*) override { return note(__func__); }
    void reservedNotify38(int) override { note(__func__); }

    int version = 9201;
    std::string displayName = "Cinema 4D R10 Adaptor", adaptorId = "adaptor_c4dr11";
    std::string hostName = "CINEMA4D", hostVersion = "R 11008";
    std::pair<double, double> timeRange{0.0, 0.0};
    std::vector<std::string> calls;

private:
    // Records the call; the answer converts to the zero of any result type.
    struct Zero { template <class T> operator T() const { return T{}; } };
    Zero note(const char* operation) { calls.push_back(operation); return {}; }
};

// The extension operations every node and snapshot kind begins with.
template <class Kind>
class Extensions : public Kind {
public:
    using Kind::Kind;
    std::intptr_t executeExtension(int, void*) override { return 0; }
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) override { return codes = supported; }
    std::vector<int> supported;
};

// A node whose supported extensions are set by the test; counts destruction.
// Only releaseNode and release do anything.
class TestNode final : public Extensions<CoreNode> {
public:
    TestNode(CMaster* master, std::string name, int* destroyed = nullptr)
        : Extensions(master, std::move(name)), destroyed(destroyed) {}
    ~TestNode() override { if (destroyed) ++*destroyed; }
    int show() override { return 0; } int hide() override { return 0; } bool isVisible() override { return true; }
    int select() override { return 0; } bool isReleased() override { return false; }
    CoreNode* acquireParent() override { return nullptr; } std::int32_t getChildCount() override { return 0; }
    CoreNode* acquireChild(std::int32_t) override { return nullptr; }
    void releaseNode(CoreNode* node) override { delete node; } void release() override { delete this; }
    CoreNode* reacquire(CMaster*, const std::string&) override { return nullptr; } void detach() override {}
    CTransformSnapshot* acquireSnapshot(double) override { return nullptr; }
    CHelperSnapshot* createHelperSnapshot() override { return nullptr; }
    CMeshSnapshot* acquireMeshSnapshot(double) override { return nullptr; }
    CLensSnapshot* acquireLensSnapshot(double) override { return nullptr; }
    CShapeSnapshot* acquireShape(double) override { return nullptr; } void releaseShape(CShapeSnapshot*) override {}
    void releaseLensSnapshot(CLensSnapshot*) override {} void releaseMeshSnapshot(CMeshSnapshot*) override {}
    void releaseHelperSnapshot(CHelperSnapshot*) override {} void releaseSnapshot(CTransformSnapshot*) override {}
    bool isSameNode(CoreNode*) override { return false; } int setParent(CoreNode*) override { return 1; }
    int truncateKeys(double) override { return 0; } int setName(const std::string&) override { return 0; }
    std::string getName() override { return {}; } int deleteNode(bool) override { return 0; }
    CoreNode* cloneNode(bool) override { return nullptr; }
    int* destroyed;
};

class TestTransformSnapshot final : public Extensions<CTransformSnapshot> {
    void setLocalMatrix(const Matrix4d&) override {} Matrix4d getLocalMatrix() override { return {}; }
    Matrix4d getGlobalMatrix() override { return {}; } void setGlobalMatrix(const Matrix4d&) override {}
    double getTime() override { return 0.0; }
};

class TestLensSnapshot final : public Extensions<CLensSnapshot> {
    void setFov(double) override {} double getFov() override { return 0.0; }
    std::int32_t getFovType() override { return FOV_TYPE_WIDTH; } void setFovType(std::int32_t) override {}
    void setLensValue(double) override {} double getLensValue() override { return 0.0; }
    double getTime() override { return 0.0; } Matrix4d& getPerspective(Matrix4d& result) override { return result; }
};

class TestShapeSnapshot final : public Extensions<CShapeSnapshot> {
    std::int32_t getShapeKind() override { return 1; } std::int32_t getShapeIndex() override { return 0; }
    void setShapeIndex(std::int32_t) override {} double getLength() override { return 0.0; }
    Vec3d getPoint(double) override { return {}; } Vec3d getTangent(double) override { return {}; }
};

class TestMeshSnapshot final : public Extensions<CMeshSnapshot> {
    void setMesh(const CMesh&) override {} CMesh getMeshValue() override { return {}; }
    bool intersectRay(const double*, const double*, double*, double*) override { return false; }
    bool getMesh(ReturnValue<CMesh>*) override { return false; }
};

class TestHelperSnapshot final : public Extensions<CHelperSnapshot> {
    void setHelperMesh(const CMesh&) override {} void setHelperColor(float, float, float) override {}
    void setWireframeMode(bool) override {} void setBackfaceCulling(bool) override {}
};

class TestUndo final : public CUndo {
public:
    explicit TestUndo(int* destroyed) : destroyed(destroyed) {}
    ~TestUndo() override { ++*destroyed; }
    int undo(bool) override { return 0; } int redo() override { return 0; }
    int* destroyed;
};

class TestMaster final : public CMaster {
public:
    using CMaster::CMaster;
    int message(int, void*) override { return 0; } bool query(int, CoreNode*) override { return false; }
};

class TestPeer final : public CNodePeer {
    void nodeLeaves(CoreNode*) override {} void nodeReturns(CoreNode*) override {}
};

class TestVisitor final : public CExtensionVisitor {
public:
    void visitExtensions(const ExtensionMap& extensions) override { seen = extensions, ++visits; }
    ExtensionMap seen;
    int visits = 0;
};

class TestCore final : public CoreInterface {
    void saveState(util::xml::Element&) override {} void loadState(const util::xml::Element&) override {}
    void showMain(int) override {} void runLoopStep() override {}
};

template <class... T>
constexpr bool kConcrete = (!std::is_abstract_v<T> && ...);
static_assert(kConcrete<TestAdaptor, TestNode, TestTransformSnapshot, TestLensSnapshot, TestShapeSnapshot,
                        TestMeshSnapshot, TestHelperSnapshot, TestUndo, TestMaster, TestPeer, TestVisitor, TestCore>);
// Every snapshot kind carries the pool state as well as the node's table start.
template <class... K>
constexpr bool kSnapshotKinds = ((std::is_base_of_v<CoreNode::Snapshot, K> && std::is_base_of_v<CSnapshot, K>) && ...);
static_assert(kSnapshotKinds<CTransformSnapshot, CLensSnapshot, CShapeSnapshot, CMeshSnapshot, CHelperSnapshot>);
// attach and detach match the typedefs the loader casts their addresses to.
static_assert(std::is_same_v<AttachFn, CoreInterface* (*)(AdaptorInterface*)>);
static_assert(std::is_same_v<DetachFn, void (*)(CoreInterface*)>);

}  // namespace tvr::plr::test
