// Effects and their properties.
#include <memory>

#include "capi/handles.h"
#include "capi/names.h"
#include "capi/session.h"
#include "capi/values.h"

using namespace ombrix;
using namespace ombrix::capi;

namespace {

/// `valueFor` makes the value within the session.
template <class ValueFor>
ombrix_status SetValue(ombrix_effect* effect, const char* name, ValueFor valueFor) {
    return Guarded([&] {
        const Session session;
        const catalogue::Effect& type = EffectOf(session, effect);
        const catalogue::Property& property = PropertyNamed(type, name);
        const host::Value value = valueFor(session, type, property);
        try {
            effect->onRows.Set(property.name, value);
        } catch (const host::Error& error) {
            throw Failure{OMBRIX_INVALID_ARGUMENT, error.what()};
        }
    });
}

template <class Take>
ombrix_status GetValue(const ombrix_effect* effect, const char* name, Take take) {
    return Guarded([&] {
        const Session session;
        const catalogue::Property& property = PropertyNamed(EffectOf(session, effect), name);
        const host::Value value = effect->onRows.Get(property.name);
        try {
            take(value);
        } catch (const host::Error&) {
            throw Failure{OMBRIX_INVALID_ARGUMENT, effect->onRows.ClassName() + "." + property.name + " is a " +
                                                       property.type + ", and none was asked for"};
        }
    });
}

}  // namespace

ombrix_status ombrix_effect_new(const char* name, ombrix_effect** effect) {
    return Guarded([&] {
        *Required(effect, "the place of the effect") = nullptr;
        const Session session;
        *effect = new ombrix_effect(session.Host(), EffectNamed(session, name));
    });
}

void ombrix_effect_free(ombrix_effect* effect) {
    if (effect == nullptr) return;
    Guarded([&] {
        const Session session;
        delete effect;
    });
}

ombrix_status ombrix_set_integer(ombrix_effect* effect, const char* property, int64_t value) {
    return SetValue(effect, property, [&](const auto&...) { return host::Value(value); });
}

ombrix_status ombrix_set_number(ombrix_effect* effect, const char* property, double value) {
    return SetValue(effect, property, [&](const auto&...) { return host::Value(value); });
}

ombrix_status ombrix_set_boolean(ombrix_effect* effect, const char* property, int value) {
    return SetValue(effect, property, [&](const auto&...) { return host::Value(value != 0); });
}

ombrix_status ombrix_set_point(ombrix_effect* effect, const char* property, int64_t x, int64_t y) {
    return SetValue(effect, property,
                    [&](const Session& session, const auto&...) { return host::Value(session.Host().NewPoint(x, y)); });
}

ombrix_status ombrix_set_text(ombrix_effect* effect, const char* property, const char* value) {
    return SetValue(effect, property,
                    [&](const Session& session, const catalogue::Effect& type, const catalogue::Property& found) {
                        return ReadValue(session.Host(), type, found, Required(value, "the value"));
                    });
}

ombrix_status ombrix_set_picture(ombrix_effect* effect, const char* property, const ombrix_rows* rows) {
    return Guarded([&] {
        const Session session;
        const catalogue::Property& found = PropertyNamed(EffectOf(session, effect), property);
        if (found.type != "Picture" || found.readOnly) {
            throw Failure{OMBRIX_INVALID_ARGUMENT,
                          effect->onRows.ClassName() + "." + found.name + " is no picture that can be set"};
        }
        effect->onRows.SetPicture(found.name,
                                  rows == nullptr ? std::nullopt : std::optional(RowsOf(rows, "the picture")));
    });
}

ombrix_status ombrix_get_integer(const ombrix_effect* effect, const char* property, int64_t* value) {
    return GetValue(effect, property,
                    [&](const host::Value& held) { *Required(value, "the value") = held.AsInteger(); });
}

ombrix_status ombrix_get_number(const ombrix_effect* effect, const char* property, double* value) {
    return GetValue(effect, property,
                    [&](const host::Value& held) { *Required(value, "the value") = held.AsDouble(); });
}

ombrix_status ombrix_get_boolean(const ombrix_effect* effect, const char* property, int* value) {
    return GetValue(effect, property,
                    [&](const host::Value& held) { *Required(value, "the value") = held.AsBoolean(); });
}

ombrix_status ombrix_get_point(const ombrix_effect* effect, const char* property, int64_t* x, int64_t* y) {
    return GetValue(effect, property, [&](const host::Value& held) {
        const host::Point point(held.AsObject());
        *Required(x, "x") = point.X();
        *Required(y, "y") = point.Y();
    });
}

ombrix_status ombrix_set_progress(ombrix_effect* effect, ombrix_progress progress, void* data) {
    return Guarded([&] {
        const Session session;
        Required(effect, "the effect");
        if (progress == nullptr) return effect->onRows.SetProgress({});
        effect->onRows.SetProgress([=](std::int64_t done, std::int64_t all) { return progress(data, done, all) == 0; });
    });
}
