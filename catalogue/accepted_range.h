// The values that an effect accepts, found by trying it on a picture of one pixel: records do not tell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/trial.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

struct Range {
    std::int64_t low;
    std::int64_t high;

    bool Holds(std::int64_t value) const { return low <= value && value <= high; }
};

/// No value farther from 0 is tried: an effect might take it and work for ages.
inline constexpr std::int64_t kFarthest = 1'000'000;

/// The values that an Integer property may have on a prepared object, otherwise new. kFarthest stands for an end that
/// was not found. Nothing when no value works.
std::optional<Range> AcceptedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                   const Prepare& prepare);

/// "-100 to 100", "0 or more", "any number"
std::string Described(const Range& range);

}  // namespace ombrix::catalogue
