#include "bridges/gegl/operation.h"

#include <gegl-plugin.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "bridges/gegl/pixels.h"
#include "bridges/gegl/properties.h"

namespace ombrix::bridge {
namespace {

/// What the operations of one class have in common. Never destroyed, as classes never are.
struct OperationType {
    explicit OperationType(Effect given) : effect(std::move(given)), settings(SettingsOf(effect)) {
        for (const Property& property : effect.properties) {
            if (second == nullptr && property.type == Type::Picture && property.refusesDefault) second = &property;
        }
    }

    const Effect effect;
    const std::vector<Setting> settings;
    const Property* second = nullptr;  ///< what GEGL's "aux" is for; null for filters
    GType parent = 0;
    guint16 offset = 0;  ///< of the Operation in an instance, behind the parent's
    std::string name = "ombrix:" + effect.word;
};

/// What an operation has of its own.
struct Operation {
    PixelEffect* pixels;
    std::vector<std::int64_t>* coordinates;  ///< a place for each setting
};

GQuark TypeQuark() { return g_quark_from_static_string("ombrix-gegl-operation"); }

const OperationType& TypeOf(const void* object) {
    return *static_cast<const OperationType*>(g_type_get_qdata(G_OBJECT_TYPE(object), TypeQuark()));
}

Operation& OperationOf(void* object) {
    return *reinterpret_cast<Operation*>(static_cast<char*>(object) + TypeOf(object).offset);
}

GObjectClass* ParentClass(void* object) { return G_OBJECT_CLASS(g_type_class_peek(TypeOf(object).parent)); }

void Give(GObject* object, std::size_t index, const GValue* value) {
    const OperationType& type = TypeOf(object);
    Operation& operation = OperationOf(object);
    const Setting& setting = type.settings[index];
    const Property& property = *setting.property;
    if (G_VALUE_HOLDS_BOOLEAN(value)) return operation.pixels->Set(property, g_value_get_boolean(value) != FALSE);
    if (G_VALUE_HOLDS_DOUBLE(value)) return operation.pixels->Set(property, g_value_get_double(value));
    const std::int64_t number = G_VALUE_HOLDS_ENUM(value) ? g_value_get_enum(value) : g_value_get_int(value);
    (*operation.coordinates)[index] = number;
    if (setting.coordinate == Coordinate::None) return operation.pixels->Set(property, number);
    const std::size_t x = setting.coordinate == Coordinate::X ? index : index - 1;
    operation.pixels->Set(property, Point{(*operation.coordinates)[x], (*operation.coordinates)[x + 1]});
}

/// Values are kept in the object's data as they were given.
void SetProperty(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
    try {
        if (OperationOf(object).pixels != nullptr) Give(object, id - 1, value);
    } catch (const std::exception& error) {
        g_warning("%s: %s", TypeOf(object).name.c_str(), error.what());
    }
    auto* kept = g_new0(GValue, 1);
    g_value_init(kept, G_VALUE_TYPE(value));
    g_value_copy(value, kept);
    g_object_set_data_full(object, spec->name, kept, [](gpointer data) {
        g_value_unset(static_cast<GValue*>(data));
        g_free(data);
    });
}

void GetProperty(GObject* object, guint, GValue* value, GParamSpec* spec) {
    if (const auto* kept = static_cast<const GValue*>(g_object_get_data(object, spec->name))) g_value_copy(kept, value);
}

void Prepare(GeglOperation* operation) {
    const Babl* format = babl_format("R'G'B'A u8");
    gegl_operation_set_format(operation, "input", format);
    if (TypeOf(operation).second != nullptr) gegl_operation_set_format(operation, "aux", format);
    gegl_operation_set_format(operation, "output", format);
}

/// Runs `body`; where it fails the pixels pass as they are.
template <class Body>
void Guarded(GeglOperation* operation, const std::uint8_t* in, std::uint8_t* out, std::int64_t pixels, Body body) {
    try {
        PixelEffect* effect = OperationOf(operation).pixels;
        if (effect == nullptr) throw Error("the effect cannot be used");
        body(*effect);
    } catch (const std::exception& error) {
        g_warning("%s: %s", TypeOf(operation).name.c_str(), error.what());
        if (in != out) std::copy_n(in, 4 * pixels, out);
    }
}

/// Rows, where the samples are some.
std::pair<std::int64_t, std::int64_t> SizeOf(glong samples, const GeglRectangle* area) {
    if (area->width > 0 && samples % area->width == 0) return {area->width, samples / area->width};
    return {samples, 1};
}

gboolean Filter(GeglOperation* operation, void* in, void* out, glong samples, const GeglRectangle* area, gint) {
    const auto* from = static_cast<const std::uint8_t*>(in);
    auto* to = static_cast<std::uint8_t*>(out);
    const auto [width, height] = SizeOf(samples, area);
    Guarded(operation, from, to, samples, [&](PixelEffect& effect) { effect.Apply(from, to, width, height); });
    return TRUE;
}

gboolean Compose(GeglOperation* operation, void* in, void* aux, void* out, glong samples, const GeglRectangle* area,
                 gint) {
    const auto* from = static_cast<const std::uint8_t*>(in);
    auto* to = static_cast<std::uint8_t*>(out);
    const auto [width, height] = SizeOf(samples, area);
    if (from == nullptr) return TRUE;
    if (aux == nullptr) {
        if (from != to) std::copy_n(from, 4 * samples, to);
        return TRUE;
    }
    Guarded(operation, from, to, samples,
            [&](PixelEffect& effect) { effect.Apply(from, static_cast<const std::uint8_t*>(aux), to, width, height); });
    return TRUE;
}

GeglRectangle WholeInput(GeglOperation* operation) {
    const GeglRectangle* whole = gegl_operation_source_get_bounding_box(operation, "input");
    return whole != nullptr ? *whole : GeglRectangle{};
}

gboolean FilterWhole(GeglOperation* operation, GeglBuffer* input, GeglBuffer* output, const GeglRectangle* area, gint) {
    const Babl* format = babl_format("R'G'B'A u8");
    const GeglRectangle whole = WholeInput(operation);
    const std::int64_t pixels = std::int64_t{whole.width} * whole.height;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(4 * pixels));
    gegl_buffer_get(input, &whole, 1.0, format, bytes.data(), GEGL_AUTO_ROWSTRIDE, GEGL_ABYSS_NONE);
    Guarded(operation, bytes.data(), bytes.data(), pixels,
            [&](PixelEffect& effect) { effect.Apply(bytes.data(), bytes.data(), whole.width, whole.height); });
    const std::int64_t first = std::int64_t{area->y - whole.y} * whole.width + (area->x - whole.x);
    gegl_buffer_set(output, area, 0, format, bytes.data() + 4 * first, 4 * whole.width);
    return TRUE;
}

void Finalize(GObject* object) {
    delete OperationOf(object).pixels;
    delete OperationOf(object).coordinates;
    ParentClass(object)->finalize(object);
}

void InitialiseClass(gpointer created, gpointer data) {
    const auto& type = *static_cast<const OperationType*>(data);
    auto* object = G_OBJECT_CLASS(created);
    object->set_property = SetProperty;
    object->get_property = GetProperty;
    object->finalize = Finalize;
    auto* operation = GEGL_OPERATION_CLASS(created);
    operation->prepare = Prepare;
    operation->opencl_support = FALSE;
    operation->threaded = FALSE;  // an effect's own tasks use the cores
    if (type.second != nullptr) {
        GEGL_OPERATION_POINT_COMPOSER_CLASS(created)->process = Compose;
    } else if (type.effect.pixelByPixel) {
        GEGL_OPERATION_POINT_FILTER_CLASS(created)->process = Filter;
    } else {
        GEGL_OPERATION_FILTER_CLASS(created)->process = FilterWhole;
        operation->get_required_for_output = [](GeglOperation* self, const gchar*, const GeglRectangle*) {
            return WholeInput(self);
        };
        operation->get_cached_region = [](GeglOperation* self, const GeglRectangle*) { return WholeInput(self); };
    }
    for (std::size_t i = 0; i < type.settings.size(); ++i) {
        g_object_class_install_property(object, static_cast<guint>(i + 1), SpecOf(type.effect, type.settings[i]));
    }
    std::string title = "Ombrix " + type.effect.word;
    gegl_operation_class_set_keys(operation, "name", type.name.c_str(), "title", title.c_str(), "categories",
                                  type.second != nullptr ? "compositors:blend" : "color", "description",
                                  type.effect.description.c_str(), nullptr);
}

void InitialiseInstance(GTypeInstance* instance, gpointer created) {
    const auto& type = *static_cast<const OperationType*>(g_type_get_qdata(G_TYPE_FROM_CLASS(created), TypeQuark()));
    auto& operation = *reinterpret_cast<Operation*>(reinterpret_cast<char*>(instance) + type.offset);
    operation.coordinates = new std::vector<std::int64_t>(type.settings.size());
    try {
        operation.pixels = new PixelEffect(type.effect, type.second);
    } catch (const std::exception& error) {
        g_warning("%s: %s", type.name.c_str(), error.what());
    }
}

}  // namespace

