// An effect's properties as those of an operation of GEGL.
#pragma once

#include <glib-object.h>

#include <string>
#include <vector>

#include "bridges/common/effects.h"

namespace ombrix::bridge {

/// Where in a point, or none.
enum class Coordinate { None, X, Y };

struct Setting {
    std::string name;
    const Property* property = nullptr;
    Coordinate coordinate = Coordinate::None;
};

/// All but pictures, and points at which these lie: GEGL has operations of its own that move and crop. `effect` has to
/// outlive them.
std::vector<Setting> SettingsOf(const Effect& effect);

/// With the accepted range for sliders. What an effect refuses unless given is the least that it accepts.
GParamSpec* SpecOf(const Effect& effect, const Setting& setting);

}  // namespace ombrix::bridge
