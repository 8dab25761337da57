// The formula of the invert effect.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Replaces each channel by its complement.
struct Negative : ByChannel {
    static constexpr bool staysInBytes = true;

    template <class V>
    V operator()(V s) const {
        return 255 - s;
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