void RegisterOperations() {
    for (Effect& effect : ReadEffects()) {
        std::string name = "OmbrixGegl" + effect.name;
        std::ranges::replace_if(
            name, [](char c) { return !g_ascii_isalnum(c); }, '_');
        if (g_type_from_name(name.c_str()) != 0) continue;
        auto* type = new OperationType(std::move(effect));
        if (type->second != nullptr && !type->effect.pixelByPixel) continue;  // GEGL composes pixel by pixel
        type->parent = type->second != nullptr     ? GEGL_TYPE_OPERATION_POINT_COMPOSER
                       : type->effect.pixelByPixel ? GEGL_TYPE_OPERATION_POINT_FILTER
                                                   : GEGL_TYPE_OPERATION_FILTER;
        GTypeQuery parent;
        g_type_query(type->parent, &parent);
        constexpr auto kPlace = static_cast<guint>(alignof(Operation));
        type->offset = static_cast<guint16>((parent.instance_size + kPlace - 1) / kPlace * kPlace);
        const GTypeInfo info{.class_size = static_cast<guint16>(parent.class_size),
                             .base_init = nullptr,
                             .base_finalize = nullptr,
                             .class_init = InitialiseClass,
                             .class_finalize = nullptr,
                             .class_data = type,
                             .instance_size = static_cast<guint16>(type->offset + sizeof(Operation)),
                             .n_preallocs = 0,
                             .instance_init = InitialiseInstance,
                             .value_table = nullptr};
        const GType registered = g_type_register_static(type->parent, name.c_str(), &info, GTypeFlags{});
        g_type_set_qdata(registered, TypeQuark(), type);
    }
}

}  // namespace ombrix::bridge
