#include "ombrix/catalogue.h"

#include <algorithm>
#include <utility>

#include "catalogue/arguments.h"
#include "catalogue/constants.h"
#include "catalogue/descriptions.h"
#include "catalogue/effect_state.h"
#include "catalogue/json.h"
#include "catalogue/words.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::catalogue {

struct Catalogue::State {
    State(host::Host& givenHost, std::vector<host::BrokenPlugin> givenBroken)
        : host(givenHost), broken(std::move(givenBroken)), descriptions(givenHost) {}

    host::Host& host;
    const std::vector<host::BrokenPlugin> broken;
    const Descriptions descriptions;
    std::vector<Effect> effects;
};

Catalogue::Catalogue(host::Host& host, std::vector<host::BrokenPlugin> broken)
    : state_(std::make_unique<State>(host, std::move(broken))) {
    for (const host::ClassInfo& info : host.Classes()) {
        if (!host.IsA(info.name, host::kEffectInterface)) continue;
        const host::ClassInfo& type = *host.FindClass(info.name);
        state_->effects.push_back(Effect(std::make_unique<Effect::State>(host, type, state_->descriptions)));
    }
}

Catalogue::~Catalogue() = default;
Catalogue::Catalogue(Catalogue&&) noexcept = default;
Catalogue& Catalogue::operator=(Catalogue&&) noexcept = default;

const std::vector<Effect>& Catalogue::Effects() const { return state_->effects; }

const Effect* Catalogue::Find(std::string_view name) const {
    for (const std::string& wanted : {std::string(name), std::string(name).append(kEnding)}) {
        const auto found = std::ranges::find_if(
            state_->effects, [&](const Effect& effect) { return text::SameName(effect.Name(), wanted); });
        if (found != state_->effects.end()) return &*found;
    }
    return nullptr;
}

const Effect& Catalogue::Named(std::string_view name) const {
    if (const Effect* effect = Find(name)) return *effect;
    std::vector<std::string> words;
    for (const Effect& each : Effects()) words.push_back(each.Word());
    throw NotFound("there is no effect " + text::Quoted(name) + text::Suggestion(name, words));
}

std::string Catalogue::Description(const host::ClassInfo& type) const { return state_->descriptions.OfClass(type); }

std::string Catalogue::Description(const host::ClassInfo& declaring, std::string_view property) const {
    return state_->descriptions.OfProperty(declaring, property);
}

std::vector<Constant> Catalogue::ConstantsFor(const host::ClassInfo& type, const host::PropertyInfo& property) const {
    for (const Effect& effect : state_->effects) {
        if (!text::SameName(effect.Name(), type.name)) continue;
        const Property* known = effect.FindProperty(property.name);
        return known ? effect.ConstantsOf(*known) : std::vector<Constant>{};
    }
    return catalogue::ConstantsFor(state_->host, type, property, [](const host::Object&) {});
}

std::string Catalogue::Json(const Effect* only, int indent) const {
    return ToJson(state_->host, *this, state_->broken, only, indent);
}

}  // namespace ombrix::catalogue
