#include "bench/table_reporter.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <span>
#include <string_view>

#include "bench/machine.h"
#include "bench/row.h"

namespace ombrix::bench {
namespace {

struct Column {
    std::string_view title;
    int width;  ///< characters; negative: flush left
};

constexpr Column kColumns[] = {
    {"work", -20},   {"tasks", 5}, {"Mpixel/s", 8}, {"ratio", 6},
    {"at least", 8}, {"aim", 4},   {"", -5},        {"peers, best first; notes", -48},
};

/// The marks of rows that miss what they are held to.
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

/// Whether the row reaches what it is held to; nothing when it is held to nothing.
std::string Mark(const benchmark::UserCounters& counters) {
    if (counters.contains(kMostOverheadCounter)) {
        return Value(counters, kOverheadCounter) <= Value(counters, kMostOverheadCounter) ? "ok" : kTooMuch;
    }
    if (!counters.contains(kLeastCounter)) return "";
    const double ratio = Value(counters, kRatioCounter);
    if (ratio < Value(counters, kLeastCounter)) return kTooLittle;
    return counters.contains(kAimCounter) && ratio >= Value(counters, kAimCounter) ? "aim" : "ok";
}

/// The peers' ratios, the best first.
std::string Peers(const benchmark::UserCounters& counters) {
    std::vector<std::pair<double, std::string>> peers;
    for (const auto& [name, counter] : counters) {
        if (name.starts_with(kPeerCounter)) {
            peers.emplace_back(counter.value, name.substr(std::string_view(kPeerCounter).size()));
        }
    }
    std::sort(peers.rbegin(), peers.rend());
    std::string text;
    for (const auto& [ratio, name] : peers) text += (text.empty() ? "" : "  ") + name + ' ' + Number(ratio, 2);
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
        << "ratio: the pace of the work by that of memcpy on the same pixels and as many tasks, median of "
        << kIterations << ".\n";
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const RowName name = RowName::Split(run.run_name.function_name);
        if (name.group != group_) StartGroup(name.group);
        if (run.error_occurred) {
            PrintLine({name.work, std::to_string(name.tasks), "", "", "", "", "ERROR", run.error_message});
            continue;
        }
        const std::string mark = Mark(run.counters);
        missed_ += mark == kTooLittle || mark == kTooMuch;
        PrintLine({name.work, std::to_string(name.tasks), CounterText(run.counters, kPixelRateCounter, 0),
                   CounterText(run.counters, kRatioCounter, 2), CounterText(run.counters, kLeastCounter, 2),
                   CounterText(run.counters, kAimCounter, 2), mark, run.report_label + Peers(run.counters)});
    }
    GetOutputStream().flush();
}

void TableReporter::StartGroup(const std::string& group) {
    group_ = group;
    std::vector<std::string> titles;
    for (const Column& column : kColumns) titles.emplace_back(column.title);
    GetOutputStream() << (style_ == TableStyle::Markdown ? "\n### " : "\n== ") << group << '\n';
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
