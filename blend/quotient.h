// Division of whole numbers, many at a time.
#pragma once

namespace ombrix {

/// The quotient of whole numbers from 0 to 65535, truncated; the divisor is not 0. A quotient that is not whole is
/// farther from the next whole number than single precision rounds, so this is exact; and unlike whole numbers, those
/// of single precision can be divided many at a time.
inline int Quotient(int dividend, int divisor) {
    return static_cast<int>(static_cast<float>(dividend) / static_cast<float>(divisor));
}

}  // namespace ombrix
