#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <utility>

#include "host_api/c4d.h"

namespace {

// Numerator and denominator of a time, for comparing both at once.
std::pair<LReal, LReal> fraction(const BaseTime& t) { return {t.GetNumerator(), t.GetDenominator()}; }

TEST(BaseTime, SecondsRoundToMillisecondsAndReduce) {
  EXPECT_EQ(fraction(BaseTime(1.5f)), std::make_pair(3.0, 2.0));
  EXPECT_DOUBLE_EQ(BaseTime(1.5f).Get(), 1.5);
  EXPECT_EQ(fraction(BaseTime(2.0004f)), std::make_pair(2.0, 1.0));    // 2000.4 ms rounds to 2000
  EXPECT_EQ(fraction(BaseTime(0.0015f)), std::make_pair(1.0, 500.0));  // 1.5 ms rounds up, 2/1000 reduces
  EXPECT_DOUBLE_EQ(BaseTime(1e16f).Get(), BaseTime(1e15f).Get());
  EXPECT_DOUBLE_EQ(BaseTime(-1e16f).Get(), BaseTime(-1e15f).Get());
  EXPECT_DOUBLE_EQ(BaseTime(NAN).Get(), 0.0);
}

TEST(BaseTime, HalvesRoundUpOnTheSinglePrecisionProduct) {
  // 0.0025f times 1000 is 2.5 in single precision but 2.4999999 in double: the product is
  // single, and a half rounds up (toward +infinity, also below zero).
  EXPECT_EQ(fraction(BaseTime(0.0025f)), std::make_pair(3.0, 1000.0));
  EXPECT_EQ(fraction(BaseTime(-0.0015f)), std::make_pair(-1.0, 1000.0));
  EXPECT_EQ(fraction(BaseTime(-0.0005f)), std::make_pair(0.0, 1.0));
  EXPECT_EQ(fraction(BaseTime(-2.0004f)), std::make_pair(-2.0, 1.0));
  // Frames: a time exactly between two frames is the earlier one above zero and the later one
  // below it (truncation toward zero), so -1/60 s is frame 0 at 30 fps.
  EXPECT_EQ(BaseTime(1, 60).GetFrame(30), 0);
  EXPECT_EQ(BaseTime(-1, 60).GetFrame(30), 0);
  EXPECT_EQ(BaseTime(-3, 60).GetFrame(30), -1);
  EXPECT_EQ(BaseTime(-2, 60).GetFrame(30), -1);
  EXPECT_EQ(BaseTime(-1, 1000).GetFrame(30), 0);
}

TEST(BaseTime, FractionFormAndFrames) {
  EXPECT_EQ(fraction(BaseTime(2.6, 3.4)), std::make_pair(3.0, 3.0));  // both rounded, not reduced
  EXPECT_EQ(BaseTime(1.5f).GetFrame(30), 45);
  EXPECT_EQ(BaseTime(1, 3).GetFrame(25), 8);       // 8.33 frames
  EXPECT_EQ(BaseTime(-0.01f).GetFrame(30), 0);     // -0.3 truncates toward zero
  EXPECT_EQ(BaseTime(-0.05f).GetFrame(30), -1);    // -1.5 truncates to -1
  EXPECT_TRUE(BaseTime(1, 2) == BaseTime(500, 1000));
  EXPECT_TRUE(BaseTime(1, 3) < BaseTime(0.334f));
  EXPECT_DOUBLE_EQ((BaseTime(1, 3) + BaseTime(1, 6)).Get(), 0.5);
  EXPECT_EQ(BaseTime(7, 0).GetDenominator(), 1);  // no division by zero
}

TEST(BaseContainer, KeepsInsertionOrderAndTypedDefaults) {
  BaseContainer bc;
  bc.SetLong(30, 1);
  bc.SetString(10, "ten");
  bc.SetReal(20, 2.5f);
  bc.SetLong(30, 3);  // replacing keeps the place
  EXPECT_EQ(bc.GetIndexId(0), 30);
  EXPECT_EQ(bc.GetIndexId(1), 10);
  EXPECT_EQ(bc.GetIndexId(2), 20);
  EXPECT_EQ(bc.GetIndexId(3), NOTOK);
  EXPECT_EQ(bc.GetLong(30), 3);

  EXPECT_EQ(bc.GetLong(99), 0);
  EXPECT_EQ(bc.GetLong(99, 7), 7);
  EXPECT_EQ(bc.GetLong(10), 0);  // a string is not a LONG
  EXPECT_EQ(bc.GetReal(30), 0.0f);
  EXPECT_EQ(bc.GetString(20).ToStd(), "");
  EXPECT_EQ(bc.GetVoid(10), nullptr);
  EXPECT_EQ(bc.GetData(99).GetType(), DA_NIL);
  EXPECT_EQ(bc.GetLong(10, 7), 7);  // another type answers the default too
  EXPECT_EQ(bc.GetLink(30, nullptr), nullptr);
  EXPECT_EQ(bc.GetBaseLink(10), nullptr);
  EXPECT_TRUE(bc.GetVector(30) == Vector());
  EXPECT_EQ(bc.GetTime(20).Get(), 0.0);
  EXPECT_FALSE(bc.GetBool(20));

  BaseContainer copy = bc;
  EXPECT_TRUE(copy == bc);
  EXPECT_TRUE(copy.RemoveData(10));
  EXPECT_FALSE(copy.RemoveData(10));
  EXPECT_FALSE(copy == bc);
  EXPECT_EQ(copy.GetIndexId(1), 20);
}

TEST(GeData, HoldsOneTypeAndAnswersZeroForOthers) {
  EXPECT_EQ(GeData().GetType(), DA_NIL);
  EXPECT_EQ(GeData(5).GetType(), DA_LONG);
  EXPECT_EQ(GeData(true).GetLong(), 1);
  EXPECT_EQ(GeData(0.5f).GetType(), DA_REAL);
  EXPECT_EQ(GeData(0.5).GetType(), DA_LREAL);
  EXPECT_EQ(GeData("x").GetType(), DA_STRING);
  EXPECT_EQ(GeData(Vector(1, 2, 3)).GetVector(), Vector(1, 2, 3));
  EXPECT_EQ(GeData(0.5f).GetLReal(), 0.0);
  EXPECT_EQ(GeData(Vector(1, 2, 3)).GetReal(), 0.0f);
  int x = 0;
  EXPECT_EQ(GeData(static_cast<void*>(&x)).GetVoid(), &x);
  EXPECT_TRUE(GeData(3) == GeData(3));
  EXPECT_FALSE(GeData(3) == GeData(3.0f));
}

Matrix expectedHpb(double h, double p, double b) {
  const double ch = std::cos(h), sh = std::sin(h), cp = std::cos(p), sp = std::sin(p), cb = std::cos(b),
               sb = std::sin(b);
  return Matrix(Vector(), Vector(Real(cb * ch - sb * sp * sh), Real(-sb * cp), Real(cb * sh + sb * sp * ch)),
                Vector(Real(sb * ch + cb * sp * sh), Real(cb * cp), Real(sb * sh - cb * sp * ch)),
                Vector(Real(-cp * sh), Real(sp), Real(cp * ch)));
}

void expectNear(const Vector& a, const Vector& b, float eps) {
  EXPECT_NEAR(a.x, b.x, eps);
  EXPECT_NEAR(a.y, b.y, eps);
  EXPECT_NEAR(a.z, b.z, eps);
}

void expectNear(const Matrix& a, const Matrix& b, float eps) {
  for (const Vector Matrix::*axis : {&Matrix::off, &Matrix::v1, &Matrix::v2, &Matrix::v3})
    expectNear(a.*axis, b.*axis, eps);
}

TEST(Rotation, HpbMatrixAndBackOnRandomAngles) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> heading(0.0f, 6.28f), pitch(-1.5f, 1.5f), bank(-3.1f, 3.1f);
  for (int i = 0; i < 200; ++i) {
    const Vector hpb(heading(rng), pitch(rng), bank(rng));
    const Matrix m = HPBToMatrix(hpb, ROTATIONORDER_HPB);
    expectNear(m, expectedHpb(hpb.x, hpb.y, hpb.z), 1e-5f);
    const Vector back = MatrixToHPB(m, ROTATIONORDER_HPB);
    EXPECT_GE(back.x, 0.0f);
    EXPECT_LT(double(back.x), 6.283185307179586);
    expectNear(HPBToMatrix(back), m, 2e-5f);
  }
  // Scaled axes are normalised first; a negative heading comes back in [0, 2*pi).
  Matrix scaled = HPBToMatrix(Vector(-0.5f, 0.2f, 0.1f));
  scaled.v1 *= 3;
  scaled.v3 *= 0.5f;
  expectNear(MatrixToHPB(scaled), Vector(6.2831853f - 0.5f, 0.2f, 0.1f), 1e-4f);
  // A heading a hair below zero stays below 2*pi after rounding to single precision.
  EXPECT_LT(double(MatrixToHPB(HPBToMatrix(Vector(-1e-8f, 0, 0))).x), 6.283185307179586);
  // Gimbal lock still gives a matrix that reproduces the rotation.
  const Matrix locked = HPBToMatrix(Vector(0.3f, 1.5707964f, 0.0f));
  expectNear(HPBToMatrix(MatrixToHPB(locked)), locked, 1e-4f);
}

