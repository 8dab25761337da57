#include <algorithm>
#include <utility>

#include "catalogue/arguments.h"
#include "catalogue/constants.h"
#include "catalogue/effect_state.h"
#include "catalogue/needs.h"
#include "catalogue/shape_mask.h"
#include "catalogue/values.h"
#include "catalogue/words.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::catalogue {

namespace {

/// What is found, or what is known without trying when the plug-in breaks a rule of the host's on the way.
template <class Find, class Known>
auto FoundOr(const Known& known, const Find& find) {
    try {
        return find();
    } catch (const host::Error&) {
        return known;
    }
}

}  // namespace

Effect::State::State(host::Host& givenHost, const host::ClassInfo& givenType, const Descriptions& givenDescriptions)
    : host(givenHost),
      type(givenType),
      descriptions(givenDescriptions),
      word(WordOf(givenHost, givenType)),
      description(givenDescriptions.OfClass(givenType)) {}

const host::PropertyInfo& Effect::State::InfoOf(const Property& property) const {
    return *host.FindProperty(type.name, property.name);
}

const Property& Effect::State::PropertyNamed(const std::string& name) {
    return *std::ranges::find_if(Properties(), [&](const Property& each) { return text::SameName(each.name, name); });
}

const std::vector<Property>& Effect::State::Properties() {
    if (properties_) return *properties_;
    std::vector<Property> properties;
    std::vector<std::string> names;
    for (const host::ClassInfo* declaring : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& info : declaring->properties) {
            // A class's own hides that of a superclass.
            const auto isSame = [&info](const std::string& name) { return text::SameName(name, info.name); };
            if (std::ranges::any_of(names, isSame)) continue;
            names.push_back(info.name);
            properties.push_back({.name = info.name,
                                  .word = {},
                                  .type = info.type,
                                  .declaredBy = declaring->name,
                                  .description = descriptions.OfProperty(*declaring, info.name),
                                  .readOnly = info.readOnly,
                                  .inherited = !host.IsA(declaring->name, host::kEffectInterface)});
        }
    }
    const std::vector<std::string> words = WordsOf(type, names);
    for (std::size_t i = 0; i < words.size(); ++i) properties[i].word = words[i];
    return properties_.emplace(std::move(properties));
}

const std::vector<const Property*>& Effect::State::ByPosition() {
    if (byPosition_) return *byPosition_;
    std::vector<const Property*> positions;
    const auto isKind = [this](const host::PropertyInfo& info) {
        return ConstantsOf(PropertyNamed(info.name)).size() > 1;
    };
    for (const host::PropertyInfo* info : PropertiesByPosition(host, type, isKind)) {
        positions.push_back(&PropertyNamed(info->name));
    }
    return byPosition_.emplace(std::move(positions));
}

const std::vector<Constant>& Effect::State::ConstantsOf(const Property& property) {
    if (const auto known = constants_.find(&property); known != constants_.end()) return known->second;
    const auto prepare = [this](const host::Object& object) { WithNeeds(host, WhatItNeeds())(object); };
    return constants_.emplace(&property, ConstantsFor(host, type, InfoOf(property), prepare)).first->second;
}

const Values& Effect::State::ValuesOf(const Property& property) {
    if (const auto known = values_.find(&property); known != values_.end()) return known->second;
    Values values{.initial = host.New(type.name).Get(property.name),
                  .constants = ConstantsOf(property),
                  .range = {},
                  .bounds = {}};
    // What all effects have is no matter of this one.
    const bool isTried = !property.inherited && !property.readOnly && WhatItNeeds().areMet;
    if (isTried) {
        values = FoundOr(
            values, [&] { return FindValues(host, type, InfoOf(property), values, WithNeeds(host, WhatItNeeds())); });
    }
    if (isTried && std::ranges::find(WhatItNeeds().pictures, property.name) != WhatItNeeds().pictures.end()) {
        values.refusesInitial = true;
    }
    return values_.emplace(&property, std::move(values)).first->second;
}

const Needs& Effect::State::WhatItNeeds() {
    if (!needs_) needs_ = FoundOr(Needs{}, [this] { return FindNeeds(host, type); });
    return *needs_;
}

const PixelWork& Effect::State::Work() {
    const auto valuesOf = [this](const host::PropertyInfo& info) -> const Values& {
        return ValuesOf(PropertyNamed(info.name));
    };
    if (!work_) {
        work_ = FoundOr(PixelWork{}, [&] { return FindPixelWork(host, type, WhatItNeeds(), valuesOf); });
    }
    return *work_;
}

const std::optional<ShapeMask>& Effect::State::ShapeMaskOf(const Property& property) {
    if (const auto known = shapes_.find(&property); known != shapes_.end()) return known->second;
    const std::optional<ShapeMask> none;
    return shapes_
        .emplace(&property, text::SameName(property.type, "Picture")
                                ? FoundOr(none, [&] { return FindShapeMask(host, type, property.name); })
                                : none)
        .first->second;
}

Effect::Effect(std::unique_ptr<State> state) : state_(std::move(state)) {}
Effect::Effect(Effect&&) noexcept = default;
Effect::~Effect() = default;

const host::ClassInfo& Effect::Type() const { return state_->type; }
const std::string& Effect::Word() const { return state_->word; }
const std::string& Effect::Description() const { return state_->description; }
bool Effect::WorksInPlace() const { return state_->host.IsA(Name(), host::kInPlaceInterface); }

const std::vector<Property>& Effect::Properties() const { return state_->Properties(); }

const Property* Effect::FindProperty(std::string_view nameOrWord) const {
    for (const auto member : {&Property::name, &Property::word}) {
        for (const Property& property : Properties()) {
            if (text::SameName(property.*member, nameOrWord)) return &property;
        }
    }
    return nullptr;
}

const Property& Effect::PropertyNamed(std::string_view nameOrWord) const {
    if (const Property* property = FindProperty(nameOrWord)) return *property;
    std::vector<std::string> words;
    for (const Property& each : Properties()) {
        if (!each.inherited) words.push_back(each.word);
    }
    throw NotFound(Name() + " has no property " + text::Quoted(nameOrWord) + text::Suggestion(nameOrWord, words));
}

const std::vector<const Property*>& Effect::ByPosition() const { return state_->ByPosition(); }
const std::vector<Constant>& Effect::ConstantsOf(const Property& property) const {
    return state_->ConstantsOf(property);
}
const Values& Effect::ValuesOf(const Property& property) const { return state_->ValuesOf(property); }
const Needs& Effect::WhatItNeeds() const { return state_->WhatItNeeds(); }
bool Effect::WorksPixelByPixel() const { return state_->Work().isPixelByPixel; }
const std::optional<ShapeMask>& Effect::ShapeMaskOf(const Property& property) const {
    return state_->ShapeMaskOf(property);
}
const PartRoles& Effect::RolesInParts() const { return state_->Work().roles; }
bool Effect::KeepsAlpha() const { return state_->Work().keepsAlpha; }

}  // namespace ombrix::catalogue
