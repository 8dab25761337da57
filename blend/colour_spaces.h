// Between red, green, blue and hue, lightness, saturation, all from 0 to 255. The hue circle is 255 units long: 42.5 to
// a sixth, 85 to a third.
#pragma once

#include <cstdint>

#include "pixels/colour.h"
#include "pixels/doubles.h"
#include "pixels/numbers.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// A colour as hue, lightness and saturation, 0 to 255 each.
template <class V>
struct Hls {
    V hue;
    V lightness;
    V saturation;
};

// ---- There ------------------------------------------------------------------------------------------------------

/// The hue at `difference / delta` sixths, from -1 to 1, beside the given sixth. Truncated.
constexpr int HueOf(int sixth, int difference, int delta) {
    const double hue = (sixth + static_cast<double>(difference) / delta) * 42.5;
    return static_cast<int>(hue < 0.0 ? hue + 255.0 : hue);
}

/// A bit for each whole hue that double precision computes one too low.
struct FallenHues {
    std::uint32_t bits[8]{};

    constexpr FallenHues() {
        for (int hue = 0; hue < 255; ++hue) {
            const int sixth = hue < 43 || hue > 212 ? 0 : hue < 128 ? 2 : 4;
            const int beside = 2 * (hue > 212 ? hue - 255 : hue) - 85 * sixth;  // in units of a sixth / 85
            if (HueOf(sixth, beside, 85) < hue) bits[hue / 32] |= 1u << hue % 32;
        }
    }
};
constexpr FallenHues kFallenHues;

/// In whole numbers. Whether a whole hue comes out too low depends on that hue alone.
inline I32 HueOf(I32 sixth, I32 difference, I32 delta) {
    const I32 turned = 85 * (Product(sixth, delta) + difference);
    const I32 dividend = turned < 0 ? turned + 510 * delta : turned;
    const I32 hue = Quotient(dividend, I32(2 * delta));
    const I32 isWhole = Product(hue, 2 * delta) == dividend;
    return hue - (isWhole & BitsOf(kFallenHues.bits, hue));
}

/// Truncated. A grey of value v has hue 0, lightness v and saturation 0.
template <class V>
inline Hls<V> ToHls(Rgb<V> colour) {
    const V highest = Max(Max(colour.red, colour.green), colour.blue);
    const V lowest = Min(Min(colour.red, colour.green), colour.blue);
    const V sum = highest + lowest;
    const auto isGrey = highest == lowest;
    const V delta = isGrey ? Same<V>(1) : highest - lowest;

    // 511 and not 510: it keeps the divisor of near-white colours above 0, at the price of a saturation that falls a
    // little short.
    const V saturation = Quotient(V(255 * delta), V(sum < 256 ? Max(sum, 1) : 511 - sum));

    const auto isRed = colour.red == highest;
    const auto isGreen = colour.green == highest;
    const V beside = isGreen ? colour.blue - colour.red : colour.red - colour.green;
    const V difference = isRed ? colour.green - colour.blue : beside;
    const V sixth = isRed ? Same<V>(0) : V(isGreen ? Same<V>(2) : Same<V>(4));
    const V hue = HueOf(sixth, difference, delta);
    return {isGrey ? Same<V>(0) : hue, sum >> 1, isGrey ? Same<V>(0) : saturation};
}

// ---- And back ---------------------------------------------------------------------------------------------------

/// The lowest and the highest channel of a colour, 0.0 to 1.0.
template <class D>
struct ChannelEnds {
    D m1;
    D m2;
};

template <class V>
inline auto EndsOf(V lightness, V saturation) {
    constexpr Divisor by255(255.0);
    constexpr Divisor by65025(65025.0);
    constexpr Divisor by127(127.5);
    const auto l = ToDoubles(lightness);
    const auto s = ToDoubles(saturation);
    const auto m2 = WhereBelow(l, 128.0, (s + 255.0) * l / by65025, (l + s - s * l / by255) / by255);
    return ChannelEnds<decltype(m2 + m2)>{l / by127 - m2, m2};
}

/// One channel, 0 to 255 and truncated, of the colour whose lowest and highest channels are m1 and m2, at a hue that
/// may lie one third outside of the circle.
inline int HLS_Value(double m1, double m2, double hue) {
    hue = hue > 255.0 ? hue - 255.0 : hue < 0.0 ? hue + 255.0 : hue;
    const double value = hue < 42.5    ? m1 + (m2 - m1) * hue / 42.5
                         : hue < 127.5 ? m2
                         : hue < 170.0 ? m1 + (m2 - m1) * (170.0 - hue) / 42.5
                                       : m1;
    return static_cast<int>(value * 255.0);
}

/// Truncation on the way loses up to a few units; greys come back exactly.
inline Rgb<int> ToRgb(Hls<int> colour) {
    const auto [hue, lightness, saturation] = colour;
    if (saturation == 0) return {lightness, lightness, lightness};
    const auto [m1, m2] = EndsOf(lightness, saturation);
    return {HLS_Value(m1, m2, hue + 85.0), HLS_Value(m1, m2, hue), HLS_Value(m1, m2, hue - 85.0)};
}

/// The same with one slope in place of three. The places of the channels on the circle are a third apart, so one of
/// them is as high as can be, one as low, and one between. The modes take three quarters of the time with it.
inline Rgb<I32> ToRgb(Hls<I32> colour) {
    constexpr Divisor bySixth(42.5);
    const auto [hue, lightness, saturation] = colour;
    const auto [m1, m2] = EndsOf(lightness, saturation);
    const I32 isFirst = hue < 85;
    const I32 isSecond = hue < 170;
    const I32 isThird = hue < 255;
    const I32 place = hue - (isFirst ? I32{} : isSecond ? 85 + I32{} : isThird ? 170 + I32{} : 255 + I32{});
    const I32 isRising = place < 43;
    const auto slope = m1 + (m2 - m1) * ToDoubles(I32(isRising ? place : 85 - place)) / bySixth;

    const I32 isGrey = saturation == 0;
    const I32 between = ToInts(slope * 255.0);
    const I32 highest = ToInts(m2 * 255.0);
    const I32 low = isGrey ? lightness : ToInts(m1 * 255.0);
    const I32 rising = isGrey ? lightness : isRising ? between : highest;
    const I32 falling = isGrey ? lightness : isRising ? highest : between;
    // The circle begins again at 255.
    const I32 middle = ~isFirst & isSecond;
    const I32 last = ~isSecond & isThird;
    return {middle ? low
            : last ? rising
                   : falling,
            middle ? falling
            : last ? low
                   : rising,
            middle ? rising
            : last ? falling
                   : low};
}

/// In place: red, green and blue become hue, lightness and saturation, in this order; and the inverse.
inline void Convert_RGB_To_HSL(int* first, int* second, int* third) {
    const Hls<int> colour = ToHls<int>({*first, *second, *third});
    *first = colour.hue;
    *second = colour.lightness;
    *third = colour.saturation;
}
inline void Convert_HSL_To_RGB(int* first, int* second, int* third) {
    const Rgb<int> colour = ToRgb(Hls<int>{*first, *second, *third});
    *first = colour.red;
    *second = colour.green;
    *third = colour.blue;
}

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
