#include <algorithm>
#include <vector>

#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

const DescID kPosX(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0), DescLevel(VECTOR_X, DTYPE_REAL, 0));

class AnimationTest : public HostTest {
protected:
    void SetUp() override {
        op = add("animated");
        track = CTrack::Alloc(op, kPosX);
        op->InsertTrackSorted(track);
        curve = track->GetCurve(CCURVE_CURVE, true);
    }

    CKey* key(double seconds, Real value, LONG interpolation) {
        CKey* k = curve->AddKey(BaseTime(Real(seconds)));
        k->SetValue(curve, value);
        k->SetInterpolation(curve, interpolation);
        return k;
    }

    Real at(double seconds) { return track->GetValue(doc, BaseTime(Real(seconds)), 30); }

    BaseObject* op = nullptr;
    CTrack* track = nullptr;
    CCurve* curve = nullptr;
};

TEST_F(AnimationTest, KeysAndTracksStaySortedAndFindable) {
    key(2.0, 20, CINTERPOLATION_LINEAR);
    CKey* first = key(1.0, 10, CINTERPOLATION_LINEAR);
    key(3.0, 30, CINTERPOLATION_LINEAR);
    ASSERT_EQ(curve->GetKeyCount(), 3);
    EXPECT_EQ(curve->GetKey(0), first);

    LONG index = -5;
    EXPECT_EQ(curve->FindKey(BaseTime(3, 1), &index, FINDANIM_EXACT), curve->GetKey(2));
    EXPECT_EQ(index, 2);
    index = -7;
    EXPECT_EQ(curve->FindKey(BaseTime(2.5f), &index, FINDANIM_EXACT), nullptr);
    EXPECT_EQ(index, -7);  // untouched when not found, not where the key would go

    EXPECT_FALSE(curve->DelKey(3));
    EXPECT_FALSE(curve->DelKey(-1));
    EXPECT_TRUE(curve->DelKey(0));
    EXPECT_EQ(curve->GetKeyCount(), 2);
    EXPECT_EQ(track->GetCurve(99, true), nullptr);

    // Tracks sort by their id: position x, position z, rotation x.
    const DescID posZ{DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_Z)};
    const DescID rotX{DescLevel(ID_BASEOBJECT_ROTATION), DescLevel(VECTOR_X)};
    CTrack* r = CTrack::Alloc(op, rotX);
    CTrack* z = CTrack::Alloc(op, posZ);
    op->InsertTrackSorted(r);
    op->InsertTrackSorted(z);
    EXPECT_EQ(op->GetFirstCTrack(), track);
    EXPECT_EQ(track->GetNext(), z);
    EXPECT_EQ(z->GetNext(), r);
    EXPECT_EQ(op->FindCTrack(rotX), r);
    EXPECT_EQ(op->FindCTrack(DescID(DescLevel(ID_BASEOBJECT_SCALE), DescLevel(VECTOR_X))), nullptr);
}

// Keys arrive in any order, as fractions of any denominator; a recording appends most of them.
TEST_F(AnimationTest, KeysArrivingInAnyOrderKeepTimeOrderAndTheirIndex) {
    const auto times = [&] {
        std::vector<double> out;
        for (LONG i = 0; i < curve->GetKeyCount(); ++i) out.push_back(curve->GetKey(i)->GetTime().Get());
        return out;
    };
    LONG index = -1;
    for (int frame = 0; frame < 40; frame += 2) {  // appended
        curve->AddKey(BaseTime(frame, 30), &index);
        EXPECT_EQ(index, frame / 2);
    }
    CKey* middle = curve->AddKey(BaseTime(11, 30), &index);  // between frames 10 and 12
    EXPECT_EQ(index, 6);
    EXPECT_EQ(curve->AddKey(BaseTime(22, 60), &index), middle);  // the same time, another denominator
    EXPECT_EQ(index, 6);
    curve->AddKey(BaseTime(-1, 30), &index);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(curve->GetKeyCount(), 22);
    // A time that is no plain fraction still goes where it belongs, and so do the keys after it.
    BaseTime odd;
    odd.SetNumerator(0.5);
    odd.SetDenominator(4);  // 0.125 s: between frames 2 and 4
    curve->AddKey(odd, &index);
    EXPECT_EQ(index, 3);
    curve->AddKey(BaseTime(5, 30), &index);
    EXPECT_EQ(index, 5);
    curve->AddKey(BaseTime(50, 30), &index);
    EXPECT_EQ(index, 24);
    const std::vector<double> t = times();
    EXPECT_TRUE(std::is_sorted(t.begin(), t.end()));
    // Moving a key reorders; later keys are found at their new places.
    curve->GetKey(0)->SetTime(curve, BaseTime(45, 30));
    EXPECT_EQ(curve->AddKey(BaseTime(45, 30), &index), curve->GetKey(23));
    EXPECT_EQ(index, 23);
}

