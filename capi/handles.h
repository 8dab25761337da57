// What the opaque handles point to, and the records of the C interface in C++.
#pragma once

#include "ombrix/effect_on_rows.h"
#include "ombrix/ombrix.h"

struct ombrix_effect {
    ombrix_effect(ombrix::host::Host& host, const ombrix::catalogue::Effect& effect) : onRows(host, effect) {}
    ombrix::catalogue::EffectOnRows onRows;
};

namespace ombrix::capi {

/// A Failure when the record's size is none.
host::Rows RowsOf(const ombrix_rows* rows, const char* what);

}  // namespace ombrix::capi
