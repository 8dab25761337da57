// An effect's properties as parameters of frei0r.
#pragma once

#include <string>
#include <vector>

#include "bridges/common/effects.h"
#include "bridges/frei0r/interface.h"

namespace ombrix::bridge {

struct Parameter {
    const Property* property = nullptr;
    int type = F0R_PARAM_STRING;  ///< or a double from 0 to 1 over the range, or a Boolean
    double low = 0, high = 1;     ///< of a double
    std::string explanation;      ///< with the range in words

    /// What a value from 0 to 1 stands for, to the nearest whole number where it is an Integer.
    double Meant(double share) const;
    double ShareOf(double value) const;
};

/// The parameters that `effect`, which has to outlive them, makes. Booleans are the last: some programs give parameters
/// by position.
std::vector<Parameter> ParametersOf(const Effect& effect);

/// What a new instance has: the effect's own, or the least that it accepts.
std::string InitialText(const Parameter& parameter);
double InitialValue(const Parameter& parameter);

}  // namespace ombrix::bridge