// A long linear ramp: every time between keys is interpolated from its own two keys.
TEST_F(AnimationTest, ValuesOfALongCurveComeFromTheKeysAroundTheTime) {
    for (int frame = 0; frame <= 90; frame += 3) key(frame / 30.0, Real(frame), CINTERPOLATION_LINEAR);
    for (int frame = 0; frame <= 95; ++frame) {
        SCOPED_TRACE(frame);
        EXPECT_NEAR(track->GetValue(doc, BaseTime(frame, 30), 30), std::min(frame, 90), 1e-3);
    }
    EXPECT_NEAR(curve->GetValue(BaseTime(10, 30), 0), 10.0, 1e-3);  // no frame rate: at the time itself
}

TEST_F(AnimationTest, ValuesHoldOutsideAndInterpolateByTheLeftKey) {
    EXPECT_EQ(at(1.0), 0.0f);  // no keys
    key(1.0, 10, CINTERPOLATION_STEP);
    key(2.0, 20, CINTERPOLATION_LINEAR);
    key(3.0, 40, CINTERPOLATION_SPLINE);
    key(4.0, 10, CINTERPOLATION_LINEAR);
    EXPECT_FLOAT_EQ(at(0.0), 10);   // before the first key
    EXPECT_FLOAT_EQ(at(9.0), 10);   // after the last key
    EXPECT_FLOAT_EQ(at(1.9f), 10);  // step holds the left key
    EXPECT_FLOAT_EQ(at(2.0), 20);
    EXPECT_FLOAT_EQ(at(2.5), 30);  // linear
    // Spline from 3 to 4: a cubic Hermite with the tangent at 3 the slope from 2 to 4 ((10-20)/2 = -5) and a
    // flat one at the last key; halfway that is 40/2 - 5/8 + 10/2.
    const double expected = 24.375;
    EXPECT_NEAR(at(3.5), expected, 1e-4);
    EXPECT_NEAR(curve->GetValue(BaseTime(3.5f), 30), expected, 1e-4);
}

TEST_F(AnimationTest, EvaluationWritesTracksAtTheDocumentTime) {
    key(0.0, 0, CINTERPOLATION_LINEAR);
    key(1.0, 30, CINTERPOLATION_LINEAR);
    BaseObject* cam = add("cam", nullptr, nullptr, Ocamera);
    CTrack* fov = CTrack::Alloc(cam, DescID(DescLevel(CAMERAOBJECT_FOV)));
    cam->InsertTrackSorted(fov);
    CKey* k = fov->GetCurve()->AddKey(BaseTime(0.0f));
    k->SetValue(fov->GetCurve(), 1.25f);

    doc->SetTime(BaseTime(0.5f));
    EXPECT_TRUE(doc->ExecutePasses(nullptr, false, true, false));
    EXPECT_EQ(op->GetPos().x, 0.0f);  // no animation pass asked
    EXPECT_TRUE(doc->ExecutePasses(nullptr, true, false, false));
    EXPECT_FLOAT_EQ(op->GetPos().x, 15.0f);
    GeData d;
    cam->GetParameter(DescID(DescLevel(CAMERAOBJECT_FOV)), d, 0);
    EXPECT_FLOAT_EQ(d.GetReal(), 1.25f);

    // The event loop evaluates the active document when an event was posted.
    host.runCycle();  // the document's activation
    doc->SetTime(BaseTime(1.0f));
    host.runCycle();
    EXPECT_FLOAT_EQ(op->GetPos().x, 15.0f);  // nothing posted since
    EventAdd();
    host.runCycle();
    EXPECT_FLOAT_EQ(op->GetPos().x, 30.0f);
}

