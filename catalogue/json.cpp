#include "catalogue/json.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace ombrix::catalogue {

namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const Range& range) {
    const auto end = [](std::int64_t value, std::int64_t none) { return value == none ? Json() : Json(value); };
    return {{"low", end(range.low, -kFarthest)}, {"high", end(range.high, kFarthest)}};
}

/// Null for nil and for objects, but a point is [x, y].
Json ToJson(const host::Value& value) {
    if (value.IsBoolean()) return value.AsBoolean();
    if (value.IsInteger()) return value.AsInteger();
    if (value.IsDouble()) return value.AsDouble();
    if (value.IsNil() || !value.AsObject().IsA("Point")) return {};
    const host::Point point(value.AsObject());
    return Json::array({point.X(), point.Y()});
}

/// Null for properties that are the same for every part.
Json RoleOf(const Effect& effect, const Property& property) {
    const PartRoles& roles = effect.RolesInParts();
    for (const PartRoles::PictureProperty& each : roles.pictures) {
        if (each.name == property.name) return each.role == PictureRole::Placed ? "placed" : "along";
    }
    for (const PartRoles::PointProperty& each : roles.points) {
        if (each.name != property.name || each.role == PointRole::Fixed) continue;
        return each.role == PointRole::Position ? "position" : "extent";
    }
    return {};
}

/// Of a placed picture: the mask that can show its shape.
Json ShapeOf(const Effect& effect, const Property& property) {
    if (RoleOf(effect, property) != "placed") return {};
    const std::optional<ShapeMask>& mask = effect.ShapeMaskOf(property);
    return mask ? Json{{"property", mask->property}, {"whiteHides", mask->whiteHides}} : Json();
}

Json ToJson(const Effect& effect, const Property& property) {
    const Values& values = effect.ValuesOf(property);
    const auto& positions = effect.ByPosition();
    const auto position = std::ranges::find(positions, &property);
    Json constants = Json::array();
    for (const Constant& constant : values.constants) {
        constants.push_back({{"name", constant.name}, {"word", constant.word}, {"value", constant.value}});
    }
    return {{"name", property.name},
            {"word", property.word},
            {"type", property.type},
            {"description", property.description},
            {"readOnly", property.readOnly},
            {"inherited", property.inherited},
            {"position", position == positions.end() ? Json() : Json(position - positions.begin())},
            {"default", property.readOnly ? Json() : ToJson(values.initial)},
            {"refusesDefault", values.refusesInitial},
            {"range", values.range ? ToJson(*values.range) : Json()},
            {"bounds", values.bounds ? Json{{"low", values.bounds->low}, {"high", values.bounds->high}} : Json()},
            {"role", RoleOf(effect, property)},
            {"shapeMask", ShapeOf(effect, property)},
            {"constants", std::move(constants)}};
}

Json ToJson(const Effect& effect) {
    Json properties = Json::array();
    for (const Property& property : effect.Properties()) properties.push_back(ToJson(effect, property));
    return {{"name", effect.Name()},
            {"word", effect.Word()},
            {"plugin", effect.Type().plugin},
            {"description", effect.Description()},
            {"pixelByPixel", effect.WorksPixelByPixel()},
            {"keepsAlpha", effect.KeepsAlpha()},
            {"inPlace", effect.WorksInPlace()},
            {"properties", std::move(properties)}};
}

/// In the order of loading.
std::vector<std::string> PluginsOf(const host::Host& host) {
    std::vector<std::string> paths;
    const auto add = [&paths](const auto& infos) {
        for (const auto& info : infos) {
            if (!info.plugin.empty() && std::ranges::find(paths, info.plugin) == paths.end()) {
                paths.push_back(info.plugin);
            }
        }
    };
    add(host.Classes());
    add(host.Modules());
    return paths;
}

}  // namespace

std::string ToJson(const host::Host& host, const Catalogue& catalogue, const std::vector<host::BrokenPlugin>& broken,
                   const Effect* only, int indent) {
    Json plugins = Json::array(), effects = Json::array();
    for (const std::string& path : PluginsOf(host)) plugins.push_back({{"path", path}});
    for (const host::BrokenPlugin& each : broken) {
        plugins.push_back({{"path", each.file.string()}, {"error", each.reason}});
    }
    for (const Effect& effect : catalogue.Effects()) {
        if (!only || only == &effect) effects.push_back(ToJson(effect));
    }
    const Json whole{{"version", OMBRIX_VERSION}, {"plugins", std::move(plugins)}, {"effects", std::move(effects)}};
    // Paths and descriptions may be any bytes.
    return whole.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace ombrix::catalogue
