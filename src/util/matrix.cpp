#include "util/matrix.h"

#include <algorithm>
#include <iterator>

namespace tvr::util {

namespace {

// The 24 permutations of {0,1,2,3} with their signs: column index per row.
struct Permutation {
    int column[4];
    int sign;
};

constexpr Permutation kPermutations[24] = {
    {{0, 1, 2, 3}, +1}, {{0, 1, 3, 2}, -1}, {{0, 2, 1, 3}, -1}, {{0, 2, 3, 1}, +1}, {{0, 3, 1, 2}, +1},
    {{0, 3, 2, 1}, -1}, {{1, 0, 2, 3}, -1}, {{1, 0, 3, 2}, +1}, {{1, 2, 0, 3}, +1}, {{1, 2, 3, 0}, -1},
    {{1, 3, 0, 2}, -1}, {{1, 3, 2, 0}, +1}, {{2, 0, 1, 3}, +1}, {{2, 0, 3, 1}, -1}, {{2, 1, 0, 3}, -1},
    {{2, 1, 3, 0}, +1}, {{2, 3, 0, 1}, +1}, {{2, 3, 1, 0}, -1}, {{3, 0, 1, 2}, -1}, {{3, 0, 2, 1}, +1},
    {{3, 1, 0, 2}, +1}, {{3, 1, 2, 0}, -1}, {{3, 2, 0, 1}, -1}, {{3, 2, 1, 0}, +1},
};

// Determinant of the 3x3 minor of `a` without row `skipRow` and column `skipColumn`,
// written out in full.
double minor3(const Matrix4d& a, int skipRow, int skipColumn) {
    int r[3];
    int c[3];
    for (int i = 0, n = 0; i < 4; ++i) {
        if (i != skipRow) {
            r[n++] = i;
        }
    }
    for (int i = 0, n = 0; i < 4; ++i) {
        if (i != skipColumn) {
            c[n++] = i;
        }
    }
    return a(r[0], c[0]) * a(r[1], c[1]) * a(r[2], c[2]) + a(r[0], c[1]) * a(r[1], c[2]) * a(r[2], c[0]) +
           a(r[0], c[2]) * a(r[1], c[0]) * a(r[2], c[1]) - a(r[0], c[2]) * a(r[1], c[1]) * a(r[2], c[0]) -
           a(r[0], c[1]) * a(r[1], c[0]) * a(r[2], c[2]) - a(r[0], c[0]) * a(r[1], c[2]) * a(r[2], c[1]);
}

}  // namespace

Matrix4d::Matrix4d() : m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}

Matrix4d::Matrix4d(const double (&columnMajor)[16]) {
    for (int i = 0; i < 16; ++i) {
        m[i] = columnMajor[i];
    }
}

Matrix4d Matrix4d::zero() {
    Matrix4d result;
    for (double& v : result.m) {
        v = 0.0;
    }
    return result;
}

Matrix4d Matrix4d::translation(double x, double y, double z) {
    Matrix4d result;
    result.m[12] = x;
    result.m[13] = y;
    result.m[14] = z;
    return result;
}

Matrix4d Matrix4d::operator*(const Matrix4d& rhs) const {
    // Into a temporary, so `a = a * b` reads only unchanged entries.
    Matrix4d product = zero();
    for (int c = 0; c < 4; ++c) {
        for (int r = 0; r < 4; ++r) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) {
                sum += (*this)(r, k) * rhs(k, c);
            }
            product(r, c) = sum;
        }
    }
    return product;
}

double Matrix4d::determinant() const {
    double det = 0.0;
    for (const Permutation& p : kPermutations) {
        det += p.sign *
               ((*this)(0, p.column[0]) * (*this)(1, p.column[1]) * (*this)(2, p.column[2]) * (*this)(3, p.column[3]));
    }
    return det;
}

Matrix4d Matrix4d::inverse() const {
    Matrix4d result = zero();
    const double det = determinant();
    if (det == 0.0) {
        return result;
    }
    const double scale = 1.0 / det;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            // Adjugate: the cofactor of the transposed position.
            const double sign = ((r + c) % 2 == 0) ? 1.0 : -1.0;
            result(r, c) = sign * minor3(*this, c, r) * scale;
        }
    }
    return result;
}

bool Matrix4d::isZero() const {
    return std::all_of(std::begin(m), std::end(m), [](double v) { return v == 0.0; });
}

bool Matrix4d::operator==(const Matrix4d& rhs) const {
    for (int i = 0; i < 16; ++i) {
        if (m[i] != rhs.m[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace tvr::util
