// Calls of an effect for rows as a plug-in can have them.
#pragma once

#include <functional>

#include "ombrix/host.h"
#include "ombrix/rows.h"

namespace ombrix::catalogue {

/// Puts the effect's result for `source` into `destination`. Where both are the same rows, the effect changes them in
/// place. Both have the layout of a RowPlan, with row bytes that plug-ins can have. `refuse` is called when the effect
/// has failed, and throws.
void CallOnRows(host::Host& host, const host::Object& effect, const host::Rows& source, const host::Rows& destination,
                const std::function<void()>& refuse);

}  // namespace ombrix::catalogue
