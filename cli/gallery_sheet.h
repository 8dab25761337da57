// The gallery as one picture: a contact sheet.
#pragma once

#include "cli/gallery_content.h"
#include "cli/session.h"

namespace ombrix::cli {

/// All pictures of the gallery in rows, under the names of their effects, each with its title. A vips::VError when it
/// cannot be drawn.
host::Picture LayOutSheet(Session& session, const GalleryContent& content);

}  // namespace ombrix::cli
