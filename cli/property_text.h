// What the values of an effect's property are, in words.
#pragma once

#include <string>

#include "ombrix/catalogue.h"

namespace ombrix::cli {

/// What values the property takes, if people can type it, and what they do: "10 to 55; it has to be given. How strong
/// the tone is.". Tries the effect, so call it in a worker.
std::string TextOf(const catalogue::Effect& effect, const catalogue::Property& property);

}  // namespace ombrix::cli
