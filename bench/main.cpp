// Measures the plug-in's work on pixels and prints a table.
#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <vector>

#include "bench/bench_host.h"
#include "bench/blend_rows.h"
#include "bench/machine.h"
#include "bench/table_reporter.h"
#include "bench/tone_rows.h"

namespace ombrix::bench {
namespace {

struct Options {
    std::vector<int> tasks{1, 2};
    std::string filter = ".";
    std::string level;
    std::string json;
    bool markdown = false;
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
        ->check(CLI::IsMember({"v4", "v3", "baseline"}));
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
    AddToneRows(options.tasks);
    AddBlendRows(options.tasks);
    Initialize(options);
    TableReporter table(options.markdown ? TableStyle::Markdown : TableStyle::Text);
    if (benchmark::RunSpecifiedBenchmarks(&table) == 0) return 1;
    std::cout << "\nRows below what they are held to: " << table.RowsBelow() << '\n';
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
