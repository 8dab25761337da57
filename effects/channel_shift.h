// The formula of the effects that make channels lighter or darker by a fixed amount.
#pragma once

#include "engine/pixel.h"

namespace ombrix {

/// Shifts each colour channel by its own offset; results saturate at 0 and 255.
struct ChannelShift {
    Rgb<int> offset;

    Rgb<int> operator()(Rgb<int> source) const {
        return {ClampToByte(source.red + offset.red), ClampToByte(source.green + offset.green),
                ClampToByte(source.blue + offset.blue)};
    }
};

/// The offsets that make sense: the ends turn every value into 0 or 255.
constexpr bool IsChannelOffset(std::int64_t offset) { return offset >= -255 && offset <= 255; }

}  // namespace ombrix
