// The one exception of the host library.
#pragma once

#include <stdexcept>

#include "ombrix/api.h"

namespace ombrix::host {

/// One sentence that names what is wrong and, where there is something, what would work.
class OMBRIX_API Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace ombrix::host
