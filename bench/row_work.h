// The row work of an effect on its own: what is left of a call when locks, records and new pictures are taken off.
#pragma once

#include <functional>

#include "engine/effect_params.h"
#include "engine/mp_image_filter.h"

namespace ombrix::bench {

/// Takes the work of one call: a complete record, and the worker that the effect chose. Both are valid until it
/// returns; the picture is processed by `Execute(params, worker, ...)`, as often as wanted.
using RowWorkReceiver = std::function<void(GenericMPParams* params, RowWorker worker)>;

/// While this lives, calls of the effect go as far as the row work and give it to `receiver` instead of doing it.
/// One at a time.
class RowWorkCapture {
  public:
    RowWorkCapture(MPImageFilterData& base, RowWorkReceiver receiver);
    ~RowWorkCapture();
    RowWorkCapture(const RowWorkCapture&) = delete;
    RowWorkCapture& operator=(const RowWorkCapture&) = delete;

  private:
    MPImageFilterData& base_;
    MPImageFilterData entries_;
};

}  // namespace ombrix::bench
