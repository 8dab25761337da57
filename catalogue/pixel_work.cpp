#include "catalogue/pixel_work.h"

#include <algorithm>
#include <map>

#include "catalogue/arguments.h"
#include "catalogue/parts.h"
#include "catalogue/refusal.h"
#include "catalogue/trial.h"
#include "text/names.h"

namespace ombrix::catalogue {

namespace {

using host::Picture;
using host::PropertyInfo;

constexpr std::int64_t kWidth = 19, kHeight = 13;
constexpr int kDepth = 32;
constexpr std::uint32_t kSeed = 1;
/// Has none of the edges, so that a neighbour, a position or the size shows, whatever an effect looks at.
constexpr Rectangle kPart{5, 3, 11, 7};

/// What an effect is given for one trial.
struct Variation {
    std::vector<GivenValue> values;
    std::vector<std::string> pictures;
    std::vector<std::string> points;
};

/// Values of an Integer: its constants, or the ends and one between. Where there is no end, numbers near the initial
/// one: an effect may work for ages with a large one.
std::vector<host::Value> IntegersOf(const Values& values) {
    std::vector<host::Value> samples;
    for (const Constant& constant : values.constants) samples.emplace_back(constant.value);
    if (!samples.empty()) return samples;
    const Range range = values.range.value_or(Range{-kFarthest, kFarthest});
    const std::int64_t start = std::clamp(values.initial.AsInteger(), range.low, range.high);
    const std::int64_t low = range.low == -kFarthest ? start - 7 : range.low;
    const std::int64_t high = range.high == kFarthest ? start + 7 : range.high;
    for (const std::int64_t value : {low, high - (high - low) / 4, high}) {
        if (range.Holds(value)) samples.emplace_back(value);
    }
    return samples;
}

/// The last but one is what the effect is most likely to do something with.
std::vector<host::Value> SamplesOf(const PropertyInfo& property, const Values& values) {
    if (text::SameName(property.type, "Integer")) return IntegersOf(values);
    if (text::SameName(property.type, "Boolean")) return {true, false};
    if (!text::SameName(property.type, "Double")) return {};
    const Bounds bounds = values.bounds.value_or(Bounds{0, 2});
    return {bounds.low, bounds.low + (bounds.high - bounds.low) / 3, bounds.high};
}

bool IsSame(const host::Value& a, const host::Value& b) {
    if (a.IsBoolean() || b.IsBoolean()) return a.IsBoolean() && b.IsBoolean() && a.AsBoolean() == b.AsBoolean();
    if (a.IsInteger() && b.IsInteger()) return a.AsInteger() == b.AsInteger();
    return a.IsDouble() && b.IsDouble() && a.AsDouble() == b.AsDouble();
}

class Trials {
  public:
    Trials(host::Host& host, const host::ClassInfo& type)
        : host_(host),
          type_(type),
          source_(TrialPicture(host, kWidth, kHeight, kDepth, kSeed)),
          otherAlpha_(TrialPicture(host, kWidth, kHeight, kDepth, kSeed)) {
        const Picture::Lock pixels(otherAlpha_);
        for (int y = 0; y < kHeight; ++y) {
            const auto row = pixels.Row(y);
            for (std::size_t i = 0; i < row.size(); i += 4) row[i] = static_cast<std::uint8_t>(~row[i]);
        }
    }

    /// Takes from `work` what is not true of the effect as it is with `given`. A refusal tells nothing.
    void Try(const Variation& given, PixelWork& work) const {
        const Picture result = Result(source_, given);
        if (!result) return;
        hasResult_ = true;
        work.keepsAlpha = work.keepsAlpha && KeepsAlpha(result, Result(otherAlpha_, given));
        work.isPixelByPixel = work.isPixelByPixel && WorksByParts(result, given, work.roles);
    }

    bool HasResult() const { return hasResult_; }

  private:
    /// `part`: of the pictures; all of them without.
    Picture Result(const Picture& source, const Variation& given, const Rectangle* part = nullptr) const {
        return Tried(host_, type_, source, [&](const host::Object& object) {
            WithValues(given.values)(object);
            std::uint32_t seed = kSeed;
            for (const std::string& property : given.pictures) {
                const Picture picture = PictureOf(++seed);
                object.Set(property, part ? PartOf(host_, picture, *part) : picture);
            }
        });
    }

    /// The same for the same seed; made once.
    const Picture& PictureOf(std::uint32_t seed) const {
        const auto known = pictures_.find(seed);
        if (known != pictures_.end()) return known->second;
        return pictures_.emplace(seed, TrialPicture(host_, kWidth, kHeight, 24, seed)).first->second;
    }

