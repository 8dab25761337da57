// The numbers of formulas: `int`, or a vector of them. A formula is a template over its numbers V and says the same for
// either; `V` has the signs + - * / >> < == and `condition ? a : b`, and the functions below.
//
// Vectors of 16 bits are unsigned: every step of a formula has to stay between 0 and 65535.
#pragma once

#include <type_traits>
#include <utility>

#include "pixels/vector.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// The type of one lane.
template <class V>
struct LaneOf {
    using type = std::remove_cvref_t<decltype(V{}[0])>;
};
template <>
struct LaneOf<int> {
    using type = int;
};

/// A number that is the same in all lanes.
template <class V>
inline V Same(int value) {
    return V{} + static_cast<typename LaneOf<V>::type>(value);
}

template <class V, class W>
constexpr V Min(V a, W b) {
    if constexpr (std::is_same_v<V, W>) {
        return a < b ? a : b;
    } else {
        return Min(a, Same<V>(b));
    }
}

template <class V, class W>
constexpr V Max(V a, W b) {
    if constexpr (std::is_same_v<V, W>) {
        return a < b ? b : a;
    } else {
        return Max(a, Same<V>(b));
    }
}

/// a - b, but not below 0.
template <class V>
inline V DifferenceFromZero(V a, V b) {
    return Max(a, b) - b;
}

/// a * b >> 16, of factors below 65536.
inline int HighProduct(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b) >> 16);
}

/// a * b, of factors below 32768.
inline int Product(int a, int b) { return a * b; }
inline I32 Product(I32 a, I32 b) { return PairSums(reinterpret_cast<U16>(a), reinterpret_cast<U16>(b)); }

/// a / b, truncated, for 0 <= a < 2^18 and 0 < b < 512. Exact up to 255; a larger quotient may be slightly off, but
/// stays above 255.
inline int Quotient(int a, int b) { return a / b; }

/// Added before truncation: more than the error of a quotient up to 256 (about 1e-4), less than the distance from any
/// fraction to the next whole number (1 / 511).
constexpr float kQuotientMargin = 1.0f / 1024;

inline I32 Quotient(I32 a, I32 b) {
    const F32 quotient = __builtin_convertvector(a, F32) * Reciprocal(__builtin_convertvector(b, F32));
    return __builtin_convertvector(quotient + kQuotientMargin, I32);
}

#if defined(OMBRIX_HAS_WORD_PERMUTATION)
/// 1 / divisor times 65536, cut.
constexpr std::uint16_t Reciprocal16(int divisor) {
    return static_cast<std::uint16_t>(divisor < 2 ? 65535 : 65536 / divisor);
}

/// Element by element: g++ 12 takes the first ones for 0 where a constructor has filled the table.
template <class Divisors>
struct Reciprocals;
template <int... divisor>
struct Reciprocals<std::integer_sequence<int, divisor...>> {
    alignas(kVectorBytes) static constexpr std::uint16_t of[] = {Reciprocal16(divisor)...};
};

/// Here b is below 256, and any quotient is exact: the product with the reciprocal is at most 1 too low.
inline U16 Quotient(U16 a, U16 b) {
    const U16 quotient = HighProduct(a, EntriesOf(Reciprocals<std::make_integer_sequence<int, 256>>::of, b));
    return a - quotient * b < b ? quotient : quotient + 1;
}
#else
/// Here b is below 256. One reciprocal serves two lanes: a0 / b0 is a0 * b1 / (b0 * b1).
inline U16 Quotient(U16 a, U16 b) {
    const I32 a0 = reinterpret_cast<I32>(a) & 0xffff;
    const I32 a1 = reinterpret_cast<I32>(reinterpret_cast<U32>(a) >> 16);
    const F32 b0 = __builtin_convertvector(reinterpret_cast<I32>(b) & 0xffff, F32);
    const F32 b1 = __builtin_convertvector(reinterpret_cast<I32>(reinterpret_cast<U32>(b) >> 16), F32);
    const F32 reciprocal = Reciprocal(b0 * b1);
    const F32 q0 = __builtin_convertvector(a0, F32) * b1 * reciprocal + kQuotientMargin;
    const F32 q1 = __builtin_convertvector(a1, F32) * b0 * reciprocal + kQuotientMargin;
    return reinterpret_cast<U16>(__builtin_convertvector(q0, I32) | __builtin_convertvector(q1, I32) << 16);
}
#endif

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
