#include "bridges/vips/arguments.h"

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

namespace ombrix::bridge {
namespace {

/// Names that an operation has anyway.
std::string Free(const std::string& name) {
    constexpr std::array<std::string_view, 4> kTaken = {"in", "out", "nickname", "description"};
    return std::ranges::find(kTaken, name) == kTaken.end() ? name : name + "_";
}

std::string NameOf(const Property& property, Coordinate coordinate) {
    const bool isX = coordinate == Coordinate::X;
    if (coordinate == Coordinate::None) return Free(property.word);
    if (property.role == Role::Position) return isX ? "x" : "y";
    if (property.role == Role::Extent) return isX ? "width" : "height";
    return property.word + (isX ? "_x" : "_y");
}

struct Texts {
    const char *name, *nick, *about;
};
constexpr auto kReadWrite = static_cast<GParamFlags>(G_PARAM_READWRITE);

/// Words are taken as they are and as libvips spells its own, with hyphens.
GType EnumType(const Effect& effect, const Property& property) {
    const std::string name = "VipsOmbrix" + effect.name + property.name;
    if (const GType known = g_type_from_name(name.c_str())) return known;
    auto* values = new std::vector<GEnumValue>;  // which the type keeps
    int highest = INT_MIN;
    for (const Constant& constant : property.constants) {
        std::string nick = constant.word;
        std::ranges::replace(nick, '_', '-');
        const int value = static_cast<int>(constant.value);
        highest = std::max(highest, value);
        values->push_back({value, g_strdup(constant.word.c_str()), g_strdup(nick.c_str())});
    }
    // libvips takes the last one for none.
    values->push_back({highest + 1, "last", "last"});
    values->push_back({0, nullptr, nullptr});
    return g_enum_register_static(name.c_str(), values->data());
}

template <class T>
T InitialOf(const Property& property, T otherwise) {
    const T* initial = std::get_if<T>(&property.initial);
    return initial != nullptr ? *initial : otherwise;
}

int Clamped(std::int64_t value) { return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX)); }

GParamSpec* IntegerSpec(const Effect& effect, const Property& property, const Texts& texts) {
    const int initial = Clamped(InitialOf<std::int64_t>(property, 0));
    if (!property.constants.empty()) {
        const GType type = EnumType(effect, property);
        const auto isInitial = [&](const Constant& each) { return each.value == initial; };
        const bool isKnown = std::ranges::any_of(property.constants, isInitial);
        return g_param_spec_enum(texts.name, texts.nick, texts.about, type,
                                 isKnown ? initial : Clamped(property.constants.front().value), kReadWrite);
    }
    return g_param_spec_int(texts.name, texts.nick, texts.about, INT_MIN, INT_MAX, initial, kReadWrite);
}

std::string Shown(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

/// The description, with the range that the specification cannot have: GObject would drop a value beyond it, with no
/// error that a program would see.
std::string About(const Property& property) {
    std::string range;
    if (property.range && property.constants.empty()) {
        range = std::to_string(property.range->first) + " to " + std::to_string(property.range->second) + ". ";
    } else if (property.bounds) {
        range = Shown(property.bounds->first) + " to " + Shown(property.bounds->second) + ". ";
    }
    return range + WithoutStop(property.description);
}

}  // namespace

std::vector<Argument> ArgumentsOf(const Effect& effect) {
    std::vector<Argument> arguments;
    for (const Property& property : effect.properties) {
        if (property.inherited || property.type == Type::Other) continue;
        const auto add = [&](Coordinate coordinate) {
            arguments.push_back({NameOf(property, coordinate), &property, coordinate, property.refusesDefault});
        };
        if (property.type == Type::Point) {
            add(Coordinate::X);
            add(Coordinate::Y);
        } else {
            add(Coordinate::None);
        }
    }
    std::ranges::stable_partition(
        arguments, [](const Argument& each) { return each.isRequired && each.property->type == Type::Picture; });
    return arguments;
}

GParamSpec* SpecOf(const Effect& effect, const Argument& argument) {
    const Property& property = *argument.property;
    const std::string about = About(property);
    const Texts texts{argument.name.c_str(), property.name.c_str(), about.c_str()};
    switch (property.type) {
        case Type::Picture:
            return g_param_spec_object(texts.name, texts.nick, texts.about, VIPS_TYPE_IMAGE, kReadWrite);
        case Type::Boolean:
            return g_param_spec_boolean(texts.name, texts.nick, texts.about,
                                        InitialOf<bool>(property, false) ? TRUE : FALSE, kReadWrite);
        case Type::Number:
            return g_param_spec_double(texts.name, texts.nick, texts.about, -G_MAXDOUBLE, G_MAXDOUBLE,
                                       InitialOf<double>(property, 0), kReadWrite);
        case Type::Point:
            return g_param_spec_int(texts.name, texts.nick, texts.about, INT_MIN, INT_MAX, InitialCoordinate(argument),
                                    kReadWrite);
        default:
            return IntegerSpec(effect, property, texts);
    }
}

int InitialCoordinate(const Argument& argument) {
    // Below 0 an extent is all there is.
    const std::int64_t otherwise = argument.property->role == Role::Extent ? -1 : 0;
    const Point initial = InitialOf<Point>(*argument.property, {otherwise, otherwise});
    return Clamped(argument.coordinate == Coordinate::X ? initial.x : initial.y);
}

void CheckValue(const Argument& argument, const Slot& slot) {
    const Property& property = *argument.property;
    if (property.type != Type::Integer) return;
    if (!property.constants.empty()) {
        const auto isValue = [&](const Constant& each) { return each.value == slot.integer; };
        if (std::ranges::any_of(property.constants, isValue)) return;
        throw Error(argument.name + " has no value " + std::to_string(slot.integer));
    }
    if (!property.range || (slot.integer >= property.range->first && slot.integer <= property.range->second)) return;
    throw Error(argument.name + " takes " + std::to_string(property.range->first) + " to " +
                std::to_string(property.range->second) + ", not " + std::to_string(slot.integer));
}

}  // namespace ombrix::bridge
