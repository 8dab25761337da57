// Pictures to try effects on.
#pragma once

#include <cstdint>

#include "ombrix/host.h"

namespace ombrix::catalogue {

/// A picture of noise: bytes of all values, with black and white more often than others, as masks have them.
host::Picture TrialPicture(host::Host& host, std::int64_t width, std::int64_t height, int depth, std::uint32_t seed);

}  // namespace ombrix::catalogue
