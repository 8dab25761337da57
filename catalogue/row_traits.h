// What can be done with the channels of an effect's pictures, found by trying.
#pragma once

#include "catalogue/trial.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

/// Whether red and blue can be exchanged before as well as after the effect.
bool TakesRedForBlue(host::Host& host, const host::ClassInfo& type, const Prepare& prepare);
/// Whether the result is the first picture of its size and depth that the effect makes; see Host::ResultPlace.
bool LandsInPlace(host::Host& host, const host::ClassInfo& type, const Prepare& prepare);

}  // namespace ombrix::catalogue
