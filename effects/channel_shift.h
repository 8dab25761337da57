// The formula of the effects that make channels lighter or darker by a fixed amount.
#pragma once

#include <algorithm>

#include "engine/lane.h"

namespace ombrix {

/// Shifts each colour channel by its own offset; results saturate at 0 and 255.
struct ChannelShift {
    Rgb<int> offset;

    /// Never below 0: an offset is added, or taken away, on the way.
    class ByBytes {
      public:
        ByBytes(const ChannelShift& shift, const WordFormat& format)
            : up_(format.InMemory(shift.offset, [](int offset) { return std::max(offset, 0); })),
              down_(format.InMemory(shift.offset, [](int offset) { return std::max(-offset, 0); })) {}

        Lane operator()(Place place, Lane source) const {
            return DifferenceFromZero(Min(source + up_.At(place), 255), down_.At(place));
        }

      private:
        BlockConstants up_;
        BlockConstants down_;
    };
};

/// The offsets that make sense: the ends turn every value into 0 or 255.
constexpr bool IsChannelOffset(std::int64_t offset) { return offset >= -255 && offset <= 255; }

}  // namespace ombrix
