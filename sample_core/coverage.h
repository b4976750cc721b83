// Which operations of the adaptor's interface, its nodes and their snapshots
// the core has called, and how often, for this load of the library. Every
// call goes through the counting layer below: the adaptor the core is given
// is wrapped (CountingAdaptor), and node and snapshot calls are written
// on(node).show(), on(snapshot).getFov() ... so that none is missed.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core_api/adaptor_interface.h"
#include "core_api/csnapshot.h"

namespace tvr::plr::core::sample {

// One row of the table: "adaptor.getTime", "node.show", "lens.getFov" ...
struct CoverageRow {
    const char* name;
    std::int64_t count;
};

// Every operation in table order: the adaptor's slots, the node's, then each
// snapshot kind's.
std::vector<CoverageRow> coverageTable();

// Indices into the table. Adaptor slots keep their numbers.
enum class NodeOp : int {
    executeExtension, getSupportedExtensions, isExtensionSupported, show, hide, isVisible, select, isReleased,
    acquireParent, getChildCount, acquireChild, releaseNode, destroy, getExtension, exportExtensions, release,
    reacquire, detach, acquireSnapshot, createHelperSnapshot, acquireMeshSnapshot, acquireLensSnapshot,
    acquireShape, releaseShape, releaseLensSnapshot, releaseMeshSnapshot, releaseHelperSnapshot, releaseSnapshot,
    isSameNode, setParent, truncateKeys, setName, getName, deleteNode, cloneNode,
};
constexpr int kAdaptorSlots = 39;
constexpr int kNodeSlots = 35;

void countAdaptorSlot(int slot);
void countNodeOp(NodeOp op);
// `row` counts from the first snapshot row.
void countSnapshotOp(int row);

// The adaptor as the core sees it: each call counted, then passed on.
class CountingAdaptor final : public AdaptorInterface {
public:
    explicit CountingAdaptor(AdaptorInterface* adaptor) : a_(adaptor) {}

