// What the values of an effect's property are, found by trying.
#pragma once

#include <optional>
#include <vector>

#include "catalogue/accepted_range.h"
#include "catalogue/meaning.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

struct PropertyValues {
    host::Value initial;
    std::vector<host::ConstantInfo> constants;  ///< to choose from; see ConstantsFor
    std::optional<Range> range;                 ///< of an Integer without constants
    std::optional<Bounds> bounds;               ///< of a Double
    bool isRefused = false;                     ///< whether the effect refuses the initial value
};

/// `property` is one that the effect has or inherits. What cannot be found out is left out.
PropertyValues FindValues(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property);

}  // namespace ombrix::catalogue
