// What GEGL looks up in a module.
#include <gegl-plugin.h>

#include <exception>

#include "bridges/common/effects.h"
#include "bridges/gegl/operation.h"

extern "C" G_MODULE_EXPORT const GeglModuleInfo* gegl_module_query(GTypeModule*);
extern "C" G_MODULE_EXPORT gboolean gegl_module_register(GTypeModule*);

const GeglModuleInfo* gegl_module_query(GTypeModule*) {
    static const GeglModuleInfo info = {GEGL_MODULE_ABI_VERSION};
    return &info;
}

gboolean gegl_module_register(GTypeModule*) {
    try {
        ombrix::bridge::RegisterOperations();
        return TRUE;
    } catch (const std::exception& error) {
        g_warning("ombrix: %s", error.what());
        return FALSE;
    }
}
