#include "util/matrix.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace tvr::util {
namespace {

TEST(MatrixTest, LayoutProductAndDeterminant) {
    Matrix4d t = Matrix4d::translation(1, 2, 3);
    EXPECT_EQ(&t(2, 3), &t.m[14]);
    Matrix4d s;
    s(0, 0) = 2;
    s(1, 1) = 3;
    s(2, 2) = 4;
    // Translate after scaling keeps (1,2,3); translate before scaling scales it.
    const Matrix4d ts = t * s;
    const Matrix4d st = s * t;
    EXPECT_EQ(std::vector<double>(ts.m + 12, ts.m + 15), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(std::vector<double>(st.m + 12, st.m + 15), (std::vector<double>{2, 6, 12}));

    Matrix4d cycle = Matrix4d::zero();  // odd permutation of four columns
    cycle(0, 1) = cycle(1, 2) = cycle(2, 3) = cycle(3, 0) = 1;
    EXPECT_EQ(cycle.determinant(), -1.0);
    const double values[16] = {2, 0, 1, 3, 1, 4, 0, 2, 0, 5, 3, 1, 7, 1, 2, 6};
    EXPECT_DOUBLE_EQ(Matrix4d(values).determinant(), -130.0);
}

TEST(MatrixTest, InverseOfRandomMatricesGivesIdentityProducts) {
    std::mt19937 rng(12345);
    std::uniform_real_distribution<double> entry(-1.0, 1.0);
    for (int n = 0; n < 200; ++n) {
        Matrix4d a;  // dominant diagonal: well conditioned
        for (int i = 0; i < 16; ++i) a.m[i] = entry(rng) + (i % 5 == 0 ? (entry(rng) < 0 ? -5 : 5) : 0);
        const Matrix4d left = a.inverse() * a;
        const Matrix4d right = a * a.inverse();
        for (int i = 0; i < 16; ++i) {
            ASSERT_NEAR(left.m[i], Matrix4d().m[i], 1e-12);
            ASSERT_NEAR(right.m[i], Matrix4d().m[i], 1e-12);
        }
    }
}

TEST(MatrixTest, InverseSpecialCases) {
    EXPECT_EQ(Matrix4d().inverse(), Matrix4d());
    EXPECT_EQ(Matrix4d::translation(1.5, -2, 8).inverse(), Matrix4d::translation(-1.5, 2, -8));

    Matrix4d zeroColumn = Matrix4d::translation(4, 5, 6);
    zeroColumn(2, 2) = 0.0;
    EXPECT_TRUE(zeroColumn.inverse().isZero());

    // Only an exact 0 counts as singular, however small the determinant.
    Matrix4d tiny;
    tiny(0, 0) = 1e-100;
    EXPECT_DOUBLE_EQ(tiny.inverse()(0, 0), 1e100);
}

}  // namespace
}  // namespace tvr::util
