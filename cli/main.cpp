// The command ombrix.

#include <cstdio>
#include <exception>
#include <iostream>
#include <new>

#include "cli/command_line.h"
#include "cli/failure.h"
#include "cli/session.h"
#include "cli/supervisor/cleanup.h"
#include "text/phrases.h"
#include "text/printable.h"

namespace ombrix::cli {

namespace {

constexpr int kDone = 0;
constexpr int kWorkFailed = 1;
constexpr int kWrongCommandLine = 2;

void Run(const CommandLine& line, host::Host& host) {
    Console console(line.options.quiet);
    for (const host::BrokenPlugin& plugin : line.brokenPlugins) {
        console.Note(plugin.reason);
    }
    Session session{host, *line.catalogue, line.options, console};
    line.command->Run(session);
    if (!std::cout.flush()) throw WorkError("standard output cannot be written");
}

int Report(const std::string& sentence, int status) {
    std::fprintf(stderr, "ombrix: %s\n", text::Printable(text::OnOneLine(sentence)).c_str());
    return status;
}

int Main(int count, const char* const* words) {
    try {
        CleanUpOnSignals();
        host::Host host;
        if (const auto line = ReadCommandLine(count, words, host)) Run(*line, host);
        return kDone;
    } catch (const UsageError& wrong) {
        Report(wrong.what(), kWrongCommandLine);
        std::fputs(wrong.Usage().c_str(), stderr);
        return kWrongCommandLine;
    } catch (const std::bad_alloc&) {
        return Report("there is not enough memory for this", kWorkFailed);
    } catch (const std::exception& failure) {
        return Report(failure.what(), kWorkFailed);
    }
}

}  // namespace

}  // namespace ombrix::cli

int main(int count, char** words) { return ombrix::cli::Main(count, words); }
