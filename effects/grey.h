// The formula of the grayscale effect.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Replaces all channels by the grey of the colour.
struct Grey : ByGrey {
    static constexpr bool staysInBytes = true;

    GreyWeights weights;

    explicit Grey(const GreyWeights& weights) : weights(weights) {}

    template <class V>
    V operator()(V grey) const {
        return grey;
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
