// Values that an effect takes although they mean nothing of their own, found by trying it on a small picture.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/trial.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// Sets a picture of varied pixels for each of these properties.
OMBRIX_API Prepare WithTrialPictures(host::Host& host, const std::vector<std::string>& properties);

/// The constant that an Integer property works as when it has a value that is none of its constants. Nothing when the
/// value is one of them, or gives a result of its own, or the constants cannot be told apart. `prepare` sets the other
/// properties.
OMBRIX_API std::optional<Constant> WorksAs(host::Host& host, const host::ClassInfo& type,
                                           const host::PropertyInfo& property, std::int64_t value,
                                           const Prepare& prepare);

/// The values of a Double beyond which the result stays the same. Only ends that people choose are tried: from 0 or -n
/// to n, where n is 1, 100 or 255. Nothing when it has none of them.
OMBRIX_API std::optional<Bounds> MeaningfulBounds(host::Host& host, const host::ClassInfo& type,
                                                  const host::PropertyInfo& property, const Prepare& prepare);

/// Whether the effect gives the picture back as it is.
OMBRIX_API bool ChangesNothing(host::Host& host, const host::ClassInfo& type, const Prepare& prepare);

}  // namespace ombrix::catalogue
