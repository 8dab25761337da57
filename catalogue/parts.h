// Whether an effect can work on a picture part by part, found by trying: its result over parts is its result over the
// whole. Then memory need never hold a whole picture.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ombrix/host.h"
#include "ombrix/parts.h"

namespace ombrix::catalogue {

/// A picture that is to be set as a property.
struct PictureToSet {
    std::string name;
    bool coversSource;  ///< is as large as the source; only then can it be worked on along with it
};

/// Finds out how an effect works by parts, with these pictures, and points in these properties; the roles are of these
/// pictures and of all points that can be set. `prepare` sets other properties.
/// The source has `depth` bits per pixel (24 or 32), the pictures have 24. Nothing when no way gives the same
/// result as the whole picture does.
OMBRIX_API std::optional<PartRoles> FindPartRoles(host::Host& host, const host::ClassInfo& type,
                                                  const std::vector<PictureToSet>& pictures,
                                                  const std::vector<std::string>& points, int depth,
                                                  const std::function<void(const host::Object&)>& prepare);

/// The part of a picture, without a copy.
host::Picture PartOf(host::Host& host, const host::Picture& picture, const Rectangle& part);

/// Whether `result` has the size of the part and the pixels that `whole` has there. `result` may be nil.
bool IsSamePart(const host::Picture& whole, const Rectangle& part, const host::Picture& result);

}  // namespace ombrix::catalogue
