#include "catalogue/parts.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "catalogue/trial.h"
#include "text/names.h"

namespace ombrix::catalogue {

namespace {

constexpr Coordinates kSource{19, 13};
constexpr Coordinates kPlaced{11, 9};
constexpr int kPictureDepth = 24;
/// Every pixel of the source is in one of them.
constexpr std::array kParts = {Rectangle{0, 0, 8, 5}, Rectangle{8, 0, 11, 5}, Rectangle{0, 5, 19, 1},
                               Rectangle{0, 6, 3, 7}, Rectangle{3, 6, 16, 7}};

/// Values of the points for a trial.
struct TrialPoints {
    Coordinates position;
    Coordinates extent;
};
constexpr std::array kTrialPoints = {TrialPoints{{3, 4}, {7, 6}}, TrialPoints{{-2, -3}, {-1, 100}}};

bool Names(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(names.begin(), names.end(),
                       [&name](const std::string& each) { return text::SameName(each, name); });
}

class Trial {
  public:
    Trial(host::Host& host, const host::ClassInfo& type, const std::vector<std::string>& givenPoints,
          const std::function<void(const host::Object&)>& prepare, int depth)
        : host_(host),
          type_(type),
          givenPoints_(givenPoints),
          prepare_(prepare),
          depth_(depth),
          source_(TrialPicture(host, kSource.x, kSource.y, depth, 1)) {}

    bool Works(const PartRoles& roles) const {
        std::vector<host::Picture> pictures;
        for (const PartRoles::PictureProperty& property : roles.pictures) {
            const bool isPlaced = property.role == PictureRole::Placed;
            const Coordinates size = isPlaced ? kPlaced : kSource;
            pictures.push_back(
                TrialPicture(host_, size.x, size.y, kPictureDepth, static_cast<std::uint32_t>(2 + pictures.size())));
        }
        const bool usesPoints = !givenPoints_.empty() || roles.Has(PointRole::Position);
        return std::all_of(kTrialPoints.begin(), usesPoints ? kTrialPoints.end() : kTrialPoints.begin() + 1,
                           [&](const TrialPoints& points) { return WorksWith(points, pictures, roles); });
    }

  private:
    bool WorksWith(const TrialPoints& points, const std::vector<host::Picture>& pictures,
                   const PartRoles& roles) const {
        const host::Picture whole = Result(source_, pictures, points.position, points.position, points.extent, roles);
        if (!IsSameSize(whole)) return false;
        const bool hasExtent = roles.Has(PointRole::Extent);
        for (const Rectangle& part : kParts) {
            const PlacedPart placed =
                PlaceInPart(part, kPlaced, points.position, hasExtent ? std::optional(points.extent) : std::nullopt);
            std::vector<host::Picture> parts;
            for (std::size_t i = 0; i < pictures.size(); ++i) {
                const bool isPlaced = roles.pictures[i].role == PictureRole::Placed;
                parts.push_back(PartOf(host_, pictures[i], isPlaced ? placed.cut : part));
            }
            if (!IsSamePart(whole, part,
                            Result(PartOf(host_, source_, part), parts, points.position, placed.position, placed.extent,
                                   roles)))
                return false;
        }
        return true;
    }

    bool IsGiven(const std::string& point) const { return Names(givenPoints_, point); }

    bool IsSameSize(const host::Picture& result) const {
        return result && result.Width() == kSource.x && result.Height() == kSource.y && result.Depth() == depth_;
    }

    /// Nil when the effect fails.
    host::Picture Result(const host::Picture& source, const std::vector<host::Picture>& pictures, Coordinates fixed,
                         Coordinates position, Coordinates extent, const PartRoles& roles) const {
        return Tried(host_, type_, source, [&](const host::Object& object) {
            prepare_(object);
            for (std::size_t i = 0; i < pictures.size(); ++i) object.Set(roles.pictures[i].name, pictures[i]);
            for (const PartRoles::PointProperty& point : roles.points) {
                if (point.role == PointRole::Fixed && IsGiven(point.name)) {
                    object.Set(point.name, host_.NewPoint(fixed.x, fixed.y));
                }
                if (point.role == PointRole::Position) object.Set(point.name, host_.NewPoint(position.x, position.y));
                if (point.role == PointRole::Extent) object.Set(point.name, host_.NewPoint(extent.x, extent.y));
            }
        });
    }

    host::Host& host_;
    const host::ClassInfo& type_;
    const std::vector<std::string>& givenPoints_;
    const std::function<void(const host::Object&)>& prepare_;
    const int depth_;
    const host::Picture source_;
};

std::vector<std::string> PointProperties(const host::Host& host, const host::ClassInfo& type) {
    std::vector<std::string> names;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (text::SameName(property.type, "Point") && !property.readOnly) names.push_back(property.name);
        }
    }
    return names;
}

