#include "cli/gallery/captions.h"

#include <glib.h>

#include <algorithm>
#include <system_error>

#include "cli/failure.h"
#include "cli/images/image_writer.h"
#include "cli/values.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/shell_words.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

/// The fill is the same in all pictures of an effect.
bool IsCommon(const SceneSetting& setting) {
    const auto* role = std::get_if<Role>(&setting.value);
    return role && *role == Role::Fill;
}

/// The picture's own if such files can be written.
std::string SuffixLike(const fs::path& picture) {
    try {
        FormatFor(picture);
        return picture.extension().string();
    } catch (const UsageError&) {
        return ".png";
    }
}

std::string WithoutEnding(const std::string& name, std::string_view ending) {
    return name.size() > ending.size() && name.ends_with(ending) ? name.substr(0, name.size() - ending.size()) : name;
}

}  // namespace

std::string Displayed(const fs::path& file) {
    gchar* valid = g_utf8_make_valid(file.c_str(), -1);
    std::string text = valid;
    g_free(valid);
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; }, ' ');
    return text;
}

std::string Captions::Title(const host::ClassInfo& type, const Shot& shot) const {
    std::vector<std::string> words;
    for (const SceneSetting& setting : shot.settings) {
        if (IsCommon(setting)) continue;
        const auto* role = std::get_if<Role>(&setting.value);
        words.push_back(setting.property + "=" + (role ? Displayed(FileOf(*role).filename()) : Text(setting)));
    }
    return words.empty() ? type.name : text::Join(words, " ");
}

std::string Captions::Description(const host::ClassInfo& type, const Shot& shot) const {
    std::string with;
    for (const SceneSetting& setting : shot.settings) {
        with += (with.empty() ? " with " : ", ") + setting.property + " " + Displayed(Text(setting));
    }
    return Displayed(request_.picture.filename()) + " under " + type.name + with + ": " + shot.impression;
}

std::string Captions::CommandLine(const host::ClassInfo& type, const Shot& shot) {
    std::vector<std::string> words{session_.options.program, "apply"};
    for (const fs::path& plugin : PluginsOf(type)) words.insert(words.end(), {"--plugin", plugin.string()});
    if (session_.options.maxPixels != Options().maxPixels) {
        words.insert(words.end(), {"--max-pixels", std::to_string(session_.options.maxPixels)});
    }
    words.push_back(type.name);
    for (const SceneSetting& setting : shot.settings) words.push_back(setting.property + "=" + Text(setting));
    words.insert(words.end(), {request_.picture.string(), OutputName(type, shot)});
    return text::ShellLine(words);
}

fs::path Captions::FileOf(Role role) const {
    if (role == Role::Fill) return request_.fill.value_or(request_.picture);
    return request_.mask.value_or(kDrawnMaskName);
}

/// As on a command line.
std::string Captions::Text(const SceneSetting& setting) const {
    if (!setting.constant.empty()) return setting.constant;
    if (const auto* value = std::get_if<host::Value>(&setting.value)) return Shown(*value);
    if (const auto* role = std::get_if<Role>(&setting.value)) return FileOf(*role).string();
    const auto [x, y] = PointIn(std::get<PointShare>(setting.value), width_, height_);
    return std::to_string(x) + "," + std::to_string(y);
}

/// The plug-ins that the class and its superclasses come from.
std::vector<fs::path> Captions::PluginsOf(const host::ClassInfo& type) const {
    const auto ancestry = session_.host.Ancestry(type.name);
    std::vector<fs::path> plugins;
    for (const fs::path& plugin : session_.options.plugins) {
        const bool isUsed = std::any_of(ancestry.begin(), ancestry.end(), [&plugin](const host::ClassInfo* ancestor) {
            std::error_code error;
            return fs::equivalent(ancestor->plugin, plugin, error);
        });
        if (isUsed) plugins.push_back(plugin);
    }
    return plugins;
}

/// "photo-blend-mode_overlay-opacity0.5.jpg"
std::string Captions::OutputName(const host::ClassInfo& type, const Shot& shot) {
    std::string name = request_.picture.stem().string() + "-" + text::LowerCase(WithoutEnding(type.name, "Effect"));
    for (const SceneSetting& setting : shot.settings) {
        if (IsCommon(setting)) continue;
        const bool isFile = std::holds_alternative<Role>(setting.value);
        const bool isConstant = !setting.constant.empty();
        name += "-" + text::LowerCase((isConstant ? "" : setting.property) + (isFile ? "" : Text(setting)));
    }
    // Must look neither like an option nor like a setting.
    if (name.starts_with('-') || name.find('=') != std::string::npos) name = "./" + name;
    std::string unique = name;
    for (int number = 2; !outputs_.insert(unique).second; ++number) unique = name + "-" + std::to_string(number);
    return unique + SuffixLike(request_.picture);
}

}  // namespace ombrix::cli
