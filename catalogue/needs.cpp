#include "catalogue/needs.h"

#include "catalogue/accepted_range.h"
#include "catalogue/arguments.h"
#include "catalogue/meaning.h"
#include "text/names.h"

namespace ombrix::catalogue {

namespace {

bool Works(host::Host& host, const host::ClassInfo& type, const Needs& needs) {
    return static_cast<bool>(Tried(host, type, host.NewPicture(1, 1), WithNeeds(host, needs)));
}

/// In the middle, or at the only end: a value far from it may take ages.
std::int64_t ValueIn(const Range& range) {
    if (range.high == kFarthest) return range.low == -kFarthest ? 0 : range.low;
    return range.low == -kFarthest ? range.high : range.low + (range.high - range.low) / 2;
}

std::optional<Needs::Number> FindNumber(host::Host& host, const host::ClassInfo& type, const Needs& needs) {
    for (const host::PropertyInfo* property : OwnProperties(host, type)) {
        if (!text::SameName(property->type, "Integer")) continue;
        const auto range = AcceptedRange(host, type, *property, WithNeeds(host, needs));
        if (range) return Needs::Number{property->name, ValueIn(*range)};
    }
    return std::nullopt;
}

}  // namespace

Needs FindNeeds(host::Host& host, const host::ClassInfo& type) {
    Needs needs{.pictures = {}, .number = {}, .areMet = true};
    if (Works(host, type, needs)) return needs;
    for (const host::PropertyInfo* property : OwnProperties(host, type)) {
        if (text::SameName(property->type, "Picture")) needs.pictures.push_back(property->name);
    }
    if (needs.pictures.empty() || !Works(host, type, needs)) {
        needs.number = FindNumber(host, type, needs);
        if (!needs.number) return {};
    }
    for (std::size_t i = needs.pictures.size(); i-- > 0;) {
        Needs fewer = needs;
        fewer.pictures.erase(fewer.pictures.begin() + static_cast<std::ptrdiff_t>(i));
        if (Works(host, type, fewer)) needs = fewer;
    }
    return needs;
}

Prepare WithNeeds(host::Host& host, const Needs& needs) {
    return [pictures = WithTrialPictures(host, needs.pictures), number = needs.number](const host::Object& object) {
        pictures(object);
        if (number) object.Set(number->property, number->value);
    };
}

}  // namespace ombrix::catalogue
