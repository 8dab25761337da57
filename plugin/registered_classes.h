// What the plug-in registers, in this order. A new effect is a file of its own and a line here.
#pragma once

#include "sdk/definition_records.h"

/// The classes, each after its superclass.
#define OMBRIX_CLASSES(CLASS) \
    CLASS(MPImageFilter)      \
    CLASS(ColorFilterEffect)  \
    CLASS(ContrastEffect)     \
    CLASS(BrightnessEffect)   \
    CLASS(SepiaEffect)        \
    CLASS(BlendEffect)        \
    CLASS(InvertEffect)       \
    CLASS(GrayscaleEffect)

/// The modules, registered before the classes.
#define OMBRIX_MODULES(MODULE) \
    MODULE(OmbrixError)        \
    MODULE(OmbrixUtilities)

namespace ombrix {

// The records, `<name>Class` and `<name>Module`, are defined beside the functions that they declare.
#define OMBRIX_DECLARE(name) extern REALclassDefinition name##Class;
OMBRIX_CLASSES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

#define OMBRIX_DECLARE(name) extern REALmoduleDefinition name##Module;
OMBRIX_MODULES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

}  // namespace ombrix
