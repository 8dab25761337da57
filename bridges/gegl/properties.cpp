#include "bridges/gegl/properties.h"

#include <gegl-plugin.h>

#include <algorithm>
#include <climits>

namespace ombrix::bridge {
namespace {

constexpr auto kFlags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_CONSTRUCT);

template <class T>
T InitialOf(const Property& property, T otherwise) {
    const T* initial = std::get_if<T>(&property.initial);
    return initial != nullptr && !property.refusesDefault ? *initial : otherwise;
}

int Clamped(std::int64_t value) { return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX)); }

GType EnumType(const Effect& effect, const Property& property) {
    const std::string name = "OmbrixGegl" + effect.name + property.name;
    if (const GType known = g_type_from_name(name.c_str())) return known;
    auto* values = new std::vector<GEnumValue>;  // which the type keeps
    for (const Constant& constant : property.constants) {
        const char* word = g_strdup(constant.word.c_str());
        values->push_back({Clamped(constant.value), word, word});
    }
    values->push_back({0, nullptr, nullptr});
    return g_enum_register_static(name.c_str(), values->data());
}

}  // namespace

std::vector<Setting> SettingsOf(const Effect& effect) {
    std::vector<Setting> settings;
    for (const Property& property : effect.properties) {
        if (property.inherited || property.type == Type::Picture || property.type == Type::Other) continue;
        if (property.type != Type::Point) {
            settings.push_back({property.word, &property, Coordinate::None});
        } else if (property.role == Role::None) {
            settings.push_back({property.word + "_x", &property, Coordinate::X});
            settings.push_back({property.word + "_y", &property, Coordinate::Y});
        }
    }
    // In the order of the editor's sliders.
    std::ranges::stable_sort(settings, {},
                             [](const Setting& each) { return each.property->position.value_or(INT_MAX); });
    return settings;
}

GParamSpec* SpecOf(const Effect& effect, const Setting& setting) {
    const Property& property = *setting.property;
    const std::string about = WithoutStop(property.description);
    std::string label = setting.name;
    std::ranges::replace(label, '_', ' ');
    label[0] = g_ascii_toupper(label[0]);
    const char *name = setting.name.c_str(), *nick = label.c_str(), *blurb = about.c_str();
    const auto integer = [&](std::int64_t low, std::int64_t high, std::int64_t initial) {
        const int least = Clamped(low), most = Clamped(high);
        return gegl_param_spec_int(name, nick, blurb, least, most, std::clamp(Clamped(initial), least, most), least,
                                   most, 1, kFlags);
    };
    switch (property.type) {
        case Type::Boolean:
            return g_param_spec_boolean(name, nick, blurb, InitialOf(property, false) ? TRUE : FALSE, kFlags);
        case Type::Number: {
            const auto [low, high] = property.bounds.value_or(std::pair{-1e6, 1e6});
            return gegl_param_spec_double(name, nick, blurb, low, high,
                                          std::clamp(InitialOf<double>(property, low), low, high), low, high, 1,
                                          kFlags);
        }
        case Type::Point: {
            const Point initial = InitialOf<Point>(property, {});
            return integer(INT_MIN, INT_MAX, setting.coordinate == Coordinate::X ? initial.x : initial.y);
        }
        default:
            break;
    }
    if (property.constants.empty()) {
        const auto [low, high] = property.range.value_or(std::pair<std::int64_t, std::int64_t>{INT_MIN, INT_MAX});
        return integer(low, high, InitialOf<std::int64_t>(property, property.range ? low : 0));
    }
    const std::int64_t first = property.constants.front().value;
    const std::int64_t initial = InitialOf<std::int64_t>(property, first);
    const bool isKnown =
        std::ranges::any_of(property.constants, [&](const Constant& each) { return each.value == initial; });
    return gegl_param_spec_enum(name, nick, blurb, EnumType(effect, property), Clamped(isKnown ? initial : first),
                                kFlags);
}

}  // namespace ombrix::bridge
