// What a program for video looks up in a frei0r plug-in. Each copy of this library is the effect that its file is named
// after: ombrix_sepia.so.
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bridges/common/effects.h"
#include "bridges/frei0r/instance.h"
#include "bridges/frei0r/parameters.h"

namespace {

using namespace ombrix::bridge;
namespace fs = std::filesystem;

fs::path OwnFile() {
    Dl_info info{};
    return dladdr(reinterpret_cast<void*>(&OwnFile), &info) != 0 ? fs::path(info.dli_fname) : fs::path();
}

/// What this copy is.
struct Plugin {
    Effect effect;
    std::string name, explanation;
};

/// Plug-ins that are not found by themselves are named in a file beside this one, a line for each.
void LoadNamedPlugins(const fs::path& folder) {
    std::ifstream list(folder / "ombrix-plugins.txt");
    for (std::string line; std::getline(list, line);) {
        if (!line.empty()) Check(ombrix_load(line.c_str()));
    }
}

Plugin ReadPlugin() {
    const fs::path file = OwnFile();
    std::string word = file.stem().string();
    if (word.starts_with("ombrix_")) word.erase(0, std::strlen("ombrix_"));
    Plugin plugin;
    plugin.name = "Ombrix " + word;
    try {
        std::vector<Effect> effects = ReadEffects();
        const auto isNamed = [&](const Effect& each) { return each.word == word; };
        auto found = std::ranges::find_if(effects, isNamed);
        if (found == effects.end()) {
            LoadNamedPlugins(file.parent_path());
            effects = ReadEffects();
            found = std::ranges::find_if(effects, isNamed);
        }
        if (found == effects.end()) throw Error("there is no effect \"" + word + "\"");
        plugin.effect = std::move(*found);
        plugin.explanation = WithoutStop(plugin.effect.description);
    } catch (const std::exception& error) {
        plugin.explanation = error.what();
    }
    return plugin;
}

/// Programs ask for it before f0r_init as well.
const Plugin& Own() {
    static const Plugin plugin = ReadPlugin();
    return plugin;
}

const std::vector<Parameter>& OwnParameters() {
    static const std::vector<Parameter> parameters = ParametersOf(Own().effect);
    return parameters;
}

/// The first picture that the effect does not work without; null for filters.
const Property* Second() {
    for (const Property& property : Own().effect.properties) {
        if (property.type == Type::Picture && property.refusesDefault) return &property;
    }
    return nullptr;
}

Instance* InstanceOf(f0r_instance_t instance) { return static_cast<Instance*>(instance); }

bool HasParameter(int index) { return index >= 0 && static_cast<std::size_t>(index) < OwnParameters().size(); }

}  // namespace

int f0r_init() { return 1; }
void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    *info = {.name = Own().name.c_str(),
             .author = "Ombrix maintainers",
             .plugin_type = Second() != nullptr ? F0R_PLUGIN_TYPE_MIXER2 : F0R_PLUGIN_TYPE_FILTER,
             .color_model = F0R_COLOR_MODEL_RGBA8888,
             .frei0r_version = FREI0R_MAJOR_VERSION,
             .major_version = 0,
             .minor_version = 1,
             .num_params = static_cast<int>(OwnParameters().size()),
             .explanation = Own().explanation.c_str()};
}

void f0r_get_param_info(f0r_param_info_t* info, int index) {
    if (!HasParameter(index)) return;
    const Parameter& parameter = OwnParameters()[static_cast<std::size_t>(index)];
    *info = {parameter.property->word.c_str(), parameter.type, parameter.explanation.c_str()};
}

f0r_instance_t f0r_construct(unsigned width, unsigned height) {
    try {
        return new Instance(Own().effect, OwnParameters(), Second(), width, height);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", OwnFile().stem().c_str(), error.what());
        return nullptr;
    }
}

void f0r_destruct(f0r_instance_t instance) { delete InstanceOf(instance); }

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t value, int index) {
    if (instance != nullptr && value != nullptr && HasParameter(index)) {
        InstanceOf(instance)->Set(static_cast<std::size_t>(index), value);
    }
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t value, int index) {
    if (instance != nullptr && value != nullptr && HasParameter(index)) {
        InstanceOf(instance)->Get(static_cast<std::size_t>(index), value);
    }
}

void f0r_update(f0r_instance_t instance, double, const uint32_t* in, uint32_t* out) {
    if (instance != nullptr) InstanceOf(instance)->Update(in, nullptr, out);
}

void f0r_update2(f0r_instance_t instance, double, const uint32_t* first, const uint32_t* second, const uint32_t*,
                 uint32_t* out) {
    if (instance != nullptr) InstanceOf(instance)->Update(first, second, out);
}
