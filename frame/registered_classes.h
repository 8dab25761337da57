// Everything that the plug-in registers, in the order in which it does. A new effect is its own file and one line here.
#pragma once

#include "frame/definition_records.h"

/// The classes; a class stands after its superclass.
#define OMBRIX_CLASSES(CLASS) \
    CLASS(MPImageFilter)      \
    CLASS(ColorFilterEffect)  \
    CLASS(ContrastEffect)     \
    CLASS(BrightnessEffect)   \
    CLASS(SepiaEffect)        \
    CLASS(BlendEffect)        \
    CLASS(InvertEffect)       \
    CLASS(GrayscaleEffect)

/// The modules, which are registered before all classes.
#define OMBRIX_MODULES(MODULE) \
    MODULE(OmbrixError)        \
    MODULE(OmbrixUtilities)

namespace ombrix {

// The records themselves, `<name>Class` and `<name>Module`, are defined next to what they declare.
#define OMBRIX_DECLARE(name) extern REALclassDefinition name##Class;
OMBRIX_CLASSES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

#define OMBRIX_DECLARE(name) extern REALmoduleDefinition name##Module;
OMBRIX_MODULES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

}  // namespace ombrix
