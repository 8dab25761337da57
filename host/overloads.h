// Which of several methods of one name a call means.
#pragma once

#include <string>
#include <vector>

#include "host/object.h"
#include "host/registry.h"

namespace ombrix::host {

/// What it costs to hand a value to a parameter or property of a type: 0 when it is of just this type, more the
/// further it is from it, and -1 when it cannot be.
int Cost(const Value& value, std::string_view type);

struct Binding {
    const Method* method = nullptr;
    std::vector<Value> values;  ///< one for each parameter
};

/// The method that fits the arguments best: without making up nil for what is missing, if there is one, and then
/// with the types that are nearest to the arguments'. An Error when none fits or two fit equally well; `callee` is
/// what it calls them.
Binding ChooseOverload(const std::string& callee, const std::vector<const Method*>& candidates,
                       const std::vector<Argument>& arguments);

}  // namespace ombrix::host
