// Prints the rows as one table: on a terminal of 120 columns, or as Markdown.
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

    /// Rows that miss what they are held to.
    int Missed() const { return missed_; }

  private:
    void StartGroup(const std::string& group);
    void PrintLine(const std::vector<std::string>& cells);

    TableStyle style_;
    std::string group_;
    int missed_ = 0;
};

}  // namespace ombrix::bench
