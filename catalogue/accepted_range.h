// The values that an effect accepts, found by trying it on a picture of one pixel: records do not tell.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "ombrix/host.h"

namespace ombrix::catalogue {

struct Range {
    std::int64_t low;
    std::int64_t high;

    bool Holds(std::int64_t value) const { return low <= value && value <= high; }
};

/// The values that an Integer property may have on an otherwise new object. Nothing when none works, or all do.
std::optional<Range> AcceptedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property);

/// No value farther from 0 is tried: an effect might take it and work for ages.
inline constexpr std::int64_t kFarthest = 1'000'000;

/// Sets up an object before a value is tried on it, for example with the pictures that it needs.
using Prepare = std::function<void(const host::Object&)>;

/// The same on a prepared object. kFarthest stands for an end that was not found. Nothing when no value works.
std::optional<Range> TriedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                const Prepare& prepare);

}  // namespace ombrix::catalogue
