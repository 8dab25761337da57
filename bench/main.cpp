// Measures the plug-in's work on pixels and prints a table.
#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "bench/bench_host.h"
#include "bench/blend_rows.h"
#include "bench/growth.h"
#include "bench/host_rows.h"
#include "bench/machine.h"
#include "bench/small_rows.h"
#include "bench/table_reporter.h"
#include "bench/tone_rows.h"

namespace ombrix::bench {
namespace {

struct Options {
    std::vector<int> tasks{1, 2};
    std::string filter = ".";
    std::string level;
    std::string json;
    std::string growth;
    bool markdown = false;
    bool peers = false;  ///< for ./run, which has done it when this starts
};

void Declare(CLI::App& app, Options& options) {
    app.add_option("--filter", options.filter,
                   "Only the rows whose name matches this regular expression; a name is like\n"
                   "'in place/brightness/tasks:2'")
        ->type_name("REGEX");
    app.add_option("--tasks", options.tasks, "Numbers of tasks to measure with, 1 to 8, by commas; 1,2 unless given")
        ->delimiter(',')
        ->type_name("N,...")
        ->check(CLI::Range(1, 8));
    app.add_option("--level", options.level, "Work with lower instructions than the processor has")
        ->check(CLI::IsMember(LevelNames()));
    app.add_option("--growth", options.growth,
                   "Measure instead how the time for a pixel grows from 1 to 500 megapixels, and write it to this\n"
                   "CSV file as well. bench/growth.gp draws it; the build target growth_picture does both")
        ->type_name("FILE");
    app.add_flag("--peers", options.peers,
                 "Install the libraries to compare with (Debian packages) first, and build with them. Those that\n"
                 "are there are compared with anyway");
    app.add_flag("--markdown", options.markdown, "Print the tables as Markdown");
    app.add_option("--json", options.json, "Write all that was measured to this file as well")->type_name("FILE");
}

/// Google Benchmark reads its options from a command line.
void Initialize(const Options& options) {
    std::vector<std::string> arguments{"bench", "--benchmark_filter=" + options.filter};
    if (!options.json.empty()) {
        arguments.push_back("--benchmark_out=" + options.json);
        arguments.emplace_back("--benchmark_out_format=json");
    }
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    auto count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
}

int Grow(const std::string& file) {
    if (MeasureGrowth(file, std::cout)) return 0;
    std::cerr << "The file " << file << " cannot be written.\n";
    return 1;
}

int Run(const Options& options) {
    if (!options.level.empty()) {
        const InstructionLevel level = *LevelNamed(options.level);
        if (level > BestInstructionLevel()) {
            std::cerr << "This processor does not have the instructions of level " << options.level << ".\n";
            return 1;
        }
        gInstructionLevel = level;
    }
    StartHost();
    if (!options.growth.empty()) return Grow(options.growth);
    AddToneRows(options.tasks);
    AddBlendRows(options.tasks);
    // The plug-in that a host loads has the level of its own choice.
    if (gInstructionLevel == BestInstructionLevel()) AddHostRows(options.tasks);
    AddSmallRows(options.tasks);
    Initialize(options);
    TableReporter table(options.markdown ? TableStyle::Markdown : TableStyle::Text);
    if (benchmark::RunSpecifiedBenchmarks(&table) == 0) return 1;
    std::cout << "\nRows that miss what they are held to: " << table.Missed() << '\n';
    return 0;
}

}  // namespace
}  // namespace ombrix::bench

int main(int argc, char** argv) {
    CLI::App app("Measures the row work of the effects against the pace of memcpy in the same run.", "./run bench");
    ombrix::bench::Options options;
    ombrix::bench::Declare(app, options);
    CLI11_PARSE(app, argc, argv);
    return ombrix::bench::Run(options);
}
