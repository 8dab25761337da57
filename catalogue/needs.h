// What a new object of an effect has to be given before it works, found by trying it on a picture of one pixel.
#pragma once

#include "catalogue/trial.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// Pictures without which it gives none, and an Integer whose initial value it refuses.
Needs FindNeeds(host::Host& host, const host::ClassInfo& type);

/// Sets what is needed. The pictures are small ones of varied pixels.
Prepare WithNeeds(host::Host& host, const Needs& needs);

}  // namespace ombrix::catalogue
