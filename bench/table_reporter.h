// Prints the lines as tables: for a terminal of 120 columns, or as Markdown.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace ombrix::bench {

enum class TableStyle { Text, Markdown };

class TableReporter : public benchmark::BenchmarkReporter {
  public:
    explicit TableReporter(TableStyle style) : style_(style) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Lines that miss their bar.
    int Missed() const { return missed_; }

  private:
    void StartTable(const std::string& name);
    void PrintLine(const std::vector<std::string>& cells);

    TableStyle style_;
    std::string table_;
    int missed_ = 0;
};

}  // namespace ombrix::bench
