// Transforms and lenses as the core reads and writes them: its axes (third
// axis negated), the unit factor on top-level objects, tracks evaluated and
// keyed while recording, and the snapshot pools.
#include <cmath>
#include <limits>

#include "core_api/csnapshot.h"
#include "node_fixture.h"
#include "nodes/core_axes.h"
#include "util/matrix.h"

namespace tvr::plr::adaptor::cinema4d::testing {
namespace {

using tvr::util::Matrix4d;

constexpr double kPi = 3.141592653589793;

void expectNear(const Matrix4d& actual, const Matrix4d& expected, double tolerance, const char* what) {
    for (int i = 0; i < 16; ++i) EXPECT_NEAR(actual.m[i], expected.m[i], tolerance) << what << ", entry " << i;
}

class TransformTest : public NodeTest {
protected:
    void setUnit(LONG unit) { host.world().SetLong(WPREF_UNITS_BASIC, unit); }

    // The transform snapshot of a node at a time; given back at the end of the test.
    CTransformSnapshot* snap(CC4DNode* node, double seconds = 0.0) {
        CTransformSnapshot* s = node->acquireSnapshot(seconds);
        EXPECT_NE(s, nullptr);
        return s;
    }
};

// A root object at (1, 2, 3) turned by heading 90 degrees, and its child at (4, 5, 6).
TEST_F(TransformTest, UnitFactorScalesTopLevelObjectsOnlyAndTruncates) {
    CC4DNode* root = camera("root");
    CC4DNode* child = camera("child", root);
    root->object()->SetPos(Vector(1, 2, 3));
    root->object()->SetRot(Vector(static_cast<Real>(kPi / 2), 0, 0));
    child->object()->SetPos(Vector(4, 5, 6));
    const Matrix4d hostRoot = fromHostMatrix(root->object()->GetMl());
    const Matrix4d hostChildGlobal = fromHostMatrix(child->object()->GetMg());
    const Matrix4d& Z = axisFlip();

    const struct {
        LONG unit;
        double s;
    } units[] = {{UNIT_M, 1.0}, {UNIT_CM, 100.0}, {UNIT_INCH, 0.0}, {7, 1.0}};
    for (const auto& u : units) {
        setUnit(u.unit);
        SCOPED_TRACE("unit " + std::to_string(u.unit));
        Matrix4d inverseS;
        for (int i = 0; i < 3; ++i) inverseS(i, i) = u.s == 0.0 ? 0.0 : 1.0 / u.s;
        if (u.s == 0.0) inverseS(3, 3) = 0.0;  // a singular S inverts to all zeros
        expectNear(snap(root)->getLocalMatrix(), inverseS * (Z * hostRoot * Z), 1e-6, "root local");
        expectNear(snap(root)->getGlobalMatrix(), inverseS * (Z * hostRoot * Z), 1e-6, "root global");
        // A child's local matrix is not scaled, its global one is.
        const Matrix4d childLocal = snap(child)->getLocalMatrix();
        EXPECT_DOUBLE_EQ(childLocal(0, 3), 4.0);
        EXPECT_DOUBLE_EQ(childLocal(2, 3), -6.0);
        expectNear(snap(child)->getGlobalMatrix(), inverseS * (Z * hostChildGlobal * Z), 1e-5, "child global");
    }
    setUnit(UNIT_INCH);
    EXPECT_TRUE(snap(root)->getLocalMatrix().isZero());

    // Centimetres: reading and writing back leaves the host matrix as it was.
    setUnit(UNIT_CM);
    CTransformSnapshot* s = snap(root);
    const Matrix before = root->object()->GetMl();
    s->setLocalMatrix(s->getLocalMatrix());
    const Matrix after = root->object()->GetMl();
    EXPECT_LT(Len(after.off - before.off), 1e-5f);
    EXPECT_LT(Len(after.v1 - before.v1), 1e-5f);
    EXPECT_LT(Len(after.v3 - before.v3), 1e-5f);

    // Written in the core's axes: a translation of z 2 metres lands at -200 cm.
    s->setGlobalMatrix(Matrix4d::translation(0, 0, 2));
    EXPECT_EQ(root->object()->GetMg().off, Vector(0, 0, -200));
    CTransformSnapshot* c = snap(child);
    c->setLocalMatrix(Matrix4d::translation(1, 0, 1));
    EXPECT_EQ(child->object()->GetMl().off, Vector(1, 0, -1));  // unscaled under a parent
}

TEST_F(TransformTest, MatricesTheHostCannotHoldAreRefusedAndLogged) {
    CC4DNode* cam = camera("cam");
    cam->object()->SetPos(Vector(1, 1, 1));
    const std::string scene = host.dump(doc);
    CTransformSnapshot* s = snap(cam);
    const auto mark = logMark();
    Matrix4d bad = Matrix4d::translation(0, 0, 0);
    bad(0, 3) = std::numeric_limits<double>::quiet_NaN();
    s->setLocalMatrix(bad);
    bad(0, 3) = std::numeric_limits<double>::infinity();
    s->setGlobalMatrix(bad);
    bad(0, 3) = 1e300;  // finite, but not in single precision
    s->setGlobalMatrix(bad);
    EXPECT_EQ(host.dump(doc), scene);
    EXPECT_NE(logSince(mark).find("(ERROR): setLocalMatrix: the matrix is not finite"), std::string::npos)
        << logSince(mark);
}

TEST_F(TransformTest, RecordingKeysTracksThatReadsThenEvaluate) {
    adaptor->recording = true;
    CC4DNode* parent = camera("parent");  // made while recording: eleven tracks, keyed at time 0
    CC4DNode* cam = camera("cam", parent);
    ASSERT_EQ(cam->trackList().size(), 11u);
    CCurve* px = cam->trackList()[0]->GetCurve(CCURVE_CURVE, false);
    ASSERT_NE(px, nullptr);
    EXPECT_EQ(px->GetKeyCount(), 1);
    EXPECT_EQ(cam->trackList()[6]->GetCurve(CCURVE_CURVE, false)->GetKey(0)->GetValue(), 1.0f);  // scale X
    EXPECT_EQ(cam->trackList()[9]->GetCurve(CCURVE_CURVE, true)->GetKeyCount(), 0);  // lens tracks unkeyed

    // Keys at 1 s move x to 10; evaluated halfway between with linear keys.
    CTransformSnapshot* at1 = snap(cam, 1.0);
    at1->setLocalMatrix(Matrix4d::translation(10, 0, 0));
    EXPECT_EQ(px->GetKeyCount(), 2);
    EXPECT_EQ(px->GetKey(1)->GetInterpolation(), CINTERPOLATION_LINEAR);
    EXPECT_NEAR(snap(cam, 0.5)->getLocalMatrix()(0, 3), 5.0, 1e-5);
    // The ancestor's tracks count as well: the parent moved to y 4 at 1 s.
    snap(parent, 1.0)->setGlobalMatrix(Matrix4d::translation(0, 4, 0));
    const Matrix4d global = snap(cam, 0.5)->getGlobalMatrix();
    // Centimetres by default, and S scales the parent's axes as well: its
    // scale runs from 1 to 100 over that second, 50.5 halfway.
    EXPECT_NEAR(global(0, 3), 5.0 * 50.5 / 100.0, 1e-5);
    EXPECT_NEAR(global(1, 3), 2.0, 1e-5);

    // Truncating at 0.5 s (no key there) drops the keys after it.
    EXPECT_EQ(cam->truncateKeys(0.5), 0);
    EXPECT_EQ(px->GetKeyCount(), 1);
    // Not recordable once marked not animated: truncation does nothing.
    at1->setLocalMatrix(Matrix4d::translation(10, 0, 0));
    cam->executeExtension(CC4DNode::kIsNotAnimated, nullptr);
    EXPECT_EQ(cam->truncateKeys(0.0), 0);
    EXPECT_EQ(px->GetKeyCount(), 2);

    // A track the user removed is not written through a stale pointer: keying
    // stops there, so x is keyed and z is not.
    CCurve* pz = cam->trackList()[2]->GetCurve(CCURVE_CURVE, true);
    CTrack* gone = cam->object()->FindCTrack(cam->trackIdList()[1]);
    CTrack::Free(gone);
    at1->setLocalMatrix(Matrix4d::translation(3, 3, 3));
    EXPECT_EQ(px->GetKeyCount(), 2);
    EXPECT_FLOAT_EQ(px->GetKey(1)->GetValue(), 3.0f);
    EXPECT_FLOAT_EQ(pz->GetKey(1)->GetValue(), 0.0f);
    adaptor->recording = false;
}

TEST_F(TransformTest, PreparingARecordingMakesTracksOnceAndRecordsTheObject) {
    CC4DNode* cam = camera("cam");
    EXPECT_TRUE(cam->trackList().empty());
    host.journal().clear();
    EXPECT_EQ(cam->prepareRecording(doc), 0);
    EXPECT_EQ(cam->trackList().size(), 11u);
    // One change record before each new track, then the object without children.
    const std::vector<std::string> undo = journal("AddUndo");
    ASSERT_EQ(undo.size(), 12u);
    EXPECT_EQ(undo[0], "40 object:5103 'Tool_cam'");
    EXPECT_EQ(undo[11], "41 object:5103 'Tool_cam'");
    const std::vector<CTrack*> first = cam->trackList();
    cam->prepareRecording(doc);
    EXPECT_EQ(cam->trackList(), first);  // found, not made again
    // Masterless nodes get no tracks.
    CC4DNode* bare = keep(adaptor->createCamera(nullptr, "bare", nullptr, nullptr));
    bare->prepareRecording(doc);
    EXPECT_TRUE(bare->trackList().empty());
}

TEST_F(TransformTest, LensValuesGoThroughSinglePrecisionOrKeys) {
    CC4DNode* cam = camera("cam");
    CC4DNode* plain = wrap(userObject("null"), "null");
    EXPECT_EQ(plain->acquireLensSnapshot(0), nullptr);
    CLensSnapshot* lens = cam->acquireLensSnapshot(0);
    ASSERT_NE(lens, nullptr);
    EXPECT_NEAR(lens->getFov(), 0.8575 * 180.0 / kPi, 1e-4);
    lens->setFov(90);
    GeData value;
    cam->object()->GetParameter(DescID(DescLevel(CAMERAOBJECT_FOV, DTYPE_REAL, 0)), value, 0);
    EXPECT_EQ(static_cast<double>(value.GetReal()), 1.5707963705062866);
    EXPECT_EQ(lens->getFov(), 90.0);  // 90.00000250447816 before the rounding
    lens->setLensValue(24.5);
    EXPECT_EQ(lens->getLensValue(), 24.5);
    EXPECT_EQ(lens->getFovType(), 0);
    Matrix4d perspective = Matrix4d::zero();
    EXPECT_EQ(lens->getPerspective(perspective), Matrix4d());

    // Recording: a linear key at the snapshot's time, the parameter untouched.
    cam->prepareRecording(doc);
    adaptor->recording = true;
    CLensSnapshot* later = cam->acquireLensSnapshot(2.0);
    later->setFov(45);
    CCurve* fov = cam->trackList()[9]->GetCurve(CCURVE_CURVE, false);
    ASSERT_EQ(fov->GetKeyCount(), 1);
    EXPECT_EQ(fov->GetKey(0)->GetTime(), BaseTime(2, 1));
    EXPECT_EQ(fov->GetKey(0)->GetValue(), static_cast<Real>(45 * 0.017453292519943295));
    EXPECT_EQ(later->getFov(), 90.0);
    adaptor->recording = false;
}

TEST_F(TransformTest, PoolsReuseTheLastFreeSnapshot) {
    CC4DNode* cam = camera("cam");
    CTransformSnapshot* a = cam->acquireSnapshot(0);
    CTransformSnapshot* b = cam->acquireSnapshot(0);
    CTransformSnapshot* c = cam->acquireSnapshot(0);
    EXPECT_NE(a, b);
    EXPECT_NE(b, c);
    cam->releaseSnapshot(b);
    cam->releaseSnapshot(nullptr);
    EXPECT_EQ(cam->acquireSnapshot(3.0), b);  // the free one in the middle
    EXPECT_EQ(b->getTime(), 3.0);
    CTransformSnapshot* d = cam->acquireSnapshot(0);  // none free: a new one
    EXPECT_NE(d, a);
    EXPECT_NE(d, b);
    EXPECT_NE(d, c);
    cam->releaseSnapshot(a);
    cam->releaseSnapshot(c);
    EXPECT_EQ(cam->acquireSnapshot(0), c);  // searched from the back

    CLensSnapshot* l1 = cam->acquireLensSnapshot(0);
    cam->releaseLensSnapshot(l1);
    EXPECT_EQ(cam->acquireLensSnapshot(1.0), l1);
    CShapeSnapshot* s1 = cam->acquireShape(0);
    CShapeSnapshot* s2 = cam->acquireShape(0);
    cam->releaseShape(s1);
    EXPECT_EQ(cam->acquireShape(0), s1);
    EXPECT_NE(s1, s2);
}

}  // namespace
}  // namespace tvr::plr::adaptor::cinema4d::testing