    /// `whole`: the result for source_. Notes the roles when they are those of more pictures and points than before.
    bool WorksByParts(const Picture& whole, const Variation& given, PartRoles& known) const {
        const std::optional<PartRoles> roles = RolesFor(whole, given);
        if (!roles) return false;
        if (roles->pictures.size() + roles->points.size() > known.pictures.size() + known.points.size()) known = *roles;
        return true;
    }

    /// Nothing when the effect does not work by parts.
    std::optional<PartRoles> RolesFor(const Picture& whole, const Variation& given) const {
        if (given.points.empty() && whole.Width() == kWidth && whole.Height() == kHeight &&
            IsSamePart(whole, kPart, Result(PartOf(host_, source_, kPart), given, &kPart))) {
            PartRoles along;
            for (const std::string& property : given.pictures) {
                along.pictures.push_back({property, PictureRole::AlongSource});
            }
            return along;
        }
        if (given.pictures.empty() && given.points.empty()) return std::nullopt;
        // Some of the pictures may lie at a position.
        std::vector<PictureToSet> pictures;
        for (const std::string& property : given.pictures) pictures.push_back({property, true});
        return FindPartRoles(host_, type_, pictures, given.points, kDepth, WithValues(given.values));
    }

    /// `result` and `other`: for source_ and otherAlpha_.
    bool KeepsAlpha(const Picture& result, const Picture& other) const {
        for (const Picture& picture : {result, other}) {
            if (!picture || picture.Width() != kWidth || picture.Height() != kHeight || picture.Depth() != kDepth) {
                return false;
            }
        }
        const Picture::Lock sources(source_), results(result), others(other);
        for (int y = 0; y < kHeight; ++y) {
            const auto source = sources.Row(y), row = results.Row(y), otherRow = others.Row(y);
            for (std::size_t i = 0; i < row.size(); ++i) {
                const bool isAlpha = i % 4 == 0;
                if (isAlpha && row[i] != source[i]) return false;
                if (otherRow[i] != (isAlpha ? static_cast<std::uint8_t>(~row[i]) : row[i])) return false;
            }
        }
        return true;
    }

    host::Host& host_;
    const host::ClassInfo& type_;
    const Picture source_, otherAlpha_;
    mutable std::map<std::uint32_t, Picture> pictures_;
    mutable bool hasResult_ = false;
};

std::vector<GivenValue> With(std::vector<GivenValue> values, const std::string& property, const host::Value& value) {
    std::erase_if(values, [&](const GivenValue& each) { return text::SameName(each.property, property); });
    values.push_back({property, value});
    return values;
}

/// As little as works, one property after another, then all at once; then with each further picture, and with all
/// pictures and points.
std::vector<Variation> VariationsOf(const std::vector<const PropertyInfo*>& properties, const Needs& needs,
                                    const std::function<const Values&(const PropertyInfo&)>& valuesOf) {
    Variation base{{}, needs.pictures, {}};
    if (needs.number) base.values.push_back({needs.number->property, needs.number->value});
    std::vector<Variation> variations{base};
    Variation busy = base;
    std::vector<std::string> others, points;
    for (const PropertyInfo* property : properties) {
        if (text::SameName(property->type, "Point")) points.push_back(property->name);
        const bool isNeeded = std::ranges::find(needs.pictures, property->name) != needs.pictures.end();
        if (text::SameName(property->type, "Picture") && !isNeeded) others.push_back(property->name);
        const Values& values = valuesOf(*property);
        const std::vector<host::Value> samples = SamplesOf(*property, values);
        for (const host::Value& value : samples) {
            if (IsSame(value, values.initial)) continue;
            variations.push_back({With(base.values, property->name, value), base.pictures, {}});
        }
        if (samples.size() > 1) busy.values = With(busy.values, property->name, samples[samples.size() - 2]);
    }
    if (busy.values.size() > base.values.size() + 1) variations.push_back(busy);
    for (const std::string& picture : others) {
        Variation one = busy;
        one.pictures.push_back(picture);
        variations.push_back(one);
    }
    if (others.size() > 1 || !points.empty()) {
        busy.pictures.insert(busy.pictures.end(), others.begin(), others.end());
        busy.points = points;
        variations.push_back(busy);
    }
    return variations;
}

}  // namespace

PixelWork FindPixelWork(host::Host& host, const host::ClassInfo& type, const Needs& needs,
                        const std::function<const Values&(const PropertyInfo&)>& valuesOf) {
    if (!needs.areMet) return {};
    const Trials trials(host, type);
    PixelWork work{true, true};
    for (const Variation& variation : VariationsOf(OwnProperties(host, type), needs, valuesOf)) {
        trials.Try(variation, work);
        if (!work.isPixelByPixel && !work.keepsAlpha) break;
    }
    if (!work.isPixelByPixel) work.roles = {};
    return trials.HasResult() ? work : PixelWork{};
}

}  // namespace ombrix::catalogue
