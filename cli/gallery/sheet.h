// The gallery as a contact sheet.
#pragma once

#include "cli/gallery/content.h"
#include "cli/session.h"

namespace ombrix::cli {

/// Rows of pictures, each row under its effect, each picture over its title. A vips::VError when it cannot be drawn.
host::Picture LayOutSheet(Session& session, const GalleryContent& content);

}  // namespace ombrix::cli
