#include "catalogue/shape_mask.h"

#include <cstdlib>

#include "catalogue/parts.h"
#include "catalogue/trial.h"
#include "text/names.h"

namespace ombrix::catalogue {

namespace {

constexpr int kWidth = 12, kHeight = 5, kDepth = 24;
constexpr std::int64_t kHalf = kWidth / 2;

bool AreNear(const host::Picture& one, const host::Picture& other, std::int64_t left, std::int64_t right) {
    const host::Picture::Lock ones(one), others(other);
    for (int y = 0; y < kHeight; ++y) {
        const auto row = ones.Row(y), otherRow = others.Row(y);
        for (auto i = static_cast<std::size_t>(3 * left); i < static_cast<std::size_t>(3 * right); ++i) {
            if (std::abs(row[i] - otherRow[i]) > 1) return false;
        }
    }
    return true;
}

/// Black on its left half, white on its right.
host::Picture Halves(host::Host& host) {
    const host::Picture picture = host.NewPicture(kWidth, kHeight, kDepth);
    const host::Picture::Lock pixels(picture);
    for (int y = 0; y < kHeight; ++y) {
        const auto row = pixels.Row(y);
        for (std::size_t i = 0; i < row.size(); ++i) row[i] = i < 3 * kHalf ? 0 : 255;
    }
    return picture;
}

/// Whether pictures of both properties move together.
bool GoTogether(host::Host& host, const host::ClassInfo& type, const std::string& one, const std::string& other) {
    for (const bool coverSource : {false, true}) {
        const auto roles = FindPartRoles(host, type, {{one, coverSource}, {other, coverSource}}, {}, kDepth,
                                         [](const host::Object&) {});
        if (roles) return roles->pictures[0].role == roles->pictures[1].role;
    }
    return false;
}

}  // namespace

std::optional<ShapeMask> FindShapeMask(host::Host& host, const host::ClassInfo& type, const std::string& property) {
    if (!host.IsA(type.name, host::kEffectInterface)) return std::nullopt;
    const host::Picture source = TrialPicture(host, kWidth, kHeight, kDepth, 1);
    const host::Picture shown = TrialPicture(host, kWidth, kHeight, kDepth, 2);
    const auto resultWith = [&](const std::string& mask) {
        const host::Picture result = Tried(host, type, source, [&](const host::Object& effect) {
            effect.Set(property, shown);
            if (!mask.empty()) effect.Set(mask, Halves(host));
        });
        const bool isAlike = result && result.Width() == kWidth && result.Height() == kHeight;
        return isAlike && result.Depth() == kDepth ? result : host::Picture();
    };
    const host::Picture unmasked = resultWith("");
    // A half that does not change would look masked.
    if (!unmasked || AreNear(unmasked, source, 0, kHalf) || AreNear(unmasked, source, kHalf, kWidth)) {
        return std::nullopt;
    }
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& other : ancestor->properties) {
            if (!text::SameName(other.type, "Picture") || other.readOnly || text::SameName(other.name, property)) {
                continue;
            }
            const host::Picture masked = resultWith(other.name);
            if (!masked) continue;
            const bool whiteHides = AreNear(masked, unmasked, 0, kHalf) && AreNear(masked, source, kHalf, kWidth);
            const bool blackHides = AreNear(masked, source, 0, kHalf) && AreNear(masked, unmasked, kHalf, kWidth);
            if ((whiteHides || blackHides) && GoTogether(host, type, property, other.name)) {
                return ShapeMask{other.name, whiteHides};
            }
        }
    }
    return std::nullopt;
}

}  // namespace ombrix::catalogue
