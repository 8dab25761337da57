// What the file of a result cannot hold of the image that it is made from.
#pragma once

#include "cli/images/image_reader.h"
#include "cli/images/losses.h"
#include "cli/images/result_file.h"

namespace ombrix::cli {

/// Tells all but what reading already told: metadata, and parts of the file that no result has.
void TellLosses(const std::filesystem::path& file, const ImageOrigin& origin, const ResultFile& result, Losses& losses);

}  // namespace ombrix::cli
