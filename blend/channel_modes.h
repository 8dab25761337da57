// The blend modes that work on each channel by itself.
//
// Several divide by 256 where 255 would be exact, or by 127, or add up to 255 in one place and 256 in another. All of
// that is meant: pictures made with these modes must not change. The comments say what a user sees of it.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// The fill itself: mode normal, before opacity.
struct Normal : ByChannel {
    static constexpr bool staysInBytes = true;
    template <class V>
    V operator()(V /*s*/, V f) const {
        return f;
    }
};

/// Divides by 256: white on white gives 254.
struct Multiply : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return s * f >> 8;
    }
};

struct Screen : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return 255 - (255 - s) * (255 - f) / 255;
    }
};

/// Multiplies where `chooser` is dark and screens where it is bright. Divides by 127, not 127.5: both ends are reached,
/// and the result jumps by one step more than expected in the middle.
template <class V>
inline V MultiplyOrScreen(V chooser, V s, V f) {
    const auto isDark = chooser < 128;
    const V quotient = (isDark ? s : 255 - s) * (isDark ? f : 255 - f) / 127;
    return isDark ? quotient : 255 - quotient;
}

struct Overlay : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return MultiplyOrScreen(s, s, f);
    }
};

struct HardLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return MultiplyOrScreen(f, s, f);
    }
};

struct Darken : ByChannel {
    static constexpr bool staysInBytes = true;
    template <class V>
    V operator()(V s, V f) const {
        return Min(s, f);
    }
};

struct Lighten : ByChannel {
    static constexpr bool staysInBytes = true;
    template <class V>
    V operator()(V s, V f) const {
        return Max(s, f);
    }
};

/// A white fill gives white even on black.
struct ColorDodge : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V quotient = Min(Quotient(s * 256, Max(255 - f, 1)), 255);
        return f == 255 ? Same<V>(255) : quotient;
    }
};

/// A black fill gives black even on white.
struct ColorBurn : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V quotient = Min(Quotient((255 - s) * 256, Max(f, 1)), 255);
        return f == 0 ? Same<V>(0) : 255 - quotient;
    }
};

/// Each term is cut by itself, so a fill of the middle value does not leave the source quite as it was.
struct SoftLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V square = s * s;
        return Min((square >> 8) + (s * f >> 7) - HighProduct(square, 2 * f), 255);
    }
};

struct Difference : ByChannel {
    static constexpr bool staysInBytes = true;
    template <class V>
    V operator()(V s, V f) const {
        return Max(s, f) - Min(s, f);
    }
};

/// s + f - 2 * s * f / 255; twice the product would not fit into 16 bits.
struct Exclusion : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V product = s * f;
        const V quotient = product / 255;
        const V rest = product - quotient * 255;
        return s + f - 2 * quotient - (rest < 128 ? Same<V>(0) : Same<V>(1));
    }
};

/// 255 and not 256: a fill of 127 darkens to 254 at most, and one of 128 lifts black to 1.
struct PinLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V twice = 2 * f;
        return Max(Min(s, twice), DifferenceFromZero(twice, Same<V>(255)));
    }
};

struct SharpLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V square = s * s;
        const V sum = (square >> 8) + HighProduct(f * f, 2 * s);
        return Min(DifferenceFromZero(sum, HighProduct(square, 2 * f)), 255);
    }
};

/// Burns where the source is dark and dodges where it is bright. A black source gives 127 whatever the fill: black
/// areas turn grey.
struct VividLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const auto isDark = s < 128;
        const V dividend = 128 * (isDark ? 255 - f : f);
        const V quotient = Min(Quotient(dividend, Max(isDark ? s : 255 - s, 1)), 255);
        return s == 0 ? Same<V>(127) : isDark ? 255 - quotient : quotient;
    }
};

struct LinearLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return Min(DifferenceFromZero(s + 2 * f, Same<V>(255)), 255);
    }
};

struct PowerLight : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        const V square = s * s;
        const V sum = (square >> 8) + (f * f >> 8) + HighProduct(f * f, 2 * s);
        return Min(DifferenceFromZero(sum, HighProduct(square, 2 * f)), 255);
    }
};

struct LinearBurn : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return DifferenceFromZero(s + f, Same<V>(255));
    }
};

struct LinearDodge : ByChannel {
    template <class V>
    V operator()(V s, V f) const {
        return Min(s + f, 255);
    }
};

/// The same values as linear dodge; a mode of its own since programs name it.
struct Add : LinearDodge {};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
