#include "bench/table_reporter.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <span>
#include <string_view>

#include "bench/bench_picture.h"
#include "bench/machine.h"
#include "bench/table_line.h"

namespace ombrix::bench {
namespace {

struct Column {
    std::string_view title;
    int width;  ///< characters; negative: flush left
};

constexpr Column kColumns[] = {
    {"measured", -26}, {"tasks", 5}, {"Mpixel/s", 8}, {"share", 5},   {"at least", 8},
    {"aim", 4},        {"", -5},     {"GB/s", 5},     {"limit", -11}, {"others, best first; notes", -25},
};

/// The marks of lines that miss their bar.
constexpr const char* kTooLittle = "BELOW";
constexpr const char* kTooMuch = "ABOVE";

std::string Number(double value, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string CounterText(const benchmark::UserCounters& counters, const char* name, int decimals) {
    const auto found = counters.find(name);
    return found == counters.end() ? "" : Number(found->second.value, decimals);
}

double Value(const benchmark::UserCounters& counters, const char* name) { return counters.at(name).value; }

/// Whether the line reaches its bar; nothing when it has none.
std::string Mark(const benchmark::UserCounters& counters) {
    if (counters.contains(kMostOverheadCounter)) {
        return Value(counters, kOverheadCounter) <= Value(counters, kMostOverheadCounter) ? "ok" : kTooMuch;
    }
    if (!counters.contains(kLeastCounter)) return "";
    const double share = Value(counters, kShareCounter);
    if (share < Value(counters, kLeastCounter)) return kTooLittle;
    return counters.contains(kAimCounter) && share >= Value(counters, kAimCounter) ? "aim" : "ok";
}

/// What other libraries or loops reach, the best first.
std::string Others(const benchmark::UserCounters& counters) {
    std::vector<std::pair<double, std::string>> others;
    for (const auto& [name, counter] : counters) {
        if (name.starts_with(kOtherCounter)) {
            others.emplace_back(counter.value, name.substr(std::string_view(kOtherCounter).size()));
        }
    }
    std::sort(others.rbegin(), others.rend());
    std::string text;
    for (const auto& [value, name] : others) text += (text.empty() ? "" : ", ") + name + ' ' + Number(value, 2);
    return text;
}

std::string Padded(const std::string& text, int width) {
    const std::string blanks(static_cast<std::size_t>(std::max(0, std::abs(width) - static_cast<int>(text.size()))),
                             ' ');
    return width < 0 ? text + blanks : blanks + text;
}

}  // namespace

bool TableReporter::ReportContext(const Context&) {
    GetOutputStream()
        << ProcessorName() << "; instruction level " << NameOf(gInstructionLevel) << "; " << CompilerName()
        << "; pictures of " << kPhotoSize.width << " x " << kPhotoSize.height << " pixels.\n"
        << "share: the time of the limit, the fastest loop that only moves the same bytes, by the time of the work;\n"
        << "       median of " << kRounds << " rounds, both on as many tasks. Bars are for one task and level v4.\n"
        << "GB/s:  what the limit reads and writes. Its form: 'ahead 2K' prefetches 2 KiB ahead; 'stream' stores past\n"
        << "       the caches.\n";
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const LineName name = LineName::Split(run.run_name.function_name);
        if (name.table != table_) StartTable(name.table);
        const std::string tasks = std::to_string(name.tasks);
        if (run.error_occurred) {
            PrintLine({name.measured, tasks, "", "", "", "", "ERROR", "", "", run.error_message});
            continue;
        }
        const std::string mark = Mark(run.counters);
        missed_ += mark == kTooLittle || mark == kTooMuch;
        const bool hasLimit = run.counters.contains(kLimitRateCounter);
        PrintLine({name.measured, tasks, CounterText(run.counters, kPixelRateCounter, 0),
                   CounterText(run.counters, kShareCounter, 2), CounterText(run.counters, kLeastCounter, 2),
                   CounterText(run.counters, kAimCounter, 2), mark, CounterText(run.counters, kLimitRateCounter, 1),
                   hasLimit ? run.report_label : "", hasLimit ? Others(run.counters) : run.report_label});
    }
    GetOutputStream().flush();
}

void TableReporter::StartTable(const std::string& name) {
    table_ = name;
    std::vector<std::string> titles;
    for (const Column& column : kColumns) titles.emplace_back(column.title);
    GetOutputStream() << (style_ == TableStyle::Markdown ? "\n### " : "\n== ") << name << '\n';
    if (style_ == TableStyle::Markdown) GetOutputStream() << '\n';
    PrintLine(titles);
    if (style_ == TableStyle::Markdown) {
        std::string rule;
        for (const Column& column : kColumns) rule += column.width < 0 ? "|---" : "|--:";
        GetOutputStream() << rule << "|\n";
    }
}

void TableReporter::PrintLine(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (style_ == TableStyle::Markdown) {
            line += "| " + cells[i] + ' ';
        } else {
            line += (i == 0 ? "" : "  ") + Padded(cells[i], kColumns[i].width);
        }
    }
    if (style_ == TableStyle::Markdown) {
        line += '|';
    } else {
        line.erase(line.find_last_not_of(' ') + 1);
    }
    GetOutputStream() << line << '\n';
}

}  // namespace ombrix::bench
