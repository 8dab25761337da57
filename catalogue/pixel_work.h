// Whether an effect's result depends, pixel by pixel, on nothing but the pixel, found by trying it with many values.
#pragma once

#include <functional>

#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

struct PixelWork {
    bool isPixelByPixel = false;
    bool keepsAlpha = false;
    PartRoles roles{};  ///< of all pictures and points
};

/// What Effect::WorksPixelByPixel, KeepsAlpha and RolesInParts say. `valuesOf`: of a property.
PixelWork FindPixelWork(host::Host& host, const host::ClassInfo& type, const Needs& needs,
                        const std::function<const Values&(const host::PropertyInfo&)>& valuesOf);

}  // namespace ombrix::catalogue