constexpr double kPi = 3.14159265358979323846;

// The textbook inverse on axes normalised in double: pitch from the Y of the Z axis, heading and
// bank from the entries that carry cos(pitch).
Vector referenceHpb(const Matrix& m) {
  auto unit = [](const Vector& v, double out[3]) {
    const double l = std::sqrt(double(v.x) * v.x + double(v.y) * v.y + double(v.z) * v.z);
    out[0] = v.x / l;
    out[1] = v.y / l;
    out[2] = v.z / l;
  };
  double v1[3], v2[3], v3[3];
  unit(m.v1, v1);
  unit(m.v2, v2);
  unit(m.v3, v3);
  double h = std::atan2(-v3[0], v3[2]);
  if (h < 0) h += 2 * kPi;
  return Vector(Real(h), Real(std::asin(v3[1])), Real(std::atan2(-v1[1], v2[1])));
}

TEST(Rotation, NearThePoleHeadingAndBankStaySeparate) {
  for (double sign : {1.0, -1.0})
    for (double off : {1e-4, 3e-5, 1e-6, 2e-7})
      for (const Vector hb : {Vector(0.7f, 0, -2.5f), Vector(4.0f, 0, 0.3f)}) {
        const Real pitch = Real(sign * (kPi / 2 - off));
        const Matrix m = HPBToMatrix(Vector(hb.x, pitch, hb.z));
        const Vector got = MatrixToHPB(m), want = referenceHpb(m);
        SCOPED_TRACE(::testing::Message() << "pitch " << pitch << " heading " << hb.x << " bank " << hb.z);
        EXPECT_NEAR(got.x, want.x, 1e-9);
        EXPECT_NEAR(got.y, want.y, 1e-9);
        EXPECT_NEAR(got.z, want.z, 1e-9);
        EXPECT_NEAR(got.y, pitch, 3e-7);  // the pitch itself, not rounded onto the pole
      }
  // Exactly at the pole only the sum is known: all of it goes into the heading.
  const double h = 0.4;
  const Matrix pole(Vector(), Vector(Real(std::cos(h)), 0, Real(std::sin(h))),
                    Vector(Real(std::sin(h)), 0, Real(-std::cos(h))), Vector(0, 1, 0));
  expectNear(MatrixToHPB(pole), Vector(0.4f, Real(kPi / 2), 0), 1e-6f);
}

