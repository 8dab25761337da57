#include "catalogue/error_code.h"

namespace ombrix::catalogue {

bool ReportsError(const host::Host& host, const host::Object& object) {
    return host.FindProperty(object.ClassName(), kErrorCodeProperty) && object.Get(kErrorCodeProperty).AsInteger() != 0;
}

}  // namespace ombrix::catalogue
