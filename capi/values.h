// Values of properties as text.
#pragma once

#include <string_view>

#include "ombrix/catalogue.h"

namespace ombrix::capi {

/// A constant of the property's by its name or short name, a number, "true", "60%" or "x,y", for a property of this
/// type. A Failure says what the property takes.
host::Value ReadValue(host::Host& host, const catalogue::Effect& effect, const catalogue::Property& property,
                      std::string_view text);

}  // namespace ombrix::capi
