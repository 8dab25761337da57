// Work that needs the image library.
#pragma once

#include <functional>
#include <vector>

#include "cli/images/output_file.h"
#include "cli/session.h"

namespace ombrix::cli {

/// Runs `work` in a supervised process, in which libvips has started and reads what the options accept; see Supervise.
/// `written` are the files that it writes, all created; `pictures` is about how many pictures are made for them.
void WorkOnPictures(Session& session, const std::vector<const OutputFile*>& written,
                    const std::function<void(Session&)>& work, int pictures = 1);

}  // namespace ombrix::cli
