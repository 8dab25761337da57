// The command ombrix.

#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <vips/vips8>

#include "cli/command_line.h"
#include "cli/failure.h"
#include "cli/images/image_reader.h"
#include "cli/images/output_file.h"
#include "cli/plugins.h"
#include "cli/session.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr int kDone = 0;
constexpr int kWorkFailed = 1;
constexpr int kWrongCommandLine = 2;

/// libvips, for the time of its scope.
class ImageLibrary {
  public:
    explicit ImageLibrary(const char* program) {
        if (VIPS_INIT(program) != 0) throw WorkError("the image library does not start: " + TakeLibraryMessage());
        // No operation is repeated, so cached results would only hold on to pixels.
        vips_cache_set_max(0);
        // The command itself says what matters of libvips' warnings.
        g_log_set_default_handler([](const char*, GLogLevelFlags, const char*, void*) {}, nullptr);
    }
    ~ImageLibrary() { vips_shutdown(); }
    ImageLibrary(const ImageLibrary&) = delete;
    ImageLibrary& operator=(const ImageLibrary&) = delete;
};

void Run(const char* program, const CommandLine& line) {
    const ImageLibrary library(program);
    host::Host host;
    LoadPlugins(host, line.options);
    Console console(line.options.quiet);
    Session session{host, line.options, console};
    line.command->Run(session);
    if (!std::cout.flush()) throw WorkError("standard output cannot be written");
}

int Report(const std::string& sentence, int status) {
    std::fprintf(stderr, "ombrix: %s\n", text::OnOneLine(sentence).c_str());
    return status;
}

int Main(int count, const char* const* words) {
    try {
        RemoveUnfinishedFileOnSignals();
        if (const auto line = ReadCommandLine(count, words)) Run(words[0], *line);
        return kDone;
    } catch (const UsageError& wrong) {
        return Report(wrong.what(), kWrongCommandLine);
    } catch (const std::bad_alloc&) {
        return Report("there is not enough memory for this", kWorkFailed);
    } catch (const std::exception& failure) {
        return Report(failure.what(), kWorkFailed);
    }
}

}  // namespace

}  // namespace ombrix::cli

int main(int count, char** words) { return ombrix::cli::Main(count, words); }
