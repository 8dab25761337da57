// What a formula is: a small type that says how colours change and nothing else. It names its kind by its base.
//
//   ByChannel   each channel by itself:  V operator()(V source)            a mode: V operator()(V source, V fill)
//   ByGrey      the grey of a colour, by `weights`, then each channel of that by itself:  V operator()(V grey)
//   ByColour    the colour as a whole:   Rgb<V> operator()(Rgb<V> source)  a mode: ... (Rgb<V> source, Rgb<V> fill)
//   ByTable     each channel by its entry in a table of 256: no function, but the member `tables`
//
// V is a template parameter: `int` for one pixel, which is the definition, and vectors in the loops (pixels/numbers.h).
// Channels are from 0 to 255, and so are results.
#pragma once

#include "pixels/colour.h"
#include "pixels/grey.h"
#include "pixels/numbers.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

struct ByChannel {
    using Kind = ByChannel;
    /// Set to true by formulas of which no step leaves 0 to 255: twice as many bytes fit into a vector.
    static constexpr bool staysInBytes = false;
    /// Set to true by formulas that treat channels differently: they take one more argument, `const Channels<V>& of`,
    /// where `of(Rgb<int>)` is each channel's own number.
    static constexpr bool tellsChannelsApart = false;
};

/// Everything that ByChannel has, and `weights`, a GreyWeights.
struct ByGrey : ByChannel {
    using Kind = ByGrey;
};

struct ByColour {
    using Kind = ByColour;
};

/// `tables` is an Rgb<const std::uint8_t*>.
struct ByTable {
    using Kind = ByTable;
};

/// Selects a number for each lane: each member has all bits set in the lanes of its channel.
template <class V>
struct Channels {
    V red;
    V green;
    V blue;

    V operator()(Rgb<int> number) const {
        return (Same<V>(number.red) & red) | (Same<V>(number.green) & green) | (Same<V>(number.blue) & blue);
    }
};

// ---- One pixel: the definition, which the loops are compared with ---------------------------------------------------

template <class Formula, class... Fill>
int ApplyToChannel(const Formula& formula, Channels<int> channel, int source, Fill... fill) {
    if constexpr (Formula::tellsChannelsApart) {
        return formula(source, fill..., channel);
    } else {
        return formula(source, fill...);
    }
}

/// Applies a formula to one colour; that of a mode to one colour of the source and one of the fill.
template <class Formula, class... Fill>
Rgb<int> Apply(const Formula& formula, Rgb<int> source, Fill... fill) {
    using Kind = typename Formula::Kind;
    if constexpr (std::is_same_v<Kind, ByColour>) {
        return formula(source, fill...);
    } else if constexpr (std::is_same_v<Kind, ByTable>) {
        return {formula.tables.red[source.red], formula.tables.green[source.green], formula.tables.blue[source.blue]};
    } else {
        if constexpr (std::is_same_v<Kind, ByGrey>)
            source.red = source.green = source.blue = formula.weights.Of(source);
        return {ApplyToChannel(formula, {-1, 0, 0}, source.red, fill.red...),
                ApplyToChannel(formula, {0, -1, 0}, source.green, fill.green...),
                ApplyToChannel(formula, {0, 0, -1}, source.blue, fill.blue...)};
    }
}

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
