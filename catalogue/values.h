// What the values of an effect's property are, found by trying.
#pragma once

#include "catalogue/trial.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// Adds range and bounds to what is known of a property, and whether the effect refuses the initial value; `prepare`
/// gives an object what it needs.
Values FindValues(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property, Values known,
                  const Prepare& prepare);

}  // namespace ombrix::catalogue
