// The formula of the effects that make channels lighter or darker by a fixed amount.
#pragma once

#include <algorithm>

#include "engine/lane.h"

namespace ombrix {

/// Shifts each colour channel by its own offset; results saturate at 0 and 255.
struct ChannelShift {
    Rgb<int> offset;

    /// In 8 bits: an offset is added to no more than leaves 255, or taken from no less than leaves 0.
    class ByBytes {
      public:
        ByBytes(const ChannelShift& shift, const WordFormat& format)
            : up_(format.InMemory(shift.offset, [](int offset) { return std::max(offset, 0); })),
              down_(format.InMemory(shift.offset, [](int offset) { return std::max(-offset, 0); })) {}

        std::uint8_t operator()(std::size_t byte, std::uint8_t source) const {
            const std::uint8_t up = up_[byte];
            const std::uint8_t down = down_[byte];
            const auto raised = static_cast<std::uint8_t>(std::min<std::uint8_t>(source, ~up) + up);
            return static_cast<std::uint8_t>(std::max(raised, down) - down);
        }

      private:
        BlockBytes up_;
        BlockBytes down_;
    };
};

/// The offsets that make sense: the ends turn every value into 0 or 255.
constexpr bool IsChannelOffset(std::int64_t offset) { return offset >= -255 && offset <= 255; }

}  // namespace ombrix
