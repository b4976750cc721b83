#pragma once
// Vector (three Real) and Matrix (off, v1, v2, v3) with the host's operators.
#include <cmath>

#include "host_api/c4d_constants.h"
#include "host_api/c4d_types.h"

struct Vector {
    Real x = 0, y = 0, z = 0;

    Vector() = default;
    explicit Vector(Real s) : x(s), y(s), z(s) {}
    Vector(Real ix, Real iy, Real iz) : x(ix), y(iy), z(iz) {}

    Vector& operator+=(const Vector& v) {
        x += v.x;
        y += v.y;
        z += v.z;
        return *this;
    }
    Vector& operator-=(const Vector& v) {
        x -= v.x;
        y -= v.y;
        z -= v.z;
        return *this;
    }
    Vector& operator*=(Real s) {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    Vector& operator/=(Real s) {
        x /= s;
        y /= s;
        z /= s;
        return *this;
    }

    friend Vector operator+(Vector a, const Vector& b) { return a += b; }
    friend Vector operator-(Vector a, const Vector& b) { return a -= b; }
    friend Vector operator-(const Vector& a) { return Vector(-a.x, -a.y, -a.z); }
    friend Vector operator*(Vector a, Real s) { return a *= s; }
    friend Vector operator*(Real s, Vector a) { return a *= s; }
    friend Vector operator/(Vector a, Real s) { return a /= s; }
    // Dot product, as the host spells it.
    friend Real operator*(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
    // Cross product.
    friend Vector operator%(const Vector& a, const Vector& b) {
        return Vector(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
    }
    // Component-wise product.
    friend Vector operator^(const Vector& a, const Vector& b) { return Vector(a.x * b.x, a.y * b.y, a.z * b.z); }
    friend bool operator==(const Vector& a, const Vector& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }
    friend bool operator!=(const Vector& a, const Vector& b) { return !(a == b); }
};

inline Real Len(const Vector& v) { return std::sqrt(v * v); }
inline Vector operator!(const Vector& v) {
    Real l = Len(v);
    return l > 0 ? v / l : v;
}

struct Matrix {
    Vector off, v1{1, 0, 0}, v2{0, 1, 0}, v3{0, 0, 1};

    Matrix() = default;
    Matrix(const Vector& o, const Vector& a, const Vector& b, const Vector& c) : off(o), v1(a), v2(b), v3(c) {}

    // Maps a point: off + p.x*v1 + p.y*v2 + p.z*v3.
    friend Vector operator*(const Matrix& m, const Vector& p) { return m.off + m.v1 * p.x + m.v2 * p.y + m.v3 * p.z; }
    // Maps a direction (no offset).
    friend Vector operator^(const Vector& p, const Matrix& m) { return m.v1 * p.x + m.v2 * p.y + m.v3 * p.z; }
    friend Matrix operator*(const Matrix& a, const Matrix& b) {
        return Matrix(a * b.off, b.v1 ^ a, b.v2 ^ a, b.v3 ^ a);
    }
    friend bool operator==(const Matrix& a, const Matrix& b) {
        return a.off == b.off && a.v1 == b.v1 && a.v2 == b.v2 && a.v3 == b.v3;
    }
    friend bool operator!=(const Matrix& a, const Matrix& b) { return !(a == b); }
};

// Inverse of an affine matrix; a singular matrix answers the identity.
inline Matrix operator!(const Matrix& m) {
    const double a = m.v1.x, b = m.v2.x, c = m.v3.x;
    const double d = m.v1.y, e = m.v2.y, f = m.v3.y;
    const double g = m.v1.z, h = m.v2.z, i = m.v3.z;
    const double det = a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g);
    if (det == 0.0 || !std::isfinite(det)) return Matrix();
    const double k = 1.0 / det;
    Matrix r;
    r.v1 = Vector(Real((e * i - f * h) * k), Real((f * g - d * i) * k), Real((d * h - e * g) * k));
    r.v2 = Vector(Real((c * h - b * i) * k), Real((a * i - c * g) * k), Real((b * g - a * h) * k));
    r.v3 = Vector(Real((b * f - c * e) * k), Real((c * d - a * f) * k), Real((a * e - b * d) * k));
    r.off = -(m.off ^ r);
    return r;
}

inline Matrix MatrixMove(const Vector& t) {
    Matrix m;
    m.off = t;
    return m;
}
inline Matrix MatrixScale(const Vector& s) {
    return Matrix(Vector(), Vector(s.x, 0, 0), Vector(0, s.y, 0), Vector(0, 0, s.z));
}

// Heading about Y, then pitch about X, then bank about Z: RotY(h)*RotX(p)*RotZ(b).
inline Matrix HPBToMatrix(const Vector& hpb, LONG rotationOrder = ROTATIONORDER_HPB) {
    (void)rotationOrder;  // the host knows one order
    const double ch = std::cos(double(hpb.x)), sh = std::sin(double(hpb.x));
    const double cp = std::cos(double(hpb.y)), sp = std::sin(double(hpb.y));
    const double cb = std::cos(double(hpb.z)), sb = std::sin(double(hpb.z));
    Matrix m;
    m.v1 = Vector(Real(cb * ch - sb * sp * sh), Real(-sb * cp), Real(cb * sh + sb * sp * ch));
    m.v2 = Vector(Real(sb * ch + cb * sp * sh), Real(cb * cp), Real(sb * sh - cb * sp * ch));
    m.v3 = Vector(Real(-cp * sh), Real(sp), Real(cp * ch));
    return m;
}

// Inverse of HPBToMatrix on normalised axes; heading in [0, 2*pi). Worked in double: near the
// pole heading and bank rest on entries of the size of cos(pitch), which single precision keeps
// to full relative precision but not to absolute precision.
inline Vector MatrixToHPB(const Matrix& mat, LONG rotationOrder = ROTATIONORDER_HPB) {
    (void)rotationOrder;
    struct Axis {
        double x, y, z;
    };
    auto unit = [](const Vector& v) {
        const double x = v.x, y = v.y, z = v.z;
        const double l = std::sqrt(x * x + y * y + z * z);
        return l > 0.0 ? Axis{x / l, y / l, z / l} : Axis{0.0, 0.0, 0.0};
    };
    const Axis v1 = unit(mat.v1), v2 = unit(mat.v2), v3 = unit(mat.v3);
    const double twoPi = 6.283185307179586;
    const double cp = std::sqrt(v3.x * v3.x + v3.z * v3.z);
    const double p = std::atan2(v3.y, cp);
    double h, b;
    if (cp > 0.0) {
        h = std::atan2(-v3.x, v3.z);
        b = std::atan2(-v1.y, v2.y);
    } else {
        // Exactly at the pole only h - b (or h + b) is defined; all of it goes into the heading.
        b = 0.0;
        h = std::atan2(v1.z, v1.x);
    }
    if (h < 0.0) h += twoPi;
    // Just below 2*pi rounds up to it in single precision; that is a heading of 0.
    Real heading = Real(h);
    if (double(heading) >= twoPi) heading = 0;
    return Vector(heading, Real(p), Real(b));
}
