// The formula of the sepia effect.
#pragma once

#include "effects/channel_shift.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Keeps the luma of a colour and replaces its chroma by a fixed amount of the I component of YIQ.
///
/// A channel is the luma, a whole number, plus its share of I, cut to a whole number and saturated. So it is the luma
/// plus the whole number below the share; no share is so near to the one above that rounding would reach it.
struct SepiaTone : ByGrey {
    static constexpr bool staysInBytes = true;
    static constexpr bool tellsChannelsApart = true;
    static constexpr GreyWeights weights = kRec601;

    ChannelShift shift;

    /// The weights are those of I in red, green and blue.
    explicit SepiaTone(double strength)
        : shift({Floor(0.956 * strength), Floor(-0.272 * strength), Floor(-1.105 * strength)}) {}

    template <class V>
    V operator()(V luma, const Channels<V>& of) const {
        return shift(luma, of);
    }

  private:
    static int Floor(double value) {
        const int cut = static_cast<int>(value);
        return cut > value ? cut - 1 : cut;
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
