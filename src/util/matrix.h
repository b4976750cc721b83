// 4x4 matrix of doubles, the transform type exchanged with the core.
// Stored column by column: row r, column c is m[r + 4 * c]; the translation
// lies in m[12], m[13], m[14].
#pragma once

namespace tvr::util {

class Matrix4d {
public:
    // The identity.
    Matrix4d();
    // From sixteen values in storage (column-major) order.
    explicit Matrix4d(const double (&columnMajor)[16]);

    static Matrix4d zero();
    static Matrix4d translation(double x, double y, double z);

    double& operator()(int row, int column) { return m[row + 4 * column]; }
    double operator()(int row, int column) const { return m[row + 4 * column]; }

    Matrix4d operator*(const Matrix4d& rhs) const;

    // The 24-term permutation expansion, without pivoting.
    double determinant() const;
    // The adjugate divided by the determinant; all zeros when the determinant is
    // exactly 0 (no tolerance), which callers treat as failure.
    Matrix4d inverse() const;

    // True when all sixteen entries are 0, the singular result of inverse().
    bool isZero() const;

    bool operator==(const Matrix4d& rhs) const;
    bool operator!=(const Matrix4d& rhs) const { return !(*this == rhs); }

    double m[16];
};

}  // namespace tvr::util