    int getInterfaceVersion() override { return countAdaptorSlot(0), a_->getInterfaceVersion(); }
    const std::string& getDisplayName() override { return countAdaptorSlot(1), a_->getDisplayName(); }
    const std::string& getAdaptorId() override { return countAdaptorSlot(2), a_->getAdaptorId(); }
    const std::string& getHostName() override { return countAdaptorSlot(3), a_->getHostName(); }
    const std::string& getHostVersion() override { return countAdaptorSlot(4), a_->getHostVersion(); }
    void getHostIdentifiers(util::ReturnValue<StringList>* ids) override {
        countAdaptorSlot(5);
        a_->getHostIdentifiers(ids);
    }
    int reservedQuery6() override { return countAdaptorSlot(6), a_->reservedQuery6(); }
    CoreNode* createCamera(CMaster* m, const std::string& name, CoreNode* parent, CNodePeer* peer) override {
        return countAdaptorSlot(7), a_->createCamera(m, name, parent, peer);
    }
    CoreNode* createMeshNode(CMaster* m, const std::string& name, CoreNode* parent, const util::CMesh& mesh,
                             CNodePeer* peer) override {
        return countAdaptorSlot(8), a_->createMeshNode(m, name, parent, mesh, peer);
    }
    CoreNode* createMesh(CMaster* m, const std::string& name, const util::CMesh& mesh) override {
        return countAdaptorSlot(9), a_->createMesh(m, name, mesh);
    }
    CoreNode* findNode(CMaster* m, const std::string& label) override {
        return countAdaptorSlot(10), a_->findNode(m, label);
    }
    void storeMasterState(CMaster* m) override {
        countAdaptorSlot(11);
        a_->storeMasterState(m);
    }
    bool loadState() override { return countAdaptorSlot(12), a_->loadState(); }
    void getNodes(util::ReturnValue<NodeList>* nodes) override {
        countAdaptorSlot(13);
        a_->getNodes(nodes);
    }
    void getMasterNodes(CMaster* m, util::ReturnValue<NodeList>* nodes) override {
        countAdaptorSlot(14);
        a_->getMasterNodes(m, nodes);
    }
    void acquireNodes(const std::string& name, const util::xml::Element& element,
                      util::ReturnValue<NodeList>* nodes) override {
        countAdaptorSlot(15);
        a_->acquireNodes(name, element, nodes);
    }
    void mergeFromFile(const std::string& file, CMaster* m) override {
        countAdaptorSlot(16);
        a_->mergeFromFile(file, m);
    }
    int beginUndo(const std::string& group) override { return countAdaptorSlot(17), a_->beginUndo(group); }
    int addUndo(CUndo* step) override { return countAdaptorSlot(18), a_->addUndo(step); }
    int acceptUndo() override { return countAdaptorSlot(19), a_->acceptUndo(); }
    int cancelUndo() override { return countAdaptorSlot(20), a_->cancelUndo(); }
    bool isAcceptingUndo() override { return countAdaptorSlot(21), a_->isAcceptingUndo(); }
    bool undo() override { return countAdaptorSlot(22), a_->undo(); }
    double getTime() override { return countAdaptorSlot(23), a_->getTime(); }
    void setTime(double seconds) override {
        countAdaptorSlot(24);
        a_->setTime(seconds);
    }
    void reservedNotify25(int value) override {
        countAdaptorSlot(25);
        a_->reservedNotify25(value);
    }
    std::pair<double, double> getTimeRange() override { return countAdaptorSlot(26), a_->getTimeRange(); }
    void setTimeRange(std::pair<double, double> range) override {
        countAdaptorSlot(27);
        a_->setTimeRange(range);
    }
    double getFrameRate() override { return countAdaptorSlot(28), a_->getFrameRate(); }
    double getFrameDuration() override { return countAdaptorSlot(29), a_->getFrameDuration(); }
    void refreshScene() override {
        countAdaptorSlot(30);
        a_->refreshScene();
    }
    void reservedNotify31() override {
        countAdaptorSlot(31);
        a_->reservedNotify31();
    }
    void reservedNotify32() override {
        countAdaptorSlot(32);
        a_->reservedNotify32();
    }
    int prepareDirectRecording(util::ReturnValue<MasterList>* masters) override {
        return countAdaptorSlot(33), a_->prepareDirectRecording(masters);
    }
    int prepareCacheRecording(void* argument) override {
        return countAdaptorSlot(34), a_->prepareCacheRecording(argument);
    }
    int stopRecording() override { return countAdaptorSlot(35), a_->stopRecording(); }
    int reservedQuery36() override { return countAdaptorSlot(36), a_->reservedQuery36(); }
    int getAdaptorData(util::ReturnValue<util::xml::Element>* data) override {
        return countAdaptorSlot(37), a_->getAdaptorData(data);
    }
    void reservedNotify38(int value) override {
        countAdaptorSlot(38);
        a_->reservedNotify38(value);
    }

private:
    AdaptorInterface* a_;
};

// A node's operations, each counted, then called.
class NodeCalls {
public:
    explicit NodeCalls(CoreNode* node) : n_(node) {}

