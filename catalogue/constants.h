// Which constants a property takes: records keep them by class.
#pragma once

#include <string>
#include <vector>

#include "catalogue/trial.h"
#include "ombrix/catalogue.h"

namespace ombrix::catalogue {

/// The constants of the property's class that are for this Integer: those whose first word the property's name ends
/// with, as in MODE_HUE and BlendMode. Of the others, the only other Integer has all, or else the one whose accepted
/// range fits them closest, tried on prepared objects. Empty when it has none.
std::vector<Constant> ConstantsFor(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
                                   const Prepare& prepare);

/// With the words that these constants have together.
OMBRIX_API std::vector<Constant> WithWords(const std::vector<host::ConstantInfo>& constants);

OMBRIX_API std::vector<std::string> WordsOf(const std::vector<Constant>& constants);

}  // namespace ombrix::catalogue
