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

/// Division in double precision.
struct PlainDivision {
    /// By a constant; `reciprocal` is 1.0 / divisor.
    static double Divide(double dividend, double divisor, double /*reciprocal*/) { return dividend / divisor; }

    /// Of whole numbers from -255 to 255, by one above 0.
    static double Ratio(int dividend, int divisor) { return static_cast<double>(dividend) / divisor; }
};

/// The same to the last bit: products with the reciprocal, corrected by their exact remainders. Modes that consist of
/// divisions for the most part are half again as fast with it. Known to be the same for the divisors and dividends of
/// these modes, all of which a test compares, not for all numbers.
struct FusedDivision {
    static double Divide(double dividend, double divisor, double reciprocal) {
        return Corrected(dividend * reciprocal, dividend, divisor, reciprocal);
    }

    /// From a reciprocal in single precision, of which twice as many are worked out at a time: each correction doubles
    /// the 24 bits that are right.
    static double Ratio(int dividend, int divisor) {
        const double reciprocal = 1.0f / static_cast<float>(divisor);
        const double quotient = Corrected(dividend * reciprocal, dividend, divisor, reciprocal);
        return Corrected(quotient, dividend, divisor, reciprocal);
    }

  private:
    static double Corrected(double quotient, double dividend, double divisor, double reciprocal) {
        return std::fma(std::fma(-quotient, divisor, dividend), reciprocal, quotient);
    }
};

}  // namespace ombrix
