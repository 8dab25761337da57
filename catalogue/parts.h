// Whether an effect can work on a picture part by part, found by trying: its result over parts is its result over the
// whole. Then memory need never hold a whole picture.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ombrix/api.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {
/// In pixels.
struct Rectangle {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};

struct Coordinates {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

/// What an effect does with a picture that it has as a property.
enum class PictureRole {
    AlongSource,  ///< pixel by pixel with the source, as a mask
    Placed,       ///< laid at a position, as a fill
};

/// What an effect does with a point that it has as a property.
enum class PointRole {
    Fixed,     ///< nothing that depends on the part
    Position,  ///< where in the source the placed pictures lie
    Extent,    ///< how much of the placed pictures counts, from their top left; all, below 0 or beyond them
};

/// How to give parts to an effect.
struct OMBRIX_API PartRoles {
    struct PictureProperty {
        std::string name;
        PictureRole role;
    };
    struct PointProperty {
        std::string name;
        PointRole role;
    };
    std::vector<PictureProperty> pictures;  ///< those that were asked for
    std::vector<PointProperty> points;      ///< all that can be set

    bool HasPlaced() const;
    bool Has(PointRole role) const;
};

/// A picture that is to be set as a property.
struct PictureToSet {
    std::string name;
    bool coversSource;  ///< is as large as the source; only then can it be worked on along with it
};

/// Finds out how an effect works by parts, with pictures and points in these properties. `prepare` sets the others.
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

/// A placed picture as seen from a part of the source.
struct PlacedPart {
    bool isThere = false;  ///< whether any of the picture lies in the part; without, any picture will do as the cut
    Rectangle cut;         ///< what of the picture to give to the effect, never empty
    Coordinates position;  ///< of the cut in the part
    Coordinates extent;    ///< of the cut
};

/// `size`: of the placed picture, neither side 0. `extent`: as the program gave it.
OMBRIX_API PlacedPart PlaceInPart(const Rectangle& part, Coordinates size, Coordinates position,
                                  std::optional<Coordinates> extent);

}  // namespace ombrix::catalogue
