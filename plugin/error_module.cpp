// Module OmbrixError: the error codes, as hosts see them.
#include "plugin/registered_classes.h"
#include "sdk/definition_rows.h"

namespace ombrix {
namespace {

constexpr REALconstantDefinition OmbrixErrorConstants[] = {
    Constant("NO_ERROR = 0"),
    Constant("INVALID_MASK = 1"),
    Constant("INVALID_SOURCE_IMAGE = 2"),
    Constant("UNABLE_TO_CREATE_DESTINATION = 3"),
    Constant("ILLEGAL_INPUT_PARAMETER = 4"),
};

}  // namespace

REALmoduleDefinition OmbrixErrorModule = ModuleRecord("OmbrixError", {}, OmbrixErrorConstants);

}  // namespace ombrix
