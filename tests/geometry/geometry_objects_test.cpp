#include <cmath>
#include <limits>

#include "test_support/host_fixture.h"

namespace tvr::plr::embedded::testing {
namespace {

using GeometryObjectTest = HostTest;

void expectVector(const Vector& v, float x, float y, float z) {
  EXPECT_NEAR(v.x, x, 1e-5);
  EXPECT_NEAR(v.y, y, 1e-5);
  EXPECT_NEAR(v.z, z, 1e-5);
}

TEST_F(GeometryObjectTest, PolygonObjectsResizeClearAndCopy) {
  PolygonObject* poly = PolygonObject::Alloc(3, 1);
  ASSERT_NE(poly, nullptr);
  EXPECT_TRUE(poly->IsInstanceOf(Obase));
  EXPECT_EQ(poly->GetRealSpline(), nullptr);
  poly->GetPointW()[2] = Vector(1, 2, 3);
  poly->GetPolygonW()[0] = CPolygon(0, 1, 2);
  // Growing keeps what was there and zeroes the rest; shrinking cuts.
  ASSERT_TRUE(poly->ResizeObject(5, 2));
  EXPECT_EQ(poly->GetPointR()[2], Vector(1, 2, 3));
  EXPECT_EQ(poly->GetPointR()[4], Vector());
  EXPECT_EQ(poly->GetPolygonR()[0], CPolygon(0, 1, 2, 2));
  EXPECT_EQ(poly->GetPolygonR()[1], CPolygon());
  EXPECT_FALSE(poly->ResizeObject(-1, 0));
  EXPECT_FALSE(poly->ResizeObject(1 << 30, 0));  // refused, not attempted
  EXPECT_EQ(poly->GetPointCount(), 5);
  doc->InsertObject(poly, nullptr, nullptr);

  // The clone is deep; undo of a change brings the geometry back.
  BaseObject* clone = poly->GetClone(0, nullptr);
  doc->StartUndo();
  doc->AddUndo(UNDO_CHANGE, poly);
  EXPECT_FALSE(poly->ClearPart(0, 1));  // unknown flags change nothing
  EXPECT_FALSE(poly->ClearPart(2, 0));
  EXPECT_EQ(poly->GetPolygonCount(), 2);
  EXPECT_TRUE(poly->ClearPart(0, 0));
  EXPECT_EQ(poly->GetPolygonCount(), 0);
  EXPECT_EQ(poly->GetPointCount(), 5);
  EXPECT_TRUE(poly->ClearPart(1, 0));
  EXPECT_EQ(poly->GetPointCount(), 0);
  EXPECT_EQ(poly->GetPointR(), nullptr);
  doc->EndUndo();
  EXPECT_EQ(static_cast<PolygonObject*>(clone)->GetPointR()[2], Vector(1, 2, 3));
  ASSERT_TRUE(host.undo());
  ASSERT_EQ(poly->GetPointCount(), 5);
  EXPECT_EQ(poly->GetPointR()[2], Vector(1, 2, 3));
  EXPECT_EQ(poly->GetPolygonCount(), 2);
  ASSERT_TRUE(host.redo());
  EXPECT_EQ(poly->GetPointCount(), 0);
  BaseObject::Free(clone);
}

TEST_F(GeometryObjectTest, UVWTagHoldsFourVectorsPerPolygon) {
  PolygonObject* poly = PolygonObject::Alloc(4, 2);
  doc->InsertObject(poly, nullptr, nullptr);
  UVWTag* uvw = UVWTag::Alloc(2);
  ASSERT_NE(uvw, nullptr);
  poly->InsertTag(uvw);
  const UVWStruct s(Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 1, 0));
  uvw->SetSlow(1, s);
  uvw->SetSlow(2, s);   // outside: ignored
  uvw->SetSlow(-1, s);
  EXPECT_EQ(uvw->GetSlow(0), UVWStruct());
  EXPECT_EQ(uvw->GetSlow(9), UVWStruct());
  UVWStruct read;
  UVWTag::Get(uvw->GetDataAddressR(), 1, read);
  EXPECT_EQ(read, s);
  EXPECT_EQ(uvw->GetDataCount(), 2);
  // MakeTag gives an empty one; cloning the object copies the coordinates.
  BaseObject* clone = poly->GetClone(0, nullptr);
  EXPECT_EQ(static_cast<UVWTag*>(clone->GetTag(Tuvw))->GetSlow(1), s);
  BaseObject::Free(clone);
  EXPECT_EQ(static_cast<UVWTag*>(BaseObject::Alloc(Opolygon)->MakeTag(Tuvw))->GetDataCount(), 0);
  // The coordinates follow the polygons when the object is resized, kept where they fit, so a
  // reader walking the polygons never runs past them.
  ASSERT_TRUE(poly->ResizeObject(4, 1));
  EXPECT_EQ(uvw->GetDataCount(), 1);
  ASSERT_TRUE(poly->ResizeObject(4, 3));
  ASSERT_EQ(uvw->GetDataCount(), poly->GetPolygonCount());
  EXPECT_EQ(uvw->GetSlow(1), UVWStruct());
  for (LONG i = 0; i < poly->GetPolygonCount(); ++i) UVWTag::Get(uvw->GetDataAddressR(), i, read);
  ASSERT_TRUE(poly->ClearPart(0, 0));
  EXPECT_EQ(uvw->GetDataCount(), 0);
}

TEST_F(GeometryObjectTest, SplineMeasuresFollowSegments) {
  // Two segments: an open L of length 4 and a closed unit square.
  SplineObject* spline = SplineObject::Alloc(7);
  ASSERT_NE(spline, nullptr);
  EXPECT_EQ(spline->GetRealSpline(), spline);
  EXPECT_EQ(spline->GetSegmentCount(), 1);
  EXPECT_EQ(spline->GetSegmentR()[0].cnt, 7);
  const Vector pts[] = {{0, 0, 0}, {1, 0, 0}, {1, 3, 0}, {0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 1, 5}};
  for (int i = 0; i < 7; ++i) spline->GetPointW()[i] = pts[i];
  ASSERT_TRUE(spline->ResizeObject(7, 2));
  spline->GetSegmentW()[0] = Segment{3, false};
  spline->GetSegmentW()[1] = Segment{4, true};

  ASSERT_TRUE(spline->InitLength(1));
  EXPECT_FLOAT_EQ(spline->GetLength(), 4.0f);
  spline->FreeLength();
  EXPECT_FALSE(spline->InitLength(2));
  // Without InitLength the first segment is measured.
  EXPECT_FLOAT_EQ(spline->GetLength(), 4.0f);
  EXPECT_NEAR(spline->UniformToNatural(0.5f), 2.0f / 3.0f, 1e-6);

  expectVector(spline->GetSplinePoint(spline->UniformToNatural(0.5f), 0), 1, 1, 0);
  expectVector(spline->GetSplinePoint(0.875f, 1), 0, 0.5f, 5);  // on the closing edge
  expectVector(spline->GetSplineTangent(0.875f, 1), 0, -1, 0);
  expectVector(spline->GetSplinePoint(1.0f, 1), 0, 0, 5);  // a closed segment ends where it began
  expectVector(spline->GetSplinePoint(0.5f, 5), 0, 0, 0);  // no such segment

  // Segments that claim more points than exist end where the points do.
  spline->GetSegmentW()[1].cnt = 100;
  EXPECT_TRUE(spline->InitLength(1));
  EXPECT_FLOAT_EQ(spline->GetLength(), 4.0f);
  spline->SetClosed(false);
  EXPECT_FALSE(spline->GetSegmentR()[1].closed);
  EXPECT_TRUE(spline->InitLength(1));
  EXPECT_FLOAT_EQ(spline->GetLength(), 3.0f);
  BaseObject* op = spline;
  BaseObject::Free(op);
  EXPECT_EQ(BaseObject::Alloc(Onull)->GetRealSpline(), nullptr);
}

TEST_F(GeometryObjectTest, SplinesWithInfiniteOrNaNPointsStillAnswer) {
  SplineObject* spline = SplineObject::Alloc(3);
  doc->InsertObject(spline, nullptr, nullptr);
  for (const Real far : {std::numeric_limits<Real>::infinity(), std::numeric_limits<Real>::quiet_NaN()}) {
    spline->GetPointW()[1] = Vector(far, 0, 0);
    for (const Real u : {0.0f, 0.5f, 1.0f}) {
      EXPECT_FLOAT_EQ(spline->UniformToNatural(u), u) << far;  // no arc to measure along
      spline->GetSplinePoint(spline->UniformToNatural(u), 0);  // may be NaN, must not read past the table
    }
  }
}

TEST_F(GeometryObjectTest, RayColliderFindsTheNearestHitInObjectSpace) {
  // Two parallel quads at z = 1 and z = 3; the object is moved, which must not matter.
  PolygonObject* poly = PolygonObject::Alloc(8, 2);
  const Vector pts[] = {{-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}, {-1, -1, 3}, {1, -1, 3}, {1, 1, 3}, {-1, 1, 3}};
  for (int i = 0; i < 8; ++i) poly->GetPointW()[i] = pts[i];
  poly->GetPolygonW()[0] = CPolygon(4, 5, 6, 7);
  poly->GetPolygonW()[1] = CPolygon(0, 1, 2, 3);
  poly->SetPos(Vector(100, 0, 0));
  doc->InsertObject(poly, nullptr, nullptr);

  GeRayCollider* rc = GeRayCollider::Alloc();
  ASSERT_NE(rc, nullptr);
  EXPECT_FALSE(rc->Intersect(Vector(0, 0, 0), Vector(0, 0, 1), 10));  // not initialised
  EXPECT_FALSE(rc->Init(BaseObject::Alloc(Onull)));
  ASSERT_TRUE(rc->Init(poly));
  ASSERT_TRUE(rc->Intersect(Vector(0.5f, -0.5f, 0), Vector(0, 0, 2), 1e9f));
  EXPECT_EQ(rc->GetIntersectionCount(), 2);
  GeRayColResult hit;
  ASSERT_TRUE(rc->GetNearestIntersection(&hit));
  EXPECT_EQ(hit.face_id, 1);
  EXPECT_FLOAT_EQ(hit.distance, 1.0f);
  expectVector(hit.hitpos, 0.5f, -0.5f, 1);
  EXPECT_EQ(hit.tri_face_id, 1);  // first triangle (a, b, c)
  ASSERT_TRUE(rc->GetIntersection(1, &hit));
  EXPECT_EQ(hit.face_id, 0);
  EXPECT_FLOAT_EQ(hit.distance, 3.0f);
  EXPECT_FALSE(rc->GetIntersection(2, &hit));
  // The other half of a quadrangle is told apart.
  ASSERT_TRUE(rc->Intersect(Vector(-0.5f, 0.5f, 0), Vector(0, 0, 1), 2));
  ASSERT_TRUE(rc->GetNearestIntersection(&hit));
  EXPECT_EQ(hit.tri_face_id, -2);
  EXPECT_FALSE(rc->Intersect(Vector(5, 5, 0), Vector(0, 0, 1), 10));
  EXPECT_FALSE(rc->GetNearestIntersection(&hit));
  GeRayCollider::Free(rc);
  EXPECT_EQ(rc, nullptr);

  // Refilling the table, as shutdown does, keeps the collider's services.
  host.shutdown();
  EXPECT_NE(host.table().rayColliderAlloc, nullptr);
  EXPECT_NE(host.table().rayColliderFree, nullptr);
}

}  // namespace
}  // namespace tvr::plr::embedded::testing
