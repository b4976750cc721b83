#include "util/matrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tvr::util {
namespace {

void expectNear(const Matrix4d& a, const Matrix4d& b, double tolerance) {
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(a.m[i], b.m[i], tolerance) << "entry " << i;
    }
}

// Random entries in [-1, 1] with a dominant diagonal: well conditioned.
Matrix4d randomWellConditioned(std::mt19937& rng) {
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    Matrix4d a;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            a(r, c) = entry(rng) + (r == c ? (entry(rng) < 0 ? -5.0 : 5.0) : 0.0);
        }
    }
    return a;
}

TEST(MatrixTest, LayoutAndProductOrder) {
    const Matrix4d identity;
    EXPECT_EQ(identity.m[0], 1.0);
    EXPECT_EQ(identity.m[5], 1.0);
    EXPECT_EQ(identity.m[1], 0.0);

    Matrix4d t = Matrix4d::translation(1, 2, 3);
    EXPECT_EQ(t(0, 3), 1.0);
    EXPECT_EQ(t.m[13], 2.0);
    EXPECT_EQ(&t(2, 3), &t.m[14]);

    Matrix4d s;
    s(0, 0) = 2;
    s(1, 1) = 3;
    s(2, 2) = 4;
    // Scale then translate keeps the translation; translate then scale scales it.
    const Matrix4d ts = t * s;
    const Matrix4d st = s * t;
    EXPECT_EQ(ts.m[12], 1.0);
    EXPECT_EQ(ts.m[13], 2.0);
    EXPECT_EQ(ts.m[14], 3.0);
    EXPECT_EQ(st.m[12], 2.0);
    EXPECT_EQ(st.m[13], 6.0);
    EXPECT_EQ(st.m[14], 12.0);
    EXPECT_EQ(ts(1, 1), 3.0);

    Matrix4d a = t;
    a = a * Matrix4d::translation(4, 5, 6);
    EXPECT_EQ(a, Matrix4d::translation(5, 7, 9));
}

TEST(MatrixTest, DeterminantKnownValues) {
    EXPECT_EQ(Matrix4d().determinant(), 1.0);

    // Swapping two columns of the identity: an odd permutation.
    Matrix4d swapped = Matrix4d::zero();
    swapped(0, 1) = 1;
    swapped(1, 0) = 1;
    swapped(2, 2) = 1;
    swapped(3, 3) = 1;
    EXPECT_EQ(swapped.determinant(), -1.0);

    // A cyclic shift of four is odd as well.
    Matrix4d cycle = Matrix4d::zero();
    cycle(0, 1) = cycle(1, 2) = cycle(2, 3) = cycle(3, 0) = 1;
    EXPECT_EQ(cycle.determinant(), -1.0);

    const double values[16] = {2, 0, 1, 3, 1, 4, 0, 2, 0, 5, 3, 1, 7, 1, 2, 6};
    EXPECT_DOUBLE_EQ(Matrix4d(values).determinant(), -130.0);

    std::mt19937 rng(7);
    for (int i = 0; i < 50; ++i) {
        const Matrix4d a = randomWellConditioned(rng);
        const Matrix4d b = randomWellConditioned(rng);
        const double expected = a.determinant() * b.determinant();
        EXPECT_NEAR((a * b).determinant(), expected, 1e-9 * std::fabs(expected));
    }
}

TEST(MatrixTest, InverseOfRandomMatricesGivesIdentityProducts) {
    std::mt19937 rng(12345);
    for (int i = 0; i < 200; ++i) {
        const Matrix4d a = randomWellConditioned(rng);
        const Matrix4d inv = a.inverse();
        ASSERT_FALSE(inv.isZero());
        expectNear(a * inv, Matrix4d(), 1e-12);
        expectNear(inv * a, Matrix4d(), 1e-12);
    }
}

TEST(MatrixTest, InverseSpecialCases) {
    EXPECT_EQ(Matrix4d().inverse(), Matrix4d());
    EXPECT_EQ(Matrix4d::translation(1.5, -2, 8).inverse(), Matrix4d::translation(-1.5, 2, -8));

    Matrix4d zeroColumn;
    zeroColumn(0, 3) = 4;
    for (int r = 0; r < 4; ++r) {
        zeroColumn(r, 2) = 0.0;
    }
    EXPECT_TRUE(zeroColumn.inverse().isZero());
    EXPECT_TRUE(Matrix4d::zero().inverse().isZero());

    // Only an exact 0 counts as singular, however small the determinant.
    Matrix4d tiny;
    tiny(0, 0) = 1e-100;
    const Matrix4d inv = tiny.inverse();
    EXPECT_FALSE(inv.isZero());
    EXPECT_DOUBLE_EQ(inv(0, 0), 1e100);
}

}  // namespace
}  // namespace tvr::util
