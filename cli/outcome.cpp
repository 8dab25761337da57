#include "cli/outcome.h"

#include <algorithm>

#include "catalogue/arguments.h"
#include "catalogue/error_code.h"
#include "cli/failure.h"
#include "cli/reflection.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr std::string_view kErrorModule = "OmbrixError";
constexpr std::string_view kInvalidMask = "INVALID_MASK";

/// INVALID_MASK as "invalid mask".
std::string InWords(const std::string& constant) {
    std::string words = text::LowerCase(constant);
    std::replace(words.begin(), words.end(), '_', ' ');
    return words;
}

std::string SizeOf(const host::Picture& picture) { return text::Size(picture.Width(), picture.Height()); }

/// " for a picture of 40x30 with Red=300 and Mask=m.png (30x20)"
std::string GivenTo(const host::Host& host, const CallRecord& call) {
    std::vector<std::string> given;
    for (const PlannedSetting& setting : call.settings) {
        if (!setting.File()) given.push_back(setting.given.AsGiven());
    }
    for (const GivenPicture& picture : call.pictures) {
        given.push_back(picture.setting.given.AsGiven() + " (" + SizeOf(picture.read.picture) + ")");
    }
    // A missing picture may be the reason.
    for (const host::ClassInfo* ancestor : host.Ancestry(call.type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (call.byProperties && text::SameName(property.type, "Picture") &&
                call.object.Get(property.name).IsNil()) {
                given.push_back("no " + property.name);
            }
        }
    }
    std::string text = call.source ? " for a picture of " + SizeOf(call.source) : "";
    if (!given.empty()) text += " with " + text::Listed(given);
    return text;
}

}  // namespace

std::string ErrorName(const host::Host& host, std::int64_t code) {
    if (const host::ModuleInfo* module = host.FindModule(kErrorModule)) {
        for (const host::ConstantInfo& constant : module->constants) {
            if (constant.value == code) return constant.name;
        }
    }
    return "error " + std::to_string(code);
}

std::string ObjectionToMask(const std::string& file, std::int64_t maskWidth, std::int64_t maskHeight,
                            std::int64_t width, std::int64_t height) {
    if (maskWidth >= width && maskHeight >= height) return {};
    return "the mask " + file + " is " + text::Size(maskWidth, maskHeight) + ", smaller than the picture, " +
           text::Size(width, height);
}

void CheckErrorCode(Session& session, const CallRecord& call) {
    const host::PropertyInfo* property = session.host.FindProperty(call.type.name, catalogue::kErrorCodeProperty);
    if (!property) return;
    const std::int64_t code = call.object.Get(property->name).AsInteger();
    if (code == 0) return;
    const std::string name = ErrorName(session.host, code);

    for (const auto& [setting, read] : call.pictures) {
        if (name != kInvalidMask || !text::SameName(setting.name, catalogue::kMaskProperty) || !call.source) continue;
        std::string objection = ObjectionToMask(setting.given.text, read.picture.Width(), read.picture.Height(),
                                                call.source.Width(), call.source.Height());
        if (!objection.empty()) throw WorkError(objection.append(" (" + name + ")"));
    }
    throw WorkError(call.type.name + " reports " + InWords(name) + " (" + name + ")" + GivenTo(session.host, call));
}

}  // namespace ombrix::cli
