// A catalogue as JSON.
#pragma once

#include <string>
#include <vector>

#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// See Catalogue::Json.
std::string ToJson(const host::Host& host, const Catalogue& catalogue, const std::vector<host::BrokenPlugin>& broken,
                   const Effect* only, int indent);

}  // namespace ombrix::catalogue
