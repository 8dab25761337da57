// Pictures part by part: what an effect has to be given for a part of the source, so that its result is that part of
// its result for the whole.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ombrix/api.h"

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
    std::vector<PictureProperty> pictures;
    std::vector<PointProperty> points;

    bool HasPlaced() const;
    bool Has(PointRole role) const;
};

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
