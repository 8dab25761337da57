// The blend modes as formulas: each takes a colour of the source and one of the fill and gives the blended colour, with
// channels from 0 to 255. Opacity, masks and places are not their business.
//
// Several divide by 256 where 255 would be exact, or by 127, or add up to 255 in one place and 256 in another. All of
// that is meant: pictures made with these modes must not change. The comments say what a user sees of it.
#pragma once

#include <algorithm>
#include <type_traits>

#include "blend/colour_spaces.h"
#include "blend/colour_spaces_in_loops.h"
#include "blend/division.h"
#include "engine/lane.h"
#include "engine/luma.h"
#include "engine/pixel.h"

namespace ombrix {

// ---- Modes that work on each channel by itself -----------------------------------------------------------------
//
// Each is a function of two channel values: for `int` and, where no step leaves 0 to 65535, for `Lane` as well.

/// Applies such a function to all three channels.
template <class Mode>
struct PerChannel {
    Rgb<int> operator()(Rgb<int> s, Rgb<int> f) const {
        return {Mode()(s.red, f.red), Mode()(s.green, f.green), Mode()(s.blue, f.blue)};
    }

    /// What it does to a byte, whichever channel that is.
    Lane OfBytes(Lane s, Lane f) const requires std::is_invocable_v<Mode, Lane, Lane> { return Mode()(s, f); }
};

/// Divides by 256: white on white gives 254, and whatever is multiplied loses up to one step.
struct MultiplyValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return s * f >> 8;
    }
};

struct ScreenValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return 255 - (255 - s) * (255 - f) / 255;
    }
};

/// Multiplies where `chooser` is dark and screens where it is bright. 127 in both branches, not 127.5: the result jumps
/// by up to one step more than expected in the middle, and reaches both ends.
template <class Value>
Value MultiplyOrScreen(Value chooser, Value s, Value f) {
    const bool isDark = chooser < 128;
    const Value product = (isDark ? s : 255 - s) * (isDark ? f : 255 - f);
    const Value quotient = product / 127;
    return isDark ? quotient : 255 - quotient;
}

struct OverlayValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return MultiplyOrScreen(s, s, f);
    }
};

struct HardLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return MultiplyOrScreen(f, s, f);
    }
};

struct DarkenValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return Min(s, f);
    }
};

struct LightenValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return Max(s, f);
    }
};

/// A white fill gives white even on black.
struct ColorDodgeValue {
    int operator()(int s, int f) const {
        const int quotient = Quotient(s * 256, Max(255 - f, 1));
        return f == 255 ? 255 : Min(quotient, 255);
    }
};

/// A black fill gives black even on white.
struct ColorBurnValue {
    int operator()(int s, int f) const {
        const int quotient = Quotient((255 - s) * 256, Max(f, 1));
        return f == 0 ? 0 : 255 - Min(quotient, 255);
    }
};

/// Each term is cut by itself, so a fill of the middle value does not leave the source quite as it was.
struct SoftLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        const Value square = s * s;
        return Min((square >> 8) + (s * f >> 7) - HighProduct(square, 2 * f), 255);
    }
};

struct DifferenceValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return Max(s, f) - Min(s, f);
    }
};

/// `s + f - 2 * s * f / 255`, the double product being more than 16 bits hold.
struct ExclusionValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        const Value product = s * f;
        const Value quotient = product / 255;
        const Value rest = product - quotient * 255;
        return s + f - 2 * quotient - (rest < 128 ? Value(0) : Value(1));
    }
};

/// 255 and not 256: a fill of 127 darkens to 254 at most, and one of 128 lifts black to 1.
struct PinLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        const Value twice = 2 * f;
        return Max(Min(s, twice), DifferenceFromZero(twice, Value(255)));
    }
};

struct SharpLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        const Value square = s * s;
        const Value sum = (square >> 8) + HighProduct(f * f, 2 * s);
        return Min(DifferenceFromZero(sum, HighProduct(square, 2 * f)), 255);
    }
};

/// Burns where the source is dark and dodges where it is bright. A black source gives 127 whatever the fill: black
/// areas turn grey.
struct VividLightValue {
    int operator()(int s, int f) const {
        const int ifDark = s <= 127 ? 255 : 0;  // `value ^ 255` is 255 - value
        const int quotient = Min(Quotient(128 * (f ^ ifDark), Max(s ^ ifDark ^ 255, 1)), 255);
        return s == 0 ? 127 : quotient ^ ifDark;
    }
};

