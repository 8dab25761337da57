#include "cli/images/picture_work.h"

#include <cstdio>
#include <vips/vips8>

#include "cli/failure.h"
#include "cli/images/accepted_kinds.h"
#include "cli/images/image_reader.h"
#include "cli/supervisor/supervisor.h"

namespace ombrix::cli {

namespace {

/// The command itself says what matters of warnings. What ends the process is for the supervisor.
void Log(const char* /*domain*/, GLogLevelFlags level, const char* message, void* /*data*/) {
    if ((level & G_LOG_LEVEL_ERROR) == 0) return;
    std::fprintf(stderr, "%s\n", message);
    std::fflush(stderr);
}

void StartLibrary(const Options& options) {
    if (VIPS_INIT(options.program.c_str()) != 0) {
        throw WorkError("the image library does not start: " + TakeLibraryMessage());
    }
    // No operation is repeated, so cached results would only hold on to pixels.
    vips_cache_set_max(0);
    g_log_set_default_handler(Log, nullptr);
    AcceptKinds({options.allLoaders, options.allowDamaged});
}

}  // namespace

void WorkOnPictures(Session& session, const std::vector<const OutputFile*>& written,
                    const std::function<void(Session&)>& work, int pictures) {
    SupervisedWork supervised{{}, pictures};
    for (const OutputFile* file : written) {
        supervised.written.push_back({file->Descriptor(), file->Target().string()});
    }
    Supervise(session, supervised, [&work](Session& worker) {
        StartLibrary(worker.options);
        // It is not shut down: the process ends when the work does.
        work(worker);
    });
}

}  // namespace ombrix::cli
