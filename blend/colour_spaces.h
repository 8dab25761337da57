// Between red, green, blue and hue, lightness, saturation, all on scales from 0 to 255. The hue circle is 255 units
// long: 42.5 units to a sixth, 85 to a third.
//
// Written without branches, so that loops over pixels become vector code, and choosing what to divide instead of the
// quotient, since divisions are most of the work.
#pragma once

#include <algorithm>

#include "blend/division.h"

namespace ombrix {

/// In place: red, green and blue become hue, lightness and saturation, in this order, truncated. A grey of value v has
/// hue 0, lightness v and saturation 0.
template <class Division = PlainDivision>
void Convert_RGB_To_HSL(int* first, int* second, int* third) {
    const int red = *first;
    const int green = *second;
    const int blue = *third;
    const int highest = std::max(std::max(red, green), blue);
    const int lowest = std::min(std::min(red, green), blue);
    const int sum = highest + lowest;
    const bool isGrey = highest == lowest;
    const int delta = isGrey ? 1 : highest - lowest;

    // 511 and not 510: it keeps the divisor of near-white colours above 0, at the price of a saturation that falls
    // a little short.
    const int saturation = Quotient(255 * delta, sum < 256 ? std::max(sum, 1) : 511 - sum);

    const bool isRed = red == highest;
    const bool isGreen = green == highest;
    const int difference = isRed ? green - blue : isGreen ? blue - red : red - green;
    const int sector = isRed ? 0 : isGreen ? 2 : 4;
    const int turn = difference < 0 ? (isRed ? 255 : 0) : 0;
    const double hue = (sector + Division::Ratio(difference, delta)) * 42.5 + turn;

    *first = isGrey ? 0 : static_cast<int>(hue);
    *second = sum / 2;
    *third = isGrey ? 0 : saturation;
}

/// One channel, 0 to 255 and truncated, of the colour whose lowest and highest channels are m1 and m2 (0.0 to 1.0), at
/// a hue that may lie one third outside of the circle.
template <class Division = PlainDivision>
int HLS_Value(double m1, double m2, int hue) {
    hue = hue > 255 ? hue - 255 : hue < 0 ? hue + 255 : hue;
    const double rise = (m2 - m1) * (hue < 43 ? hue : 170 - hue);
    const double slope = m1 + rise / 42.5;
    const double value = hue < 43 ? slope : hue < 128 ? m2 : hue < 170 ? slope : m1;
    return static_cast<int>(value * 255.0);
}

/// The lowest and the highest channel of a colour, 0.0 to 1.0, by its lightness and saturation.
struct ChannelEnds {
    double m1;
    double m2;
};

template <class Division = PlainDivision>
ChannelEnds EndsOf(int lightness, int saturation) {
    const bool isDark = lightness <= 127;
    const int ofDark = (saturation + 255) * lightness;
    const double ofBright = (lightness + saturation) - Division::Divide(saturation * lightness, 255.0, 1.0 / 255.0);
    const double m2 =
        Division::Divide(isDark ? ofDark : ofBright, isDark ? 65025.0 : 255.0, isDark ? 1.0 / 65025.0 : 1.0 / 255.0);
    return {Division::Divide(lightness, 127.5, 1.0 / 127.5) - m2, m2};
}

/// In place, the inverse: hue, lightness and saturation become red, green and blue. Truncation on the way loses up to
/// a few units; greys come back exactly.
inline void Convert_HSL_To_RGB(int* first, int* second, int* third) {
    const int hue = *first;
    const int lightness = *second;
    const int saturation = *third;
    const auto [m1, m2] = EndsOf(lightness, saturation);
    const int red = HLS_Value(m1, m2, hue + 85);
    const int green = HLS_Value(m1, m2, hue);
    const int blue = HLS_Value(m1, m2, hue - 85);
    *first = saturation == 0 ? lightness : red;
    *second = saturation == 0 ? lightness : green;
    *third = saturation == 0 ? lightness : blue;
}

}  // namespace ombrix
