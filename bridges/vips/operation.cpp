#include "bridges/vips/operation.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bridges/vips/arguments.h"
#include "bridges/vips/work.h"

namespace ombrix::bridge {
namespace {

/// What the operations of one class have in common. Never destroyed, as classes never are.
struct OperationType {
    explicit OperationType(Effect given) : effect(std::move(given)), arguments(ArgumentsOf(effect)) {}

    const Effect effect;
    const std::vector<Argument> arguments;
    const std::string nickname = "ombrix_" + effect.word;
    const std::string description = WithoutStop(effect.description);
};

/// As libvips has it in memory: values of arguments follow, a slot for each.
struct Operation {
    VipsOperation parent;
    VipsImage* in;
    VipsImage* out;
    Work* work;
};

Slot& SlotOf(Operation* operation, std::size_t index) {
    return *reinterpret_cast<Slot*>(reinterpret_cast<char*>(operation + 1) + index * sizeof(Slot));
}

GQuark TypeQuark() { return g_quark_from_static_string("ombrix-operation-type"); }

const OperationType& TypeOf(const void* object) {
    return *static_cast<const OperationType*>(g_type_get_qdata(G_OBJECT_TYPE(object), TypeQuark()));
}

GObjectClass* ParentClass() { return G_OBJECT_CLASS(g_type_class_peek(VIPS_TYPE_OPERATION)); }

bool IsSet(Operation* operation, const Argument& argument) {
    return vips_object_argument_isset(VIPS_OBJECT(operation), argument.name.c_str()) != FALSE;
}

Default ValueOf(const Argument& argument, const Slot& slot) {
    switch (argument.property->type) {
        case Type::Number:
            return slot.number;
        case Type::Boolean:
            return slot.integer != 0;
        default:
            return std::int64_t{slot.integer};
    }
}

Settings SettingsOf(Operation* operation) {
    const OperationType& type = TypeOf(operation);
    Settings settings;
    for (std::size_t i = 0; i < type.arguments.size(); ++i) {
        const Argument& argument = type.arguments[i];
        const Property* property = argument.property;
        const Slot& slot = SlotOf(operation, i);
        if (argument.coordinate == Coordinate::X) {
            // Both slots have their initial values where nobody set them.
            if (!IsSet(operation, argument) && !IsSet(operation, type.arguments[i + 1])) continue;
            settings.values.emplace_back(property, Point{slot.integer, SlotOf(operation, i + 1).integer});
        } else if (argument.coordinate == Coordinate::None && IsSet(operation, argument)) {
            CheckValue(argument, slot);
            if (property->type == Type::Picture) {
                settings.pictures.emplace_back(property, vips::VImage(slot.image, vips::NOSTEAL));
            } else {
                settings.values.emplace_back(property, ValueOf(argument, slot));
            }
        }
    }
    return settings;
}

int Build(VipsObject* object) {
    if (VIPS_OBJECT_CLASS(ParentClass())->build(object) != 0) return -1;
    auto* operation = reinterpret_cast<Operation*>(object);
    const OperationType& type = TypeOf(object);
    try {
        auto work =
            std::make_unique<Work>(type.effect, vips::VImage(operation->in, vips::NOSTEAL), SettingsOf(operation));
        const vips::VImage result = work->Result();
        // The result keeps the operation, and the operation the work.
        operation->work = work.release();
        g_object_set(object, "out", vips_image_new(), nullptr);
        return vips_image_write(result.get_image(), operation->out);
    } catch (const vips::VError&) {  // which is in the buffer
        return -1;
    } catch (const std::exception& error) {
        vips_error(type.nickname.c_str(), "%s", error.what());
        return -1;
    }
}

void Finalize(GObject* object) {
    delete reinterpret_cast<Operation*>(object)->work;
    ParentClass()->finalize(object);
}

void Install(VipsObjectClass* type, GParamSpec* spec, int flags, int priority, std::size_t offset) {
    g_object_class_install_property(G_OBJECT_CLASS(type), static_cast<guint>(priority), spec);
    vips_object_class_install_argument(type, spec, static_cast<VipsArgumentFlags>(flags), priority,
                                       static_cast<guint>(offset));
}

void InitialiseClass(gpointer created, gpointer data) {
    const auto& type = *static_cast<const OperationType*>(data);
    G_OBJECT_CLASS(created)->set_property = vips_object_set_property;
    G_OBJECT_CLASS(created)->get_property = vips_object_get_property;
    G_OBJECT_CLASS(created)->finalize = Finalize;
    auto* object = VIPS_OBJECT_CLASS(created);
    object->nickname = type.nickname.c_str();
    object->description = type.description.c_str();
    object->build = Build;
    if (type.effect.pixelByPixel) VIPS_OPERATION_CLASS(created)->flags = VIPS_OPERATION_SEQUENTIAL;

    // By priority come words on a command line: the input, further pictures that it needs, the output, other values.
    int priority = 1;
    Install(object, g_param_spec_object("in", "Input", "Input image", VIPS_TYPE_IMAGE, G_PARAM_READWRITE),
            VIPS_ARGUMENT_REQUIRED_INPUT, priority++, offsetof(Operation, in));
    const auto installOut = [&] {
        Install(object, g_param_spec_object("out", "Output", "Output image", VIPS_TYPE_IMAGE, G_PARAM_READWRITE),
                VIPS_ARGUMENT_REQUIRED_OUTPUT, priority++, offsetof(Operation, out));
    };
    bool hasOut = false;
    for (std::size_t i = 0; i < type.arguments.size(); ++i) {
        const Argument& argument = type.arguments[i];
        if (!hasOut && !(argument.isRequired && argument.property->type == Type::Picture)) {
            installOut();
            hasOut = true;
        }
        Install(object, SpecOf(type.effect, argument),
                argument.isRequired ? VIPS_ARGUMENT_REQUIRED_INPUT : VIPS_ARGUMENT_OPTIONAL_INPUT, priority++,
                sizeof(Operation) + i * sizeof(Slot));
    }
    if (!hasOut) installOut();
}

void InitialiseInstance(GTypeInstance* instance, gpointer) {
    auto* operation = reinterpret_cast<Operation*>(instance);
    const OperationType& type = TypeOf(instance);
    for (std::size_t i = 0; i < type.arguments.size(); ++i) {
        const Argument& argument = type.arguments[i];
        if (argument.coordinate != Coordinate::None) SlotOf(operation, i).integer = InitialCoordinate(argument);
    }
}

}  // namespace

void RegisterOperations() {
    for (Effect& effect : ReadEffects()) {
        std::string name = "VipsOmbrix" + effect.name;
        std::ranges::replace_if(
            name, [](unsigned char c) { return c >= 0x80 || !std::isalnum(c); }, '_');
        if (g_type_from_name(name.c_str()) != 0) continue;
        const auto* type = new OperationType(std::move(effect));
        const GTypeInfo info{
            .class_size = sizeof(VipsOperationClass),
            .base_init = nullptr,
            .base_finalize = nullptr,
            .class_init = InitialiseClass,
            .class_finalize = nullptr,
            .class_data = type,
            .instance_size = static_cast<guint16>(sizeof(Operation) + type->arguments.size() * sizeof(Slot)),
            .n_preallocs = 0,
            .instance_init = InitialiseInstance,
            .value_table = nullptr};
        const GType registered = g_type_register_static(VIPS_TYPE_OPERATION, name.c_str(), &info, GTypeFlags{});
        g_type_set_qdata(registered, TypeQuark(), const_cast<OperationType*>(type));
    }
}

}  // namespace ombrix::bridge
