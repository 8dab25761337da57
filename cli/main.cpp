// The command ombrix.

#include <cstdio>
#include <exception>
#include <iostream>
#include <new>

#include "cli/command_line.h"
#include "cli/failure.h"
#include "cli/plugins.h"
#include "cli/session.h"
#include "cli/supervisor/cleanup.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr int kDone = 0;
constexpr int kWorkFailed = 1;
constexpr int kWrongCommandLine = 2;

void Run(const CommandLine& line) {
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
        CleanUpOnSignals();
        if (const auto line = ReadCommandLine(count, words)) Run(*line);
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
