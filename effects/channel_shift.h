// The formula of the effects that make channels lighter or darker by a fixed amount.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Shifts each channel by its own offset; results saturate at 0 and 255.
struct ChannelShift : ByChannel {
    static constexpr bool staysInBytes = true;
    static constexpr bool tellsChannelsApart = true;

    Rgb<int> up;    ///< added to no more than leaves 255
    Rgb<int> down;  ///< taken from no less than leaves 0

    /// Offsets from -255 to 255.
    constexpr explicit ChannelShift(Rgb<int> offset)
        : up{Max(offset.red, 0), Max(offset.green, 0), Max(offset.blue, 0)},
          down{Max(-offset.red, 0), Max(-offset.green, 0), Max(-offset.blue, 0)} {}

    template <class V>
    V operator()(V s, const Channels<V>& of) const {
        const V raised = Min(s, 255 - of(up)) + of(up);
        return DifferenceFromZero(raised, of(down));
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
