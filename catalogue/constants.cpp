#include "catalogue/constants.h"

#include <algorithm>

#include "catalogue/accepted_range.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::catalogue {

namespace {

using host::ConstantInfo;
using host::PropertyInfo;

bool IsSettableInteger(const PropertyInfo& property) {
    return text::SameName(property.type, "Integer") && !property.readOnly;
}

/// As "MODE" of MODE_HUE and the end of "BlendMode".
bool IsForByName(const ConstantInfo& constant, const PropertyInfo& property) {
    if (!IsSettableInteger(property)) return false;
    const std::size_t end = constant.name.find('_');
    if (end == std::string::npos || end == 0) return false;
    return text::LowerCase(property.name).ends_with(text::LowerCase(constant.name.substr(0, end)));
}

/// The Integer whose range holds all constants and little else; null when none does.
const PropertyInfo* Closest(host::Host& host, const host::ClassInfo& type,
                            const std::vector<const PropertyInfo*>& integers,
                            const std::vector<ConstantInfo>& constants, const Prepare& prepare) {
    const PropertyInfo* closest = nullptr;
    std::int64_t closestSpan = 2 * kFarthest;  // one without ends fits none
    for (const PropertyInfo* property : integers) {
        const auto range = AcceptedRange(host, type, *property, prepare);
        const bool holdsAll =
            range && std::ranges::all_of(constants, [&range](const auto& each) { return range->Holds(each.value); });
        if (!holdsAll || range->high - range->low >= closestSpan) continue;
        closest = property;
        closestSpan = range->high - range->low;
    }
    return closest;
}

const host::ClassInfo* DeclaringClass(const host::Host& host, const host::ClassInfo& type,
                                      const PropertyInfo& property) {
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const PropertyInfo& declared : ancestor->properties) {
            if (text::SameName(declared.name, property.name)) return ancestor;
        }
    }
    return nullptr;
}

}  // namespace

std::vector<Constant> ConstantsFor(host::Host& host, const host::ClassInfo& type, const PropertyInfo& property,
                                   const Prepare& prepare) {
    if (!IsSettableInteger(property)) return {};
    const host::ClassInfo* declaring = DeclaringClass(host, type, property);
    if (!declaring || declaring->constants.empty()) return {};

    std::vector<const PropertyInfo*> others;  // that no constant names
    for (const PropertyInfo& each : declaring->properties) {
        const auto names = [&each](const ConstantInfo& constant) { return IsForByName(constant, each); };
        if (IsSettableInteger(each) && std::ranges::none_of(declaring->constants, names)) others.push_back(&each);
    }
    std::vector<ConstantInfo> named, rest;
    for (const ConstantInfo& constant : declaring->constants) {
        const auto isNamed = [&constant](const PropertyInfo& each) { return IsForByName(constant, each); };
        if (IsForByName(constant, property)) {
            named.push_back(constant);
        } else if (std::ranges::none_of(declaring->properties, isNamed)) {
            rest.push_back(constant);
        }
    }
    if (!named.empty() || rest.empty()) return WithWords(named);
    const PropertyInfo* owner = others.size() == 1 ? others.front() : Closest(host, type, others, rest, prepare);
    return owner && text::SameName(owner->name, property.name) ? WithWords(rest) : std::vector<Constant>{};
}

std::vector<Constant> WithWords(const std::vector<ConstantInfo>& constants) {
    std::vector<std::string> names;
    for (const ConstantInfo& constant : constants) names.push_back(constant.name);
    const std::size_t common = text::CommonBeginning(names).size();
    std::vector<Constant> result;
    for (const ConstantInfo& constant : constants) {
        result.push_back({constant.name, text::LowerCase(constant.name.substr(common)), constant.value});
    }
    return result;
}

std::vector<std::string> WordsOf(const std::vector<Constant>& constants) {
    std::vector<std::string> words;
    for (const Constant& constant : constants) words.push_back(constant.word);
    return words;
}

const Constant* FindConstant(const std::vector<Constant>& constants, std::string_view given) {
    std::string name(given);
    std::ranges::replace_if(
        name, [](char letter) { return letter == '-' || letter == ' '; }, '_');
    for (const auto member : {&Constant::name, &Constant::word}) {
        for (const Constant& constant : constants) {
            if (text::SameName(constant.*member, name)) return &constant;
        }
    }
    return nullptr;
}

std::string IntegerForms(const std::string& text, const std::vector<Constant>& constants) {
    constexpr std::size_t kMostOffered = 3;
    if (text.find_first_not_of("+-0123456789") == std::string::npos && !text.empty()) {
        return "a whole number that 64 bits can hold";
    }
    if (constants.empty()) return "a whole number";
    const std::vector<std::string> words = WordsOf(constants);
    std::vector<std::string> offered = text::NearestNames(text, words, kMostOffered);
    if (offered.empty()) {
        std::vector<std::string> names;
        for (const Constant& constant : constants) names.push_back(constant.name);
        offered = text::NearestNames(text, names, kMostOffered);
    }
    if (offered.empty()) return "a whole number or one of " + text::Join(words);
    return "a whole number or the name of a constant such as " + text::Join(offered);
}

}  // namespace ombrix::catalogue
