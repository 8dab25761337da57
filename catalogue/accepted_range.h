// The values that an effect accepts, found by trying it on a picture of one pixel: records do not tell.
#pragma once

#include <optional>
#include <string>

#include "catalogue/trial.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// The values that an Integer property may have on a prepared object, otherwise new. kFarthest stands for an end that
/// was not found. Nothing when no value works.
std::optional<Range> AcceptedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                   const Prepare& prepare);

/// "-100 to 100", "0 or more", "any number"
OMBRIX_API std::string Described(const Range& range);

}  // namespace ombrix::catalogue
