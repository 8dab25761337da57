// The blend modes that work on a colour as a whole.
#pragma once

#include "blend/colour_spaces.h"
#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// The fill's hue.
struct Hue : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s, Rgb<V> f) const {
        const Hls<V> source = ToHls(s);
        return ToRgb(Hls<V>{ToHls(f).hue, source.lightness, source.saturation});
    }
};

/// Named for saturation, but it is the fill's lightness that is taken: a grey fill does not turn the source grey, it
/// relights it.
struct Saturation : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s, Rgb<V> f) const {
        const Hls<V> source = ToHls(s);
        return ToRgb(Hls<V>{source.hue, ToHls(f).lightness, source.saturation});
    }
};

/// The fill's hue and lightness with the source's saturation: the fill's shapes show, in the source's strength of
/// colour.
struct Color : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s, Rgb<V> f) const {
        const Hls<V> fill = ToHls(f);
        return ToRgb(Hls<V>{fill.hue, fill.lightness, ToHls(s).saturation});
    }
};

/// The luma of the fill with the chroma of the source, by way of YUV in whole numbers. The weights of U are rounded and
/// sum to 0.007: on a white source with a black fill, blue comes out as 2.
struct Luminosity : ByColour {
    template <class V>
    Rgb<V> operator()(Rgb<V> s, Rgb<V> f) const {
        const auto red = ToDoubles(s.red);
        const auto green = ToDoubles(s.green);
        const auto blue = ToDoubles(s.blue);
        const auto y = Truncated((ToDoubles(f.red) * 0.299 + ToDoubles(f.green) * 0.587) + ToDoubles(f.blue) * 0.114);
        const auto u = Truncated((red * -0.14 + green * -0.289) + blue * 0.436);
        const auto v = Truncated((red * 0.615 + green * -0.515) + blue * -0.1);
        return {Byte(y + v * 1.14), Byte((y - u * 0.395) - v * 0.581), Byte(y + u * 2.032)};
    }

  private:
    template <class D>
    static auto Byte(D number) {
        return Max(Min(ToInts(number), 255), 0);
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
