// The one exception of the host library.
#pragma once

#include <stdexcept>

namespace ombrix::host {

/// What went wrong, in one sentence that names the thing and, where there is one, what would work instead.
class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace ombrix::host