TEST(Matrix, ProductInverseAndPointMapping) {
  Matrix a = HPBToMatrix(Vector(0.4f, -0.3f, 1.2f));
  a.off = Vector(1, 2, 3);
  a.v2 *= 2.0f;
  Matrix b = HPBToMatrix(Vector(2.0f, 0.1f, -0.7f));
  b.off = Vector(-5, 0.5f, 4);
  const Vector p(0.25f, -1.5f, 2.0f);
  expectNear((a * b) * p, a * (b * p), 1e-4f);
  expectNear(a * !a, Matrix(), 1e-5f);
  expectNear(!a * (a * p), p, 1e-4f);
  EXPECT_EQ(!Matrix(Vector(), Vector(), Vector(0, 1, 0), Vector(0, 0, 1)), Matrix());  // singular: identity
  EXPECT_EQ(Matrix(Vector(1, 1, 1), Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)) * Vector(1, 2, 3),
            Vector(2, 3, 4));
}

TEST(DescID, LevelsCompareByIdWithWildcardTypes) {
  const DescID posX(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_VECTOR, 0), DescLevel(VECTOR_X, DTYPE_REAL, 0));
  EXPECT_EQ(posX.GetDepth(), 2);
  EXPECT_EQ(posX[1].id, VECTOR_X);
  EXPECT_EQ(posX[5].id, 0);
  EXPECT_TRUE(posX == DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_X)));
  EXPECT_FALSE(posX == DescID(DescLevel(ID_BASEOBJECT_POSITION, DTYPE_REAL, 0), DescLevel(VECTOR_X)));
  EXPECT_FALSE(posX == DescID(DescLevel(ID_BASEOBJECT_POSITION)));
  EXPECT_FALSE(posX == DescID(DescLevel(ID_BASEOBJECT_POSITION), DescLevel(VECTOR_Y)));
}

TEST(Text, StringsAreExactAndFilenamesSplit) {
  const char utf8[] = "Gr\xC3\xBC\xC3\x9F" "e";
  String s(utf8);
  EXPECT_EQ(s.GetLength(), 7);
  char buf[5];
  EXPECT_EQ(s.GetCString(buf, sizeof buf), 4);
  EXPECT_STREQ(buf, "Gr\xC3\xBC");
  EXPECT_EQ(s.GetCString(buf, 0), 0);
  EXPECT_EQ(LongToString(-12).ToStd(), "-12");

  Filename f(String("C:\\plugins\\pelloran\\mod.cdl64"));
  EXPECT_EQ(f.GetFile().GetString().ToStd(), "mod.cdl64");
  EXPECT_EQ(f.GetDirectory().GetString().ToStd(), "C:\\plugins\\pelloran");
  EXPECT_EQ((Filename("/a/b") + Filename("c")).GetString().ToStd(), "/a/b/c");
  EXPECT_FALSE(Filename().Content());
}

}  // namespace