struct LinearLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return Min(DifferenceFromZero(s + 2 * f, Value(255)), 255);
    }
};

struct PowerLightValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        const Value square = s * s;
        const Value sum = (square >> 8) + (f * f >> 8) + HighProduct(f * f, 2 * s);
        return Min(DifferenceFromZero(sum, HighProduct(square, 2 * f)), 255);
    }
};

struct LinearBurnValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return DifferenceFromZero(s + f, Value(255));
    }
};

struct LinearDodgeValue {
    template <class Value>
    Value operator()(Value s, Value f) const {
        return Min(s + f, 255);
    }
};

/// The same values as linear dodge; a mode of its own since programs name it.
using AddValue = LinearDodgeValue;

// ---- Modes that work on a colour as a whole ----------------------------------------------------------------------

/// The luma of the fill with the chroma of the source, by way of YUV in whole numbers. The weights of U are rounded and
/// sum to 0.007: on a white source with a black fill, blue comes out as 2.
struct Luminosity {
    Rgb<int> operator()(Rgb<int> s, Rgb<int> f) const {
        const int y = kRec601.LumaOf(f);
        const auto u = static_cast<int>((s.red * -0.14 + s.green * -0.289) + s.blue * 0.436);
        const auto v = static_cast<int>((s.red * 0.615 + s.green * -0.515) + s.blue * -0.1);
        return {Cut(y + 1.14 * v), Cut((y - 0.395 * u) - 0.581 * v), Cut(y + 2.032 * u)};
    }

    static int Cut(double value) { return static_cast<int>(std::min(std::max(value, 0.0), 255.0)); }
};

/// A colour as hue, lightness and saturation, 0 to 255 each.
struct Hls {
    int hue;
    int lightness;
    int saturation;
};

/// How colours are converted to Hls and back.
struct PlainConversion {
    static Hls ToHls(Rgb<int> colour) {
        Convert_RGB_To_HSL(&colour.red, &colour.green, &colour.blue);
        return {colour.red, colour.green, colour.blue};
    }

    static Rgb<int> ToRgb(Hls colour) {
        Convert_HSL_To_RGB(&colour.hue, &colour.lightness, &colour.saturation);
        return {colour.hue & 0xff, colour.lightness & 0xff, colour.saturation & 0xff};
    }
};

/// The same, for loops.
template <class Division>
struct LoopConversion {
    static Hls ToHls(Rgb<int> colour) {
        Convert_RGB_To_HSL<Division>(&colour.red, &colour.green, &colour.blue);
        return {colour.red, colour.green, colour.blue};
    }

    static Rgb<int> ToRgb(Hls colour) {
        HslToRgbInLoops<Division>(&colour.hue, &colour.lightness, &colour.saturation);
        return {colour.hue & 0xff, colour.lightness & 0xff, colour.saturation & 0xff};
    }
};

/// A mode that composes a colour of hue, lightness and saturation. `InLoops` gives the same as part of a loop, by that
/// way to divide.
template <class Composition, class Conversion = PlainConversion>
struct HlsMode {
    template <class Division>
    using InLoops = HlsMode<Composition, LoopConversion<Division>>;

    Rgb<int> operator()(Rgb<int> source, Rgb<int> fill) const {
        return Conversion::ToRgb(Composition()(Conversion::ToHls(source), Conversion::ToHls(fill)));
    }
};

/// The fill's hue.
struct HueOfFill {
    Hls operator()(Hls source, Hls fill) const { return {fill.hue, source.lightness, source.saturation}; }
};

/// Named for saturation, but it is the fill's lightness that is taken: a grey fill does not turn the source grey, it
/// relights it.
struct LightnessOfFill {
    Hls operator()(Hls source, Hls fill) const { return {source.hue, fill.lightness, source.saturation}; }
};

/// The fill's hue and lightness with the source's saturation: the fill's shapes show, in the source's strength of
/// colour.
struct SaturationOfSource {
    Hls operator()(Hls source, Hls fill) const { return {fill.hue, fill.lightness, source.saturation}; }
};

using Hue = HlsMode<HueOfFill>;
using Saturation = HlsMode<LightnessOfFill>;
using Color = HlsMode<SaturationOfSource>;

/// The fill itself: mode normal, before opacity.
struct Normal {
    Rgb<int> operator()(Rgb<int> /*source*/, Rgb<int> fill) const { return fill; }
    Lane OfBytes(Lane /*source*/, Lane fill) const { return fill; }
};

}  // namespace ombrix
