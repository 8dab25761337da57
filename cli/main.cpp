// The command ombrix: image effects of the loaded plug-ins, from image files to image files.

#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <vips/vips8>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/image_reader.h"
#include "cli/output_file.h"
#include "cli/session.h"
#include "cli/text.h"

namespace ombrix::cli {

namespace {

constexpr int kDone = 0;
constexpr int kWorkFailed = 1;
constexpr int kWrongCommandLine = 2;

/// libvips for as long as this scope is.
class ImageLibrary {
  public:
    explicit ImageLibrary(const char* program) {
        if (VIPS_INIT(program) != 0) throw WorkError("the image library does not start: " + TakeLibraryMessage());
        // Nothing is done twice here, so keeping results would only keep pixels alive.
        vips_cache_set_max(0);
        // Its warnings are about the insides of files. What matters of them, the command says itself.
        g_log_set_default_handler([](const char*, GLogLevelFlags, const char*, void*) {}, nullptr);
    }
    ~ImageLibrary() { vips_shutdown(); }
    ImageLibrary(const ImageLibrary&) = delete;
    ImageLibrary& operator=(const ImageLibrary&) = delete;
};

void Run(const char* program, const Arguments& arguments) {
    const ImageLibrary library(program);
    host::Host host;
    LoadPlugins(host, arguments.options);
    Console console(arguments.options.quiet);
    Session session{host, arguments.options, console};
    struct {
        Session& session;
        void operator()(const ApplyCommand& command) const { Apply(session, command); }
        void operator()(const CallCommand& command) const { Call(session, command); }
        void operator()(const ListCommand& command) const { List(session, command); }
        void operator()(const GalleryCommand& command) const { Gallery(session, command); }
    } const run{session};
    std::visit(run, arguments.command);
    if (!std::cout.flush()) throw WorkError("standard output cannot be written");
}

int Report(const std::string& sentence, int status) {
    std::fprintf(stderr, "ombrix: %s\n", OnOneLine(sentence).c_str());
    return status;
}

int Main(int count, const char* const* words) {
    try {
        RemoveUnfinishedFileOnSignals();
        if (const auto arguments = ParseArguments(count, words)) Run(words[0], *arguments);
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
