// Double precision beside whole numbers: `double` beside `int`, and as many of them as there are lanes beside I32.
#pragma once

#include "pixels/numbers.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// One double for each lane of an I32, in two vectors.
struct Doubles {
    F64 lower;
    F64 upper;

    friend inline Doubles operator+(Doubles a, Doubles b) { return {a.lower + b.lower, a.upper + b.upper}; }
    friend inline Doubles operator-(Doubles a, Doubles b) { return {a.lower - b.lower, a.upper - b.upper}; }
    friend inline Doubles operator*(Doubles a, Doubles b) { return {a.lower * b.lower, a.upper * b.upper}; }
    friend inline Doubles operator+(Doubles a, double b) { return {a.lower + b, a.upper + b}; }
    friend inline Doubles operator*(Doubles a, double b) { return {a.lower * b, a.upper * b}; }
};

constexpr double ToDoubles(int number) { return number; }
inline Doubles ToDoubles(I32 numbers) { return {ToDouble(LowerHalf(numbers)), ToDouble(UpperHalf(numbers))}; }

/// Truncated.
constexpr int ToInts(double number) { return static_cast<int>(number); }
inline I32 ToInts(Doubles numbers) { return Joined(ToInt(numbers.lower), ToInt(numbers.upper)); }

/// Truncated, but still doubles.
inline double Truncated(double number) { return ToDoubles(ToInts(number)); }
inline Doubles Truncated(Doubles numbers) { return {ToDouble(ToInt(numbers.lower)), ToDouble(ToInt(numbers.upper))}; }

/// A divisor of at most 24 bits that is known beforehand.
struct Divisor {
    double value;
    double high;  ///< 1 / value
    double low;   ///< the rest of it

    constexpr explicit Divisor(double divisor) : value(divisor), high(1.0 / divisor), low(RestOf(high) / divisor) {}

  private:
    /// 1 - quotient * value. All products and differences of the two parts are exact.
    constexpr double RestOf(double quotient) const {
        const double upper = static_cast<float>(quotient);
        return (1.0 - upper * value) - (quotient - upper) * value;
    }
};

/// a / b. With a fused multiply-add, rounded as a division for all operands of the colour-space modes; tests compare
/// them.
inline double operator/(double a, const Divisor& b) { return a / b.value; }
inline F64 operator/(F64 a, const Divisor& b) {
#if defined(OMBRIX_HAS_FUSED_MULTIPLY_ADD)
    return FusedMultiplyAdd(a, F64{} + b.high, a * b.low);
#else
    return a / b.value;
#endif
}
inline Doubles operator/(Doubles a, const Divisor& b) { return {a.lower / b, a.upper / b}; }

/// `a` where the number is below the limit, else `b`.
inline double WhereBelow(double number, double limit, double a, double b) { return number < limit ? a : b; }
inline Doubles WhereBelow(Doubles number, double limit, Doubles a, Doubles b) {
    return {number.lower < limit ? a.lower : b.lower, number.upper < limit ? a.upper : b.upper};
}

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
