#include "catalogue/values.h"

#include <utility>

#include "catalogue/accepted_range.h"
#include "catalogue/meaning.h"
#include "text/names.h"

namespace ombrix::catalogue {

Values FindValues(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property, Values known,
                  const Prepare& prepare) {
    Values values = std::move(known);
    if (text::SameName(property.type, "Integer")) {
        values.range = AcceptedRange(host, type, property, prepare);
        values.refusesInitial = values.range && !values.range->Holds(values.initial.AsInteger());
    } else if (text::SameName(property.type, "Double")) {
        values.bounds = MeaningfulBounds(host, type, property, prepare);
    }
    return values;
}

}  // namespace ombrix::catalogue
