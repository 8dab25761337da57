#include "bridges/common/effects.h"

#include <nlohmann/json.hpp>

namespace ombrix::bridge {
namespace {

using Json = nlohmann::json;

Type TypeNamed(const std::string& name) {
    if (name == "Integer") return Type::Integer;
    if (name == "Double") return Type::Number;
    if (name == "Boolean") return Type::Boolean;
    if (name == "Picture") return Type::Picture;
    if (name == "Point") return Type::Point;
    return Type::Other;
}

Role RoleNamed(const Json& json) {
    if (json == "along") return Role::Along;
    if (json == "placed") return Role::Placed;
    if (json == "position") return Role::Position;
    if (json == "extent") return Role::Extent;
    return Role::None;
}

Default DefaultFrom(const Json& json, Type type) {
    if (json.is_null()) return {};
    switch (type) {
        case Type::Integer:
            return json.get<std::int64_t>();
        case Type::Number:
            return json.get<double>();
        case Type::Boolean:
            return json.get<bool>();
        case Type::Point:
            return Point{json.at(0).get<std::int64_t>(), json.at(1).get<std::int64_t>()};
        default:
            return {};
    }
}

/// Both ends, or nothing.
template <class Number>
std::optional<std::pair<Number, Number>> EndsFrom(const Json& json) {
    if (json.is_null() || json.at("low").is_null() || json.at("high").is_null()) return {};
    return std::pair{json.at("low").get<Number>(), json.at("high").get<Number>()};
}

Property PropertyFrom(const Json& json) {
    Property property;
    json.at("name").get_to(property.name);
    json.at("word").get_to(property.word);
    json.at("description").get_to(property.description);
    property.type = TypeNamed(json.at("type").get<std::string>());
    property.role = RoleNamed(json.at("role"));
    if (const Json& mask = json.at("shapeMask"); !mask.is_null()) {
        property.shapeMask = ShapeMask{mask.at("property"), mask.at("whiteHides")};
    }
    json.at("inherited").get_to(property.inherited);
    json.at("refusesDefault").get_to(property.refusesDefault);
    if (!json.at("position").is_null()) property.position = json.at("position").get<int>();
    property.initial = DefaultFrom(json.at("default"), property.type);
    property.range = EndsFrom<std::int64_t>(json.at("range"));
    property.bounds = EndsFrom<double>(json.at("bounds"));
    for (const Json& constant : json.at("constants")) {
        property.constants.push_back({constant.at("name"), constant.at("word"), constant.at("value")});
    }
    return property;
}

Effect EffectFrom(const Json& json) {
    Effect effect{.name = json.at("name"),
                  .word = json.at("word"),
                  .description = json.at("description"),
                  .pixelByPixel = json.at("pixelByPixel"),
                  .keepsAlpha = json.at("keepsAlpha"),
                  .properties = {}};
    for (const Json& property : json.at("properties")) {
        if (!property.at("readOnly").get<bool>()) effect.properties.push_back(PropertyFrom(property));
    }
    return effect;
}

}  // namespace

void Check(ombrix_status status) {
    if (status != OMBRIX_OK) throw Error(ombrix_last_error(), status);
}

std::string WithoutStop(const std::string& description) {
    return description.ends_with('.') ? description.substr(0, description.size() - 1) : description;
}

std::vector<Effect> ReadEffects() {
    char* text = nullptr;
    Check(ombrix_catalogue(&text));
    const std::unique_ptr<char, decltype(&ombrix_free)> owned(text, ombrix_free);
    std::vector<Effect> effects;
    const Json catalogue = Json::parse(text);
    for (const Json& effect : catalogue.at("effects")) effects.push_back(EffectFrom(effect));
    return effects;
}

Object::Object(const std::string& effect) {
    ombrix_effect* made = nullptr;
    Check(ombrix_effect_new(effect.c_str(), &made));
    effect_.reset(made);
}

void Object::Set(const std::string& property, std::int64_t value) {
    Check(ombrix_set_integer(effect_.get(), property.c_str(), value));
}

void Object::Set(const std::string& property, double value) {
    Check(ombrix_set_number(effect_.get(), property.c_str(), value));
}

void Object::Set(const std::string& property, bool value) {
    Check(ombrix_set_boolean(effect_.get(), property.c_str(), value ? 1 : 0));
}

void Object::Set(const std::string& property, Point value) {
    Check(ombrix_set_point(effect_.get(), property.c_str(), value.x, value.y));
}

void Object::Set(const std::string& property, const std::string& text) {
    Check(ombrix_set_text(effect_.get(), property.c_str(), text.c_str()));
}

void Object::Set(const std::string& property, const ombrix_rows& rows) {
    Check(ombrix_set_picture(effect_.get(), property.c_str(), &rows));
}

void Object::Unset(const std::string& property) { Check(ombrix_set_picture(effect_.get(), property.c_str(), nullptr)); }

void Object::Apply(const ombrix_rows& source, const ombrix_rows& destination) {
    Check(ombrix_apply(effect_.get(), &source, &destination));
}

}  // namespace ombrix::bridge
