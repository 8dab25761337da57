#include "engine/lane.h"

namespace ombrix {

const std::uint16_t kHiddenZero = 0;

}  // namespace ombrix
