// How an effect gets at rows of any layout with the fewest copies.
#pragma once

#include <functional>

#include "ombrix/rows.h"

namespace ombrix::catalogue {

/// What an effect does as it is set. What has to be tried is asked for only where it matters.
struct RowTraits {
    bool worksPixelByPixel;                 ///< and has no pictures
    bool keepsAlpha;                        ///< and its colours do not depend on it
    std::function<bool()> takesRedForBlue;  ///< exchanging them before or after is the same; it has no pictures
    std::function<bool()> landsInPlace;     ///< its result can be put into memory that is named beforehand
    bool worksInPlace;                      ///< it can change a picture
};

struct RowPlan {
    /// Of the pixels that the effect works on. Rgba and Bgra are seen as Argb from the last byte of the first pixel on,
    /// without the first column; Bgr, Bgra and Abgr as if red was blue.
    host::Layout layout = host::Layout::Argb;
    host::Alpha alpha = host::Alpha::Straight;  ///< of copies in that layout
    bool isUpsideDown = false;                  ///< both are taken from the last row to the first
    bool copiesSource = false;
    bool copiesDestination = false;
    bool changesInPlace = false;  ///< the source's pixels or their copy, instead of making a picture

    int Copies() const { return copiesSource + copiesDestination; }
};

/// The rows are OverlapOf None or Same, and of the same size.
RowPlan PlanFor(const host::Rows& source, const host::Rows& destination, const RowTraits& traits);

/// Whether the layout is seen without the first column, or with red as blue.
bool IsShifted(host::Layout layout);
bool IsSwapped(host::Layout layout);

}  // namespace ombrix::catalogue
