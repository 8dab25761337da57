// An effect on pixels as GEGL hands them out: R'G'B'A of 8 bits.
#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "bridges/common/effects.h"

namespace ombrix::bridge {

/// For any thread; calls take turns.
class PixelEffect {
  public:
    /// `effect` has to outlive it. `second`: the property that takes the second picture, or null.
    PixelEffect(const Effect& effect, const Property* second);

    template <class Value>
    void Set(const Property& property, const Value& value) {
        const std::lock_guard guard(mutex_);
        object_.Set(property.name, value);
    }

    /// Puts the result for `width` times `height` pixels into `out`, which may be `in`. An Error when it is refused.
    void Apply(const std::uint8_t* in, std::uint8_t* out, std::int64_t width, std::int64_t height);
    /// The same with a second picture of the same size, which shows where it is not transparent.
    void Apply(const std::uint8_t* in, const std::uint8_t* second, std::uint8_t* out, std::int64_t width,
               std::int64_t height);

  private:
    const Property* second_;
    std::mutex mutex_;
    Object object_;
    std::vector<std::uint8_t> mask_, masked_;
};

}  // namespace ombrix::bridge
