// Which value an effect refuses, and what it would have taken.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/accepted_range.h"
#include "catalogue/trial.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

/// A value that a property is given.
struct GivenValue {
    std::string property;
    host::Value value;
};

/// Sets all values but those of one property.
OMBRIX_API Prepare WithValues(std::vector<GivenValue> values, const std::string& without = {});

struct Refusal {
    host::PropertyInfo property;
    std::int64_t value;  ///< given, or the initial one
    Range accepted;      ///< with all other values as given
};

/// The Integer property that alone keeps the effect from working; nothing when it is not one alone. `setPictures` gives
/// the object pictures that it needs.
OMBRIX_API std::optional<Refusal> FindRefusal(host::Host& host, const host::ClassInfo& type,
                                              const std::vector<GivenValue>& given, const Prepare& setPictures);

}  // namespace ombrix::catalogue
