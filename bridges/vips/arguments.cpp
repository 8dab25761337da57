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

gboolean AcceptAnything(GParamSpec*, GValue*) { return FALSE; }

/// A type of specification that is as `parent`, but takes any value.
GType UncheckedType(const char* name, GType parent) {
    GTypeQuery size;
    g_type_query(parent, &size);
    const auto initialise = [](gpointer type, gpointer) { G_PARAM_SPEC_CLASS(type)->value_validate = AcceptAnything; };
    const GTypeInfo info{.class_size = static_cast<guint16>(size.class_size),
                         .base_init = nullptr,
                         .base_finalize = nullptr,
                         .class_init = initialise,
                         .class_finalize = nullptr,
                         .class_data = nullptr,
                         .instance_size = static_cast<guint16>(size.instance_size),
                         .n_preallocs = 0,
                         .instance_init = nullptr,
                         .value_table = nullptr};
    return g_type_register_static(parent, name, &info, GTypeFlags{});
}

struct Texts {
    const char *name, *nick, *about;
};
constexpr auto kReadWrite = static_cast<GParamFlags>(G_PARAM_READWRITE);

GParamSpec* IntegerSpec(const Texts& texts, int low, int high, int initial) {
    static const GType type = UncheckedType("OmbrixParamInt", G_TYPE_PARAM_INT);
    auto* spec =
        static_cast<GParamSpecInt*>(g_param_spec_internal(type, texts.name, texts.nick, texts.about, kReadWrite));
    spec->minimum = low;
    spec->maximum = high;
    spec->default_value = initial;
    return G_PARAM_SPEC(spec);
}

GParamSpec* NumberSpec(const Texts& texts, double low, double high, double initial) {
    static const GType type = UncheckedType("OmbrixParamDouble", G_TYPE_PARAM_DOUBLE);
    auto* spec =
        static_cast<GParamSpecDouble*>(g_param_spec_internal(type, texts.name, texts.nick, texts.about, kReadWrite));
    spec->minimum = low;
    spec->maximum = high;
    spec->default_value = initial;
    return G_PARAM_SPEC(spec);
}

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
    const auto range = property.range.value_or(std::pair<std::int64_t, std::int64_t>{INT_MIN, INT_MAX});
    const int low = Clamped(range.first), high = Clamped(range.second);
    return IntegerSpec(texts, low, high, std::clamp(initial, low, high));
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
    const std::string about = WithoutStop(property.description);
    const Texts texts{argument.name.c_str(), property.name.c_str(), about.c_str()};
    switch (property.type) {
        case Type::Picture:
            return g_param_spec_object(texts.name, texts.nick, texts.about, VIPS_TYPE_IMAGE, kReadWrite);
        case Type::Boolean:
            return g_param_spec_boolean(texts.name, texts.nick, texts.about,
                                        InitialOf<bool>(property, false) ? TRUE : FALSE, kReadWrite);
        case Type::Number: {
            const auto bounds = property.bounds.value_or(std::pair{-G_MAXDOUBLE, G_MAXDOUBLE});
            return NumberSpec(texts, bounds.first, bounds.second,
                              std::clamp(InitialOf<double>(property, 0), bounds.first, bounds.second));
        }
        case Type::Point:
            return IntegerSpec(texts, INT_MIN, INT_MAX, InitialCoordinate(argument));
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
