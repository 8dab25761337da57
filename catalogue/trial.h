// One try of an effect on a small picture: what records cannot tell is found so.
#pragma once

#include <cstdint>
#include <functional>

#include "ombrix/api.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {
/// Sets up an object before a trial, for example with the pictures that it needs.
using Prepare = std::function<void(const host::Object&)>;

/// Bytes of all values, with runs of black and white as masks have. The same for the same seed.
host::Picture TrialPicture(host::Host& host, std::int64_t width, std::int64_t height, int depth, std::uint32_t seed);

/// The effect's result for the source on a new, prepared object; nil when it fails.
OMBRIX_API host::Picture Tried(host::Host& host, const host::ClassInfo& type, const host::Picture& source,
                               const Prepare& prepare);

/// Whether size, depth and pixels are the same. Neither is nil.
bool IsSamePicture(const host::Picture& a, const host::Picture& b);

}  // namespace ombrix::catalogue
