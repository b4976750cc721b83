#pragma once
// BaseTime: a rational time in seconds (numerator / denominator).
#include <cmath>

#include "host_api/c4d_types.h"

class BaseTime {
public:
    BaseTime() = default;

    // Seconds to a fraction of 1/1000 s, reduced; the product is taken in single precision.
    BaseTime(Real seconds) {
        if (!(seconds == seconds)) seconds = 0;  // NaN counts as zero
        if (seconds > 1e15f) seconds = 1e15f;
        if (seconds < -1e15f) seconds = -1e15f;
        const Real scaled = seconds * 1000.0f;
        numerator_ = std::floor(double(scaled) + 0.5);
        denominator_ = 1000.0;
        Reduce();
    }

    BaseTime(LReal numerator, LReal denominator)
        : numerator_(std::floor(numerator + 0.5)), denominator_(std::floor(denominator + 0.5)) {
        if (denominator_ == 0.0) denominator_ = 1.0;
    }

    LReal Get() const { return numerator_ / denominator_; }
    LReal GetNumerator() const { return numerator_; }
    LReal GetDenominator() const { return denominator_; }
    void SetNumerator(LReal n) { numerator_ = n; }
    void SetDenominator(LReal d) { denominator_ = d == 0.0 ? 1.0 : d; }

    LONG GetFrame(LReal fps) const {
        const double f = std::floor(numerator_ * fps) / denominator_;
        if (!std::isfinite(f) || f > 2147483647.0 || f < -2147483648.0)
            return f < 0 ? LONG(-2147483647 - 1) : 2147483647;
        return LONG(f);  // truncates toward zero
    }

    friend bool operator==(const BaseTime& a, const BaseTime& b) {
        return a.numerator_ * b.denominator_ == b.numerator_ * a.denominator_;
    }
    friend bool operator!=(const BaseTime& a, const BaseTime& b) { return !(a == b); }
    friend bool operator<(const BaseTime& a, const BaseTime& b) {
        return a.numerator_ * b.denominator_ < b.numerator_ * a.denominator_;
    }
    friend bool operator>(const BaseTime& a, const BaseTime& b) { return b < a; }
    friend bool operator<=(const BaseTime& a, const BaseTime& b) { return !(b < a); }
    friend bool operator>=(const BaseTime& a, const BaseTime& b) { return !(a < b); }
    friend BaseTime operator+(const BaseTime& a, const BaseTime& b) {
        BaseTime r;
        r.numerator_ = a.numerator_ * b.denominator_ + b.numerator_ * a.denominator_;
        r.denominator_ = a.denominator_ * b.denominator_;
        r.Reduce();
        return r;
    }
    friend BaseTime operator-(const BaseTime& a, const BaseTime& b) {
        BaseTime r;
        r.numerator_ = a.numerator_ * b.denominator_ - b.numerator_ * a.denominator_;
        r.denominator_ = a.denominator_ * b.denominator_;
        r.Reduce();
        return r;
    }

private:
    void Reduce() {
        double a = std::fabs(numerator_), b = std::fabs(denominator_);
        if (a >= 9.0e15 || b >= 9.0e15 || b == 0.0) return;  // beyond exact integers
        while (b != 0.0) {
            double t = std::fmod(a, b);
            a = b;
            b = t;
        }
        if (a > 1.0) {
            numerator_ /= a;
            denominator_ /= a;
        }
    }

    LReal numerator_ = 0.0;
    LReal denominator_ = 1.0;
};
