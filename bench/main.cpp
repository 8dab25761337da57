// Measures the plug-in's work on pixels and prints tables.
#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "bench/bench_host.h"
#include "bench/blend_tables.h"
#include "bench/content_tables.h"
#include "bench/growth.h"
#include "bench/limit_table.h"
#include "bench/machine.h"
#include "bench/picture_set.h"
#include "bench/small_picture_table.h"
#include "bench/table_reporter.h"
#include "bench/tone_tables.h"
#include "bench/whole_call_table.h"

namespace ombrix::bench {
namespace {

struct Options {
    std::vector<int> tasks{1, 2};
    std::string filter = ".";
    std::string level;
    std::string json;
    std::string growth;
    bool cold = false;
    bool markdown = false;
    bool peers = false;  ///< ./run has done that when this starts
    bool files = false;  ///< ./run starts bench/files.py instead
};

void Declare(CLI::App& app, Options& options) {
    app.add_option("--filter", options.filter,
                   "Only the lines whose name matches this regular expression; a name is like\n"
                   "'in place/brightness/tasks:2'")
        ->type_name("REGEX");
    app.add_option("--tasks", options.tasks, "Numbers of tasks to measure with, 1 to 8, by commas; 1,2 unless given")
        ->delimiter(',')
        ->type_name("N,...")
        ->check(CLI::Range(1, 8));
    app.add_option("--level", options.level,
                   "Give the effects lower instructions than the processor has; the limits keep the best")
        ->check(CLI::IsMember(LevelNames()));
    app.add_flag("--cold", options.cold,
                 "Empty the caches before each piece that is timed, where they could hold the pictures. Takes several\n"
                 "times as long");
    app.add_option("--growth", options.growth,
                   "Measure instead how the time for a pixel grows from 1 to 500 megapixels, and write it to this\n"
                   "CSV file too. bench/growth.gp draws it; the build target growth_picture does both")
        ->type_name("FILE");
    app.add_flag("--peers", options.peers,
                 "Install the libraries to compare with (Debian packages) and build with them first. Those that\n"
                 "are installed are compared with anyway");
    app.add_flag(
        "--files", options.files,
        "Measure instead the command on image files, beside vips, ImageMagick and ffmpeg, which are installed\n"
        "(Debian packages); with --help for more");
    app.add_flag("--markdown", options.markdown, "Print the tables as Markdown");
    app.add_option("--json", options.json, "Write all that was measured to this file too")->type_name("FILE");
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

void AddTables(const std::vector<int>& taskCounts) {
    AddLimitTable(taskCounts);
    AddToneTables(32, taskCounts);
    AddBlendTables(32, taskCounts);
    AddContentTables();
    const std::vector<int> oneTask{1};
    AddToneTables(24, oneTask);
    AddBlendTables(24, oneTask);
    // The plug-in that a host loads chooses its own level.
    if (gInstructionLevel == BestInstructionLevel()) AddWholeCallTable(taskCounts);
    AddSmallPictureTable(taskCounts);
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
    if (options.cold) UseColdCaches();
    AddTables(options.tasks);
    Initialize(options);
    TableReporter table(options.markdown ? TableStyle::Markdown : TableStyle::Text);
    if (benchmark::RunSpecifiedBenchmarks(&table) == 0) return 1;
    std::cout << "\nLines that miss their bar: " << table.Missed() << '\n';
    return 0;
}

int Main(int count, char** words) {
    CLI::App app(
        "Measures how fast the effects work on pixels, as a share of the fastest loop that moves the same\n"
        "bytes, timed right beside. Takes about five minutes.",
        "./run bench");
    Options options;
    Declare(app, options);
    CLI11_PARSE(app, count, words);
    return Run(options);
}

}  // namespace
}  // namespace ombrix::bench

int main(int argc, char** argv) {
    try {
        return ombrix::bench::Main(argc, argv);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench: %s\n", failure.what());
        return 1;
    }
}
