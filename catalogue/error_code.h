// What an effect reports about its last call.
#pragma once

#include <string_view>

#include "ombrix/api.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {
/// 0 when all went well.
inline constexpr std::string_view kErrorCodeProperty = "ErrorCode";

/// False also for an object without the property.
OMBRIX_API bool ReportsError(const host::Host& host, const host::Object& object);

}  // namespace ombrix::catalogue