    std::intptr_t executeExtension(int code, void* argument) {
        return count(NodeOp::executeExtension), n_->executeExtension(code, argument);
    }
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) {
        return count(NodeOp::getSupportedExtensions), n_->getSupportedExtensions(codes);
    }
    bool isExtensionSupported(int code) { return count(NodeOp::isExtensionSupported), n_->isExtensionSupported(code); }
    int show() { return count(NodeOp::show), n_->show(); }
    int hide() { return count(NodeOp::hide), n_->hide(); }
    bool isVisible() { return count(NodeOp::isVisible), n_->isVisible(); }
    int select() { return count(NodeOp::select), n_->select(); }
    bool isReleased() { return count(NodeOp::isReleased), n_->isReleased(); }
    CoreNode* acquireParent() { return count(NodeOp::acquireParent), n_->acquireParent(); }
    std::int32_t getChildCount() { return count(NodeOp::getChildCount), n_->getChildCount(); }
    CoreNode* acquireChild(std::int32_t i) { return count(NodeOp::acquireChild), n_->acquireChild(i); }
    void releaseNode(CoreNode* node) { count(NodeOp::releaseNode), n_->releaseNode(node); }
    // Gives the node back through its destructor rather than release.
    void destroy() { count(NodeOp::destroy), delete n_; }
    void* getExtension(const std::string& key) { return count(NodeOp::getExtension), n_->getExtension(key); }
    void exportExtensions(CExtensionVisitor* v) { count(NodeOp::exportExtensions), n_->exportExtensions(v); }
    void release() { count(NodeOp::release), n_->release(); }
    CoreNode* reacquire(CMaster* m, const std::string& name) { return count(NodeOp::reacquire), n_->reacquire(m, name); }
    void detach() { count(NodeOp::detach), n_->detach(); }
    CTransformSnapshot* acquireSnapshot(double t) { return count(NodeOp::acquireSnapshot), n_->acquireSnapshot(t); }
    CHelperSnapshot* createHelperSnapshot() { return count(NodeOp::createHelperSnapshot), n_->createHelperSnapshot(); }
    CMeshSnapshot* acquireMeshSnapshot(double t) {
        return count(NodeOp::acquireMeshSnapshot), n_->acquireMeshSnapshot(t);
    }
    CLensSnapshot* acquireLensSnapshot(double t) {
        return count(NodeOp::acquireLensSnapshot), n_->acquireLensSnapshot(t);
    }
    CShapeSnapshot* acquireShape(double t) { return count(NodeOp::acquireShape), n_->acquireShape(t); }
    void releaseShape(CShapeSnapshot* s) { count(NodeOp::releaseShape), n_->releaseShape(s); }
    void releaseLensSnapshot(CLensSnapshot* s) { count(NodeOp::releaseLensSnapshot), n_->releaseLensSnapshot(s); }
    void releaseMeshSnapshot(CMeshSnapshot* s) { count(NodeOp::releaseMeshSnapshot), n_->releaseMeshSnapshot(s); }
    void releaseHelperSnapshot(CHelperSnapshot* s) {
        count(NodeOp::releaseHelperSnapshot), n_->releaseHelperSnapshot(s);
    }
    void releaseSnapshot(CTransformSnapshot* s) { count(NodeOp::releaseSnapshot), n_->releaseSnapshot(s); }
    bool isSameNode(CoreNode* other) { return count(NodeOp::isSameNode), n_->isSameNode(other); }
    int setParent(CoreNode* parent) { return count(NodeOp::setParent), n_->setParent(parent); }
    int truncateKeys(double t) { return count(NodeOp::truncateKeys), n_->truncateKeys(t); }
    int setName(const std::string& name) { return count(NodeOp::setName), n_->setName(name); }
    std::string getName() { return count(NodeOp::getName), n_->getName(); }
    int deleteNode(bool removeObject) { return count(NodeOp::deleteNode), n_->deleteNode(removeObject); }
    CoreNode* cloneNode(bool withChildren) { return count(NodeOp::cloneNode), n_->cloneNode(withChildren); }

private:
    static void count(NodeOp op) { countNodeOp(op); }
    CoreNode* n_;
};

// The three operations every snapshot kind begins with; `First` is the
// kind's first row among the snapshot rows.
template <class Snapshot, int First>
class SnapshotCalls {
public:
    explicit SnapshotCalls(Snapshot* s) : s_(s) {}
    std::intptr_t executeExtension(int code, void* argument) {
        return countSnapshotOp(First), s_->executeExtension(code, argument);
    }
    std::vector<int>& getSupportedExtensions(std::vector<int>& codes) {
        return countSnapshotOp(First + 1), s_->getSupportedExtensions(codes);
    }
    bool isExtensionSupported(int code) { return countSnapshotOp(First + 2), s_->isExtensionSupported(code); }

protected:
    static void count(int own) { countSnapshotOp(First + 3 + own); }
    Snapshot* s_;
};

