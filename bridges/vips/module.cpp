// What libvips looks up in a module.
#include <gmodule.h>
#include <vips/vips.h>
#include <vips/vips7compat.h>

#include "bridges/common/effects.h"
#include "bridges/vips/operation.h"

/// What is returned is a reason why there are no operations, for a warning.
extern "C" G_MODULE_EXPORT const gchar* g_module_check_init(GModule* module) {
    g_module_make_resident(module);
    try {
        ombrix::bridge::RegisterOperations();
    } catch (const ombrix::bridge::Error& error) {
        // A program with a host of its own, as the command ombrix, has the effects without libvips.
        if (error.status != OMBRIX_BUSY) return g_strdup(error.what());
    } catch (const std::exception& error) {
        return g_strdup(error.what());
    }
    return nullptr;
}

/// `vips --plugin` asks for functions of an older kind.
extern "C" G_MODULE_EXPORT im_package package_table;
im_package package_table = {const_cast<char*>("ombrix"), 0, nullptr};
