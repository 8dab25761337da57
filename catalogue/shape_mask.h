// Which property of an effect tells where a picture of another property shows.
#pragma once

#include <optional>
#include <string>

#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// What Effect::ShapeMaskOf says, found by trying all other properties on an otherwise new object:
/// one half of a mask has to show the result without it, the other half the source. Both are allowed to be off by
/// one level in each channel, as masks weigh in 256ths. Nothing when no property does that.
std::optional<ShapeMask> FindShapeMask(host::Host& host, const host::ClassInfo& type, const std::string& property);

}  // namespace ombrix::catalogue