class TransformCalls : public SnapshotCalls<CTransformSnapshot, 0> {
public:
    using SnapshotCalls::SnapshotCalls;
    void setLocalMatrix(const util::Matrix4d& m) { count(0), s_->setLocalMatrix(m); }
    util::Matrix4d getLocalMatrix() { return count(1), s_->getLocalMatrix(); }
    util::Matrix4d getGlobalMatrix() { return count(2), s_->getGlobalMatrix(); }
    void setGlobalMatrix(const util::Matrix4d& m) { count(3), s_->setGlobalMatrix(m); }
    double getTime() { return count(4), s_->getTime(); }
};

class LensCalls : public SnapshotCalls<CLensSnapshot, 8> {
public:
    using SnapshotCalls::SnapshotCalls;
    void setFov(double degrees) { count(0), s_->setFov(degrees); }
    double getFov() { return count(1), s_->getFov(); }
    std::int32_t getFovType() { return count(2), s_->getFovType(); }
    void setFovType(std::int32_t type) { count(3), s_->setFovType(type); }
    void setLensValue(double value) { count(4), s_->setLensValue(value); }
    double getLensValue() { return count(5), s_->getLensValue(); }
    double getTime() { return count(6), s_->getTime(); }
    util::Matrix4d& getPerspective(util::Matrix4d& result) { return count(7), s_->getPerspective(result); }
};

class ShapeCalls : public SnapshotCalls<CShapeSnapshot, 19> {
public:
    using SnapshotCalls::SnapshotCalls;
    std::int32_t getShapeKind() { return count(0), s_->getShapeKind(); }
    std::int32_t getShapeIndex() { return count(1), s_->getShapeIndex(); }
    void setShapeIndex(std::int32_t index) { count(2), s_->setShapeIndex(index); }
    double getLength() { return count(3), s_->getLength(); }
    util::Vec3d getPoint(double offset) { return count(4), s_->getPoint(offset); }
    util::Vec3d getTangent(double offset) { return count(5), s_->getTangent(offset); }
};

class MeshCalls : public SnapshotCalls<CMeshSnapshot, 28> {
public:
    using SnapshotCalls::SnapshotCalls;
    void setMesh(const util::CMesh& mesh) { count(0), s_->setMesh(mesh); }
    util::CMesh getMeshValue() { return count(1), s_->getMeshValue(); }
    bool intersectRay(const double* origin, const double* direction, double* distance, double* hit) {
        return count(2), s_->intersectRay(origin, direction, distance, hit);
    }
    bool getMesh(util::ReturnValue<util::CMesh>* result) { return count(3), s_->getMesh(result); }
};

class HelperCalls : public SnapshotCalls<CHelperSnapshot, 35> {
public:
    using SnapshotCalls::SnapshotCalls;
    void setHelperMesh(const util::CMesh& mesh) { count(0), s_->setHelperMesh(mesh); }
    void setHelperColor(float r, float g, float b) { count(1), s_->setHelperColor(r, g, b); }
    void setWireframeMode(bool on) { count(2), s_->setWireframeMode(on); }
    void setBackfaceCulling(bool on) { count(3), s_->setBackfaceCulling(on); }
};
constexpr int kSnapshotRows = 42;

inline NodeCalls on(CoreNode* node) { return NodeCalls(node); }
inline TransformCalls on(CTransformSnapshot* s) { return TransformCalls(s); }
inline LensCalls on(CLensSnapshot* s) { return LensCalls(s); }
inline ShapeCalls on(CShapeSnapshot* s) { return ShapeCalls(s); }
inline MeshCalls on(CMeshSnapshot* s) { return MeshCalls(s); }
inline HelperCalls on(CHelperSnapshot* s) { return HelperCalls(s); }

}  // namespace tvr::plr::core::sample
