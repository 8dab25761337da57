// Which values an effect takes. No record says so; the effect itself does, when it is tried.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "host/host.h"

namespace ombrix::cli {

/// The property that holds the outcome of an object's last call, 0 when all went well.
inline constexpr std::string_view kErrorCodeProperty = "ErrorCode";

/// Whether the object, of the class given, has that property and says that its last call failed.
bool ReportsError(const host::Host& host, const host::ClassInfo& type, const host::Object& object);

struct Range {
    std::int64_t low;
    std::int64_t high;

    bool Holds(std::int64_t value) const { return low <= value && value <= high; }
};

/// The values of an Integer property that an effect takes, all other properties left as a new object has them: found
/// out on a picture of one pixel. Nothing when it takes none that way, or when it takes numbers without end.
std::optional<Range> AcceptedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property);

/// An effect is not asked for values farther from 0 than this: it might take the number at its word and work
/// accordingly long.
inline constexpr std::int64_t kFarthest = 1'000'000;

/// Sets up a new object before a value is tried on it, such as with the pictures that it cannot do without.
using Prepare = std::function<void(const host::Object&)>;

/// The same where numbers without end may be taken: such an end is at kFarthest. Nothing when no value is taken.
std::optional<Range> TriedRange(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                const Prepare& prepare);

}  // namespace ombrix::cli
