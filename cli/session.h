// What every command works with.
#pragma once

#include "cli/console.h"
#include "cli/options.h"
#include "ombrix/catalogue.h"
#include "ombrix/host.h"

namespace ombrix::cli {

struct Session {
    host::Host& host;
    const catalogue::Catalogue& catalogue;
    const Options& options;
    Console& console;
};

}  // namespace ombrix::cli
