// Divisions that vector units do many at a time, with the same results as one by one.
#pragma once

#include <cmath>

namespace ombrix {

/// The quotient of whole numbers from 0 to 65535, truncated; the divisor is not 0. A quotient that is not whole is
/// farther from the next whole number than single precision rounds, so this is exact; and unlike whole numbers, those
/// of single precision can be divided many at a time.
inline int Quotient(int dividend, int divisor) {
    return static_cast<int>(static_cast<float>(dividend) / static_cast<float>(divisor));
}

/// Division by constants, in double precision; `reciprocal` is 1.0 / divisor.
struct PlainDivision {
    static double Divide(double dividend, double divisor, double /*reciprocal*/) { return dividend / divisor; }
};

/// The same to the last bit: the product with the reciprocal, corrected by its exact remainder. Modes that consist of
/// divisions for the most part are half again as fast with it. Known to be the same for the divisors and dividends of
/// these modes, all of which a test compares, not for all numbers.
struct FusedDivision {
    static double Divide(double dividend, double divisor, double reciprocal) {
        const double quotient = dividend * reciprocal;
        return std::fma(std::fma(-quotient, divisor, dividend), reciprocal, quotient);
    }
};

}  // namespace ombrix
