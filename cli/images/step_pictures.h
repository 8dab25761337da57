// The pictures that are given to an effect by its properties.
#pragma once

#include <string>
#include <vector>

#include "cli/effect_object.h"
#include "cli/images/image_reader.h"
#include "cli/session.h"

namespace ombrix::cli {

struct StepPicture {
    std::string property;
    PlannedSetting setting;  ///< that named the file
    OpenedImage image;
};

/// Opens the files that the properties name. A picture that is transparent somewhere shows its shape: where the effect
/// has a mask for it, the picture's alpha becomes that mask, or joins the one that is given. Elsewhere a note says that
/// transparency does not count. A WorkError when a file cannot be opened.
std::vector<StepPicture> OpenStepPictures(Session& session, const host::ClassInfo& type,
                                          const std::vector<PlannedSetting>& properties);

}  // namespace ombrix::cli
