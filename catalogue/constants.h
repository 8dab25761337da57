// Which constants a property takes: records keep them by class.
#pragma once

#include <string>
#include <vector>

#include "catalogue/accepted_range.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

/// The constants of the property's class that are for this Integer: those whose first word the property's name ends
/// with, as in MODE_HUE and BlendMode. Of the others, the only other Integer has all, or else the one whose accepted
/// range fits them closest, tried on prepared objects. Empty when it has none.
std::vector<host::ConstantInfo> ConstantsFor(
    host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property,
    const Prepare& prepare = [](const host::Object&) {});

/// The constants' names without their common beginning, in small letters: "overlay" for MODE_OVERLAY.
std::vector<std::string> ShortNames(const std::vector<host::ConstantInfo>& constants);

/// The constant that is meant by its name or its short name, in any case, or null. "color-dodge" is color_dodge.
const host::ConstantInfo* FindConstant(const std::vector<host::ConstantInfo>& constants, std::string_view given);

}  // namespace ombrix::catalogue
