// Arithmetic in which an overflow ends the program: a clock that wrapped around would go on with a wrong
// time, and no sensible setting comes near the limits.
#pragma once

#include <QtGlobal>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace orlix {

[[noreturn]] inline void arithmeticFailure(const char* what) {
    std::fprintf(stderr, "fatal error: %s\n", what);
    std::abort();
}

inline qint64 checkedAdd(qint64 left, qint64 right) {
    qint64 sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) arithmeticFailure("arithmetic overflow in a sum");
    return sum;
}

inline qint64 checkedSubtract(qint64 left, qint64 right) {
    qint64 difference = 0;
    if (__builtin_sub_overflow(left, right, &difference)) {
        arithmeticFailure("arithmetic overflow in a difference");
    }
    return difference;
}

inline qint64 checkedMultiply(qint64 left, qint64 right) {
    qint64 product = 0;
    if (__builtin_mul_overflow(left, right, &product)) arithmeticFailure("arithmetic overflow in a product");
    return product;
}

/// Truncates toward zero; a non-finite value, or one outside the 64-bit range, ends the program.
inline qint64 checkedTruncate(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63, the first value above the range
    if (!std::isfinite(value) || value >= limit || value < -limit) {
        arithmeticFailure("a number of milliseconds is out of range");
    }
    return static_cast<qint64>(value);
}

}  // namespace orlix
