// The blend modes as formulas: each takes a colour of the source and one of the fill and gives the blended colour, with
// channels from 0 to 255. Opacity, masks and places are not their business.
//
// Several divide by 256 where 255 would be exact, or by 127, or add up to 255 in one place and 256 in another. All of
// that is meant: pictures made with these modes must not change. The comments say what a user sees of it.
#pragma once

#include <algorithm>
#include <cstdlib>

#include "blend/colour_spaces.h"
#include "engine/pixel.h"

namespace ombrix {

// ---- Modes that work on each channel by itself -----------------------------------------------------------------

/// Applies a function of two channel values to all three channels.
template <int (*value)(int source, int fill)>
struct PerChannel {
    Rgb<int> operator()(Rgb<int> s, Rgb<int> f) const {
        return {value(s.red, f.red), value(s.green, f.green), value(s.blue, f.blue)};
    }
};

/// Divides by 256: white on white gives 254, and whatever is multiplied loses up to one step.
inline int MultiplyValue(int s, int f) { return s * f >> 8; }

inline int ScreenValue(int s, int f) { return 255 - (255 - s) * (255 - f) / 255; }

/// Multiplies where `chooser` is dark and screens where it is bright. 127 in both branches, not 127.5: the result jumps
/// by up to one step more than expected in the middle, and reaches both ends.
inline int MultiplyOrScreen(int chooser, int s, int f) {
    return chooser < 128 ? s * f / 127 : 255 - (255 - s) * (255 - f) / 127;
}

inline int OverlayValue(int s, int f) { return MultiplyOrScreen(s, s, f); }

inline int HardLightValue(int s, int f) { return MultiplyOrScreen(f, s, f); }

inline int DarkenValue(int s, int f) { return std::min(s, f); }

inline int LightenValue(int s, int f) { return std::max(s, f); }

/// A white fill gives white even on black.
inline int ColorDodgeValue(int s, int f) {
    const int quotient = s * 256 / std::max(255 - f, 1);
    return f == 255 ? 255 : std::min(quotient, 255);
}

/// A black fill gives black even on white.
inline int ColorBurnValue(int s, int f) {
    const int quotient = (255 - s) * 256 / std::max(f, 1);
    return f == 0 ? 0 : 255 - std::min(quotient, 255);
}

/// Each term is cut by itself, so a fill of the middle value does not leave the source quite as it was.
inline int SoftLightValue(int s, int f) { return ClampToByte((s * s >> 8) + (s * f >> 7) - (s * s * f >> 15)); }

inline int DifferenceValue(int s, int f) { return std::abs(s - f); }

inline int ExclusionValue(int s, int f) { return ClampToByte(s + f - 2 * s * f / 255); }

/// 255 and not 256: a fill of 127 darkens to 254 at most, and one of 128 lifts black to 1.
inline int PinLightValue(int s, int f) {
    const int floor = 2 * f - 255;
    return s < floor ? floor : std::min(s, 2 * f);
}

inline int SharpLightValue(int s, int f) { return ClampToByte((s * s >> 8) - (s * s * f >> 15) + (s * f * f >> 15)); }

/// Burns where the source is dark and dodges where it is bright. A black source gives 127 whatever the fill: black
/// areas turn grey.
inline int VividLightValue(int s, int f) {
    const bool isDark = s <= 127;
    const int divisor = 2 * std::max(isDark ? s : 255 - s, 1);
    const int quotient = std::min((isDark ? 255 - f : f) * 256 / divisor, 255);
    return s == 0 ? 127 : isDark ? 255 - quotient : quotient;
}

inline int LinearLightValue(int s, int f) { return ClampToByte(s + 2 * f - 255); }

inline int PowerLightValue(int s, int f) {
    return ClampToByte((s * s >> 8) - (s * s * f >> 15) + (f * f >> 8) + (s * f * f >> 15));
}

inline int LinearBurnValue(int s, int f) { return std::max(s + f - 255, 0); }

inline int LinearDodgeValue(int s, int f) { return std::min(s + f, 255); }

/// The same values as linear dodge; a mode of its own since programs name it.
inline int AddValue(int s, int f) { return std::min(s + f, 255); }

// ---- Modes that work on a colour as a whole ----------------------------------------------------------------------

/// The luma of the fill with the chroma of the source, by way of YUV in whole numbers. The weights of U are rounded and
/// sum to 0.007: on a white source with a black fill, blue comes out as 2.
struct Luminosity {
    Rgb<int> operator()(Rgb<int> s, Rgb<int> f) const {
        const auto y = static_cast<int>((f.red * 0.299 + f.green * 0.587) + f.blue * 0.114);
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

    static Hls Of(Rgb<int> colour) {
        Convert_RGB_To_HSL(&colour.red, &colour.green, &colour.blue);
        return {colour.red, colour.green, colour.blue};
    }

    Rgb<int> ToRgb() const {
        Rgb<int> colour{hue, lightness, saturation};
        Convert_HSL_To_RGB(&colour.red, &colour.green, &colour.blue);
        return {colour.red & 0xff, colour.green & 0xff, colour.blue & 0xff};
    }
};

/// The fill's hue.
struct Hue {
    Rgb<int> operator()(Rgb<int> source, Rgb<int> fill) const {
        const Hls s = Hls::Of(source);
        return Hls{Hls::Of(fill).hue, s.lightness, s.saturation}.ToRgb();
    }
};

/// Named for saturation, but it is the fill's lightness that is taken: a grey fill does not turn the source grey, it
/// relights it.
struct Saturation {
    Rgb<int> operator()(Rgb<int> source, Rgb<int> fill) const {
        const Hls s = Hls::Of(source);
        return Hls{s.hue, Hls::Of(fill).lightness, s.saturation}.ToRgb();
    }
};

/// The fill's hue and lightness with the source's saturation: the fill's shapes show, in the source's strength of
/// colour.
struct Color {
    Rgb<int> operator()(Rgb<int> source, Rgb<int> fill) const {
        const Hls f = Hls::Of(fill);
        return Hls{f.hue, f.lightness, Hls::Of(source).saturation}.ToRgb();
    }
};

/// The fill itself: mode normal, before opacity.
struct Normal {
    Rgb<int> operator()(Rgb<int> /*source*/, Rgb<int> fill) const { return fill; }
};

}  // namespace ombrix
