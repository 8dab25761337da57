#include "cli/outcome.h"

#include <algorithm>

#include "cli/accepted_range.h"
#include "cli/failure.h"
#include "cli/reflection.h"
#include "cli/text.h"
#include "host/text.h"

namespace ombrix::cli {

namespace {

constexpr std::string_view kErrorModule = "OmbrixError";
constexpr std::string_view kInvalidMask = "INVALID_MASK";
constexpr std::string_view kMaskProperty = "Mask";

std::string ErrorName(const host::Host& host, std::int64_t code) {
    if (const host::ModuleInfo* module = host.FindModule(kErrorModule)) {
        for (const host::ConstantInfo& constant : module->constants) {
            if (constant.value == code) return constant.name;
        }
    }
    return "error " + std::to_string(code);
}

/// INVALID_MASK as "invalid mask".
std::string InWords(const std::string& constant) {
    std::string words = host::LowerCase(constant);
    std::replace(words.begin(), words.end(), '_', ' ');
    return words;
}

std::string SizeOf(const host::Picture& picture) {
    return std::to_string(picture.Width()) + "x" + std::to_string(picture.Height());
}

/// The mask, when it is too small for the picture; null when that is not what is wrong.
const GivenPicture* SmallMask(const CallRecord& call) {
    for (const GivenPicture& given : call.pictures) {
        const host::Picture& mask = given.read.picture;
        if (call.source && host::SameName(given.setting.name, kMaskProperty) &&
            (mask.Width() < call.source.Width() || mask.Height() < call.source.Height())) {
            return &given;
        }
    }
    return nullptr;
}

/// What the effect was given, with the sizes of pictures: "Red=300, Mask=m.png (30x20)".
std::string GivenTo(const host::Host& host, const CallRecord& call) {
    std::vector<std::string> given;
    for (const PlannedSetting& setting : call.settings) {
        if (!setting.File()) given.push_back(setting.given.AsGiven());
    }
    for (const GivenPicture& picture : call.pictures) {
        given.push_back(picture.setting.given.AsGiven() + " (" + SizeOf(picture.read.picture) + ")");
    }
    // A picture that is missing may be what is wrong.
    for (const host::ClassInfo* ancestor : host.Ancestry(call.type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (call.byProperties && host::SameName(property.type, "Picture") &&
                call.object.Get(property.name).IsNil()) {
                given.push_back("no " + property.name);
            }
        }
    }
    std::string text = call.source ? " for a picture of " + SizeOf(call.source) : "";
    if (!given.empty()) text += " with " + Listed(given);
    return text;
}

/// The Integer that the call went by for a property, as the property itself or as an argument of its name.
std::optional<std::int64_t> UsedValue(const CallRecord& call, const host::PropertyInfo& property) {
    for (const PlannedSetting& setting : call.settings) {
        const auto* value = std::get_if<host::Value>(&setting.value);
        if (value && value->IsInteger() && host::SameName(setting.name, property.name)) return value->AsInteger();
    }
    // One that was not given can be at fault too: an effect need not take what a new object has.
    if (call.byProperties) return call.object.Get(property.name).AsInteger();
    return std::nullopt;
}

/// "Red=300; Red goes from -255 to 255", when the fault lies with one property by itself; empty when not.
std::string RefusedProperty(host::Host& host, const CallRecord& call) {
    for (const host::ClassInfo* ancestor : host.Ancestry(call.type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            const auto range = AcceptedRange(host, call.type, property);
            const auto value = range ? UsedValue(call, property) : std::nullopt;
            if (!value || range->Holds(*value)) continue;
            return property.name + "=" + std::to_string(*value) + "; " + property.name + " goes from " +
                   std::to_string(range->low) + " to " + std::to_string(range->high);
        }
    }
    return "";
}

}  // namespace

void CheckErrorCode(Session& session, const CallRecord& call) {
    const host::PropertyInfo* property = FindProperty(session.host, call.type, kErrorCodeProperty);
    if (!property) return;
    const std::int64_t code = call.object.Get(property->name).AsInteger();
    if (code == 0) return;
    const std::string name = ErrorName(session.host, code);

    if (name == kInvalidMask) {
        if (const GivenPicture* mask = SmallMask(call)) {
            throw WorkError("the mask " + mask->setting.given.text + " is " + SizeOf(mask->read.picture) +
                            ", smaller than the picture, " + SizeOf(call.source) + " (" + name + ")");
        }
    }
    if (const std::string refusal = RefusedProperty(session.host, call); !refusal.empty()) {
        throw WorkError(call.type.name + " refuses " + refusal + " (" + name + ")");
    }
    throw WorkError(call.type.name + " reports " + InWords(name) + " (" + name + ")" + GivenTo(session.host, call));
}

}  // namespace ombrix::cli
