#include "catalogue/row_plan.h"

#include <limits>

namespace ombrix::catalogue {
namespace {

using host::Alpha;
using host::Layout;
using host::Rows;

/// A plug-in's rows go up in memory, and lie at most 2^31 bytes apart.
bool CanBeAddressed(const Rows& rows, bool isUpsideDown) {
    if (rows.height <= 1) return true;
    const auto apart = isUpsideDown ? -rows.rowBytes : rows.rowBytes;
    return apart > 0 && apart <= std::numeric_limits<std::int32_t>::max();
}

/// Whether the effect on pixels of this layout gives the source's result.
bool CanBeSeen(Layout layout, const Rows& source, const Rows& destination, const RowTraits& traits) {
    if (layout == Layout::Grey) return false;
    const bool hasAlpha = host::HasAlpha(source) || host::HasAlpha(destination);
    if (host::BytesPerPixel(layout) == 3 && hasAlpha && !traits.keepsAlpha) return false;
    if (IsSwapped(layout) && !traits.takesRedForBlue()) return false;
    return !IsShifted(layout) || (traits.worksPixelByPixel && traits.keepsAlpha);
}

/// Whether a layout has all that goes from the source to the destination.
bool CarriesAll(Layout layout, const Rows& source, const Rows& destination) {
    return host::BytesPerPixel(layout) == 4 || host::BytesPerPixel(source.layout) != 4 ||
           host::BytesPerPixel(destination.layout) != 4;
}

RowPlan PlanIn(Layout layout, bool isUpsideDown, const Rows& source, const Rows& destination, const RowTraits& traits) {
    const bool isSame = host::OverlapOf(source, destination) == host::Overlap::Same;
    const auto canStay = [&](const Rows& rows) {
        const bool isPremultiplied = host::HasAlpha(rows) && rows.alpha == Alpha::Premultiplied;
        return rows.layout == layout && !isPremultiplied && CanBeAddressed(rows, isUpsideDown);
    };
    RowPlan plan{layout, Alpha::Straight, isUpsideDown, !canStay(source), !canStay(destination)};
    const bool hasPadding = host::BytesPerPixel(source.layout) == 4 && !host::HasAlpha(source);
    if (hasPadding && !host::HasAlpha(destination) && traits.keepsAlpha) {
        plan.alpha = Alpha::None;
    } else if (hasPadding && host::BytesPerPixel(layout) == 4) {
        plan.copiesSource = true;  // which makes it opaque
    }
    if (isSame && !traits.worksInPlace && plan.Copies() == 0) plan.copiesSource = true;
    plan.changesInPlace =
        traits.worksInPlace && plan.copiesSource == plan.copiesDestination && (plan.copiesSource || isSame);
    return plan;
}

}  // namespace

bool IsShifted(Layout layout) { return layout == Layout::Rgba || layout == Layout::Bgra; }
bool IsSwapped(Layout layout) { return layout == Layout::Bgr || layout == Layout::Bgra || layout == Layout::Abgr; }

RowPlan PlanFor(const Rows& source, const Rows& destination, const RowTraits& traits) {
    const bool isUpsideDown = source.height > 1 && source.rowBytes < 0 && traits.worksPixelByPixel;
    RowPlan best = PlanIn(Layout::Argb, isUpsideDown, source, destination, traits);
    for (const Layout layout : {Layout::Rgb, source.layout, destination.layout}) {
        if (best.Copies() == 0 || !CarriesAll(layout, source, destination)) continue;
        const RowPlan plan = PlanIn(layout, isUpsideDown, source, destination, traits);
        if (plan.Copies() < best.Copies() && CanBeSeen(layout, source, destination, traits)) best = plan;
    }
    return best;
}

}  // namespace ombrix::catalogue
