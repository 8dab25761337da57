#include "cli/property_text.h"

#include "catalogue/accepted_range.h"
#include "catalogue/constants.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/values.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

/// "10 to 55; it has to be given", "normal, multiply or screen; normal unless given"
std::string Described(const catalogue::Values& values) {
    std::string takes, initial = Shown(values.initial);
    if (!values.constants.empty()) {
        takes = text::Join(catalogue::WordsOf(values.constants));
        for (const catalogue::Constant& constant : values.constants) {
            if (constant.value == values.initial.AsInteger()) initial = constant.word;
        }
    } else if (values.range) {
        takes = catalogue::Described(*values.range);
    } else if (values.bounds) {
        takes = text::Shown(values.bounds->low) + " to " + text::Shown(values.bounds->high);
    } else if (values.initial.IsBoolean()) {
        takes = "true or false";
    }
    if (values.initial.IsNil() && !values.refusesInitial) return takes;
    if (takes.empty()) return values.refusesInitial ? "Has to be given" : initial + " unless given";
    return takes + (values.refusesInitial ? "; it has to be given" : "; " + initial + " unless given");
}

}  // namespace

std::string TextOf(const catalogue::Effect& effect, const catalogue::Property& property) {
    if (property.readOnly || !CanBeTyped(property.type)) return property.description;
    const Doing trying(Activity::Effect, effect.Name());
    const std::string values = Described(effect.ValuesOf(property));
    return values + (values.empty() || property.description.empty() ? "" : ". ") + property.description;
}

}  // namespace ombrix::cli