/// All ways to deal roles: along the source and fixed first.
class Deals {
  public:
    Deals(const std::vector<PictureToSet>& pictures, const std::vector<std::string>& points,
          const std::vector<std::string>& givenPoints) {
        for (const PictureToSet& picture : pictures) {
            const PictureRole first = picture.coversSource ? PictureRole::AlongSource : PictureRole::Placed;
            roles_.pictures.push_back({picture.name, first});
            firstRoles_.push_back(first);
        }
        for (const std::string& name : points) {
            roles_.points.push_back({name, PointRole::Fixed});
            isGiven_.push_back(Names(givenPoints, name));
        }
    }

    PartRoles& Current() { return roles_; }

    /// False after the last. Points are worth dealing to only where there is a picture to place.
    bool Next() { return (roles_.HasPlaced() && NextOfPoints()) || NextOfPictures(); }

  private:
    bool NextOfPoints() {
        for (std::size_t i = 0; i < roles_.points.size(); ++i) {
            PointRole& role = roles_.points[i].role;
            if (role == PointRole::Fixed) {
                role = PointRole::Position;
                return true;
            }
            if (role == PointRole::Position && isGiven_[i]) {
                role = PointRole::Extent;
                return true;
            }
            role = PointRole::Fixed;
        }
        return false;
    }

    bool NextOfPictures() {
        for (std::size_t i = 0; i < firstRoles_.size(); ++i) {
            PictureRole& role = roles_.pictures[i].role;
            if (role == PictureRole::AlongSource) {
                role = PictureRole::Placed;
                return true;
            }
            role = firstRoles_[i];
        }
        return false;
    }

    PartRoles roles_;
    std::vector<PictureRole> firstRoles_;
    std::vector<bool> isGiven_;
};

/// Of a placed picture, along one axis.
struct Span {
    std::int64_t first = 0;     ///< of the cut
    std::int64_t length = 0;    ///< of the cut; 0 when nothing lies in the part
    std::int64_t position = 0;  ///< of the cut in the part
    std::int64_t extent = 0;    ///< of the cut
};

Span SpanInPart(std::int64_t part, std::int64_t partLength, std::int64_t size, std::int64_t position,
                std::optional<std::int64_t> extent) {
    const std::int64_t used = extent && *extent >= 0 ? std::min(*extent, size) : size;
    // Far outside is as good as just outside, and does not overflow.
    const std::int64_t from = std::clamp(position, part - size, part + partLength);
    const std::int64_t first = std::max<std::int64_t>(part - from, 0);
    const std::int64_t end = std::min(used, part + partLength - from);
    if (first >= end) return {};
    return {first, end - first, from + first - part, end - first};
}

}  // namespace

bool PartRoles::HasPlaced() const {
    return std::any_of(pictures.begin(), pictures.end(),
                       [](const PictureProperty& picture) { return picture.role == PictureRole::Placed; });
}

bool PartRoles::Has(PointRole role) const {
    return std::any_of(points.begin(), points.end(), [role](const PointProperty& point) { return point.role == role; });
}

std::optional<PartRoles> FindPartRoles(host::Host& host, const host::ClassInfo& type,
                                       const std::vector<PictureToSet>& pictures,
                                       const std::vector<std::string>& points, int depth,
                                       const std::function<void(const host::Object&)>& prepare) {
    if (!host.IsA(type.name, host::kEffectInterface)) return std::nullopt;
    const Trial trial(host, type, points, prepare, depth);
    Deals deals(pictures, PointProperties(host, type), points);
    do {
        if (trial.Works(deals.Current())) return deals.Current();
    } while (deals.Next());
    return std::nullopt;
}

host::Picture PartOf(host::Host& host, const host::Picture& picture, const Rectangle& part) {
    const host::Picture::Lock pixels(picture);
    return host.WrapPixels({pixels.Base() + part.top * pixels.RowBytes() + part.left * (picture.Depth() / 8),
                            pixels.RowBytes(), part.width, part.height, picture.Depth()});
}

bool IsSamePart(const host::Picture& whole, const Rectangle& part, const host::Picture& result) {
    if (!result || result.Width() != part.width || result.Height() != part.height || result.Depth() != whole.Depth())
        return false;
    const host::Picture::Lock expected(whole);
    const host::Picture::Lock actual(result);
    const std::int64_t bytesPerPixel = whole.Depth() / 8;
    for (int y = 0; y < result.Height(); ++y) {
        const std::uint8_t* row = expected.Base() + (part.top + y) * expected.RowBytes() + part.left * bytesPerPixel;
        if (std::memcmp(row, actual.Row(y).data(), actual.Row(y).size()) != 0) return false;
    }
    return true;
}

PlacedPart PlaceInPart(const Rectangle& part, Coordinates size, Coordinates position,
                       std::optional<Coordinates> extent) {
    const Span x =
        SpanInPart(part.left, part.width, size.x, position.x, extent ? std::optional(extent->x) : std::nullopt);
    const Span y =
        SpanInPart(part.top, part.height, size.y, position.y, extent ? std::optional(extent->y) : std::nullopt);
    if (x.length == 0 || y.length == 0) return {false, {0, 0, 1, 1}, {part.width, part.height}, {}};
    return {true, {x.first, y.first, x.length, y.length}, {x.position, y.position}, {x.extent, y.extent}};
}

}  // namespace ombrix::catalogue
