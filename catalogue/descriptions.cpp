#include "catalogue/descriptions.h"

#include <filesystem>
#include <fstream>

#include "text/names.h"

namespace ombrix::catalogue {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::map<std::string, std::string> ReadTexts(const std::filesystem::path& file) {
    std::map<std::string, std::string> texts;
    std::ifstream stream(file);
    std::string* last = nullptr;
    for (std::string line; std::getline(stream, line);) {
        const std::string_view content = Trimmed(line);
        if (content.empty() || content.front() == '#') continue;
        const std::size_t equals = content.find('=');
        if (kBlanks.find(line.front()) != std::string_view::npos && last) {
            *last += ' ' + std::string(content);
        } else if (equals != std::string_view::npos) {
            last = &texts[text::LowerCase(Trimmed(content.substr(0, equals)))];
            *last = Trimmed(content.substr(equals + 1));
        }
    }
    return texts;
}

}  // namespace

Descriptions::Descriptions(const host::Host& host) {
    for (const host::ClassInfo& type : host.Classes()) {
        if (type.plugin.empty() || plugins_.contains(type.plugin)) continue;
        plugins_[type.plugin] = ReadTexts(std::filesystem::path(type.plugin).replace_extension(".txt"));
    }
}

std::string Descriptions::OfClass(const host::ClassInfo& type) const {
    const auto texts = plugins_.find(type.plugin);
    if (texts == plugins_.end()) return "";
    const auto found = texts->second.find(text::LowerCase(type.name));
    return found == texts->second.end() ? "" : found->second;
}

std::string Descriptions::OfProperty(const host::ClassInfo& declaring, std::string_view property) const {
    const auto texts = plugins_.find(declaring.plugin);
    if (texts == plugins_.end()) return "";
    for (const std::string_view owner : {std::string_view(declaring.name), std::string_view("*")}) {
        const auto found = texts->second.find(text::LowerCase(std::string(owner) + '.' + std::string(property)));
        if (found != texts->second.end()) return found->second;
    }
    return "";
}

}  // namespace ombrix::catalogue