TEST_F(AnimationTest, SampledOnTheFrameGridOfTheGivenOrTheDocumentsRate) {
    key(0.0, 0, CINTERPOLATION_LINEAR);
    key(1.0, 30, CINTERPOLATION_LINEAR);
    const BaseTime t(0.55f);
    // 0.55 s falls in frame 16 at 30 fps (16/30 s) and in frame 13 at 25 fps (0.52 s).
    EXPECT_FLOAT_EQ(track->GetValue(doc, t, 30), 16.0f);
    EXPECT_FLOAT_EQ(track->GetValue(doc, t, 25), 15.6f);
    EXPECT_FLOAT_EQ(curve->GetValue(t, 25), 15.6f);
    EXPECT_FLOAT_EQ(track->GetValue(doc, t, 0), 16.0f);  // no rate given: the document's
    doc->SetFps(10);
    EXPECT_FLOAT_EQ(track->GetValue(doc, t, 0), 15.0f);
    // Evaluating the document samples at its own rate.
    doc->SetTime(t);
    ASSERT_TRUE(doc->ExecutePasses(nullptr, true, false, false));
    EXPECT_FLOAT_EQ(op->GetPos().x, 15.0f);
}

TEST_F(AnimationTest, TracksWithoutKeysLeaveTheirParametersAlone) {
    BaseObject* cam = add("cam", nullptr, nullptr, Ocamera);
    for (BaseObject* o : {cam, op})
        for (LONG id : {CAMERAOBJECT_FOV, CAMERAOBJECT_APERTURE})
            o->InsertTrackSorted(CTrack::Alloc(o, DescID(DescLevel(id))));
    op->SetPos(Vector(4, 0, 0));
    doc->SetTime(BaseTime(0.5f));
    ASSERT_TRUE(doc->ExecutePasses(nullptr, true, false, false));
    GeData d;
    ASSERT_TRUE(cam->GetParameter(DescID(DescLevel(CAMERAOBJECT_FOV)), d, 0));
    EXPECT_FLOAT_EQ(d.GetReal(), CAMERAOBJECT_FOV_DEFAULT);
    ASSERT_TRUE(cam->GetParameter(DescID(DescLevel(CAMERAOBJECT_APERTURE)), d, 0));
    EXPECT_FLOAT_EQ(d.GetReal(), CAMERAOBJECT_APERTURE_DEFAULT);
    EXPECT_FALSE(op->GetParameter(DescID(DescLevel(CAMERAOBJECT_FOV)), d, 0));  // nothing written
    EXPECT_EQ(op->GetPos().x, 4.0f);                                            // the position track has no keys either
    // One key and the track speaks.
    CTrack* fov = cam->FindCTrack(DescID(DescLevel(CAMERAOBJECT_FOV)));
    fov->GetCurve()->AddKey(BaseTime(0.0f))->SetValue(fov->GetCurve(), 1.5f);
    ASSERT_TRUE(doc->ExecutePasses(nullptr, true, false, false));
    ASSERT_TRUE(cam->GetParameter(DescID(DescLevel(CAMERAOBJECT_FOV)), d, 0));
    EXPECT_FLOAT_EQ(d.GetReal(), 1.5f);
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
