#include "bench/growth.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include "bench/blend_modes.h"
#include "bench/cold_caches.h"
#include "bench/picture_content.h"
#include "bench/task_bands.h"
#include "bench/timing.h"
#include "bench/tone_effects.h"
#include "bench/worker_call.h"

namespace ombrix::bench {
namespace {

/// About 1, 3, 12, 50, 150 and 500 megapixels, with rows of common lengths.
constexpr Size kSizes[] = {{1000, 1000}, {2000, 1500}, kPhotoSize, {8000, 6250}, {15000, 10000}, {25000, 20000}};

/// The slowest size of an operation may take so much longer for a pixel than the fastest.
constexpr double kMostGrowth = 1.3;

/// The pictures of one size.
struct Canvas {
    explicit Canvas(Size size) : source(size, 32), fill(size, 32), destination(size, 32) {
        Paint(source, Content::Photo, 1);
        Paint(fill, Content::Photo, 2);
    }

    BenchPicture source;
    BenchPicture fill;
    BenchPicture destination;
};

using Measure = std::function<void(const std::function<void()>& work)>;

struct Operation {
    const char* name;
    /// Prepares the operation on `tasks` tasks, and calls `measure` with its work.
    void (*run)(Canvas& canvas, int tasks, const Measure& measure);
};

WorkerCallReceiver Receiver(int tasks, const Measure& measure) {
    return [tasks, &measure](const WorkerCall& call) { measure([=] { call.Run(tasks); }); };
}

/// The last is a copy to compare with, which is held to nothing.
constexpr Operation kOperations[] = {
    {"brightness in place",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneEffect("brightness"), canvas.source, nullptr, nullptr, Receiver(tasks, measure));
     }},
    {"brightness into a new picture",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneEffect("brightness"), canvas.source, &canvas.destination, nullptr,
                     Receiver(tasks, measure));
     }},
    {"sepia into a new picture",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneEffect("sepia"), canvas.source, &canvas.destination, nullptr, Receiver(tasks, measure));
     }},
    {"multiply",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureBlend(FindBlendMode("multiply"), 1.0, canvas.source, canvas.fill, nullptr, canvas.destination,
                      Receiver(tasks, measure));
     }},
    {"memcpy",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         measure([&canvas, tasks] {
             RunInBands(canvas.source.ByteCount(), tasks, [&canvas](Band band) {
                 std::memcpy(canvas.destination.Bytes() + band.first, canvas.source.Bytes() + band.first,
                             band.end - band.first);
             });
         });
     }},
};

constexpr const Operation& kCopy = kOperations[std::size(kOperations) - 1];

/// The median seconds that an operation takes for each canvas. The canvases take turns, so that what else the machine
/// does slows all of them alike. Each run finds the caches cold: else only small pictures would be measured in them.
std::vector<double> MedianSeconds(const ColdCaches& caches, const Operation& operation, int tasks,
                                  const std::vector<Canvas*>& canvases) {
    std::vector<std::function<void()>> runs;
    std::vector<std::vector<double>> seconds(canvases.size());
    const std::function<void()> prepareNext = [&] {
        if (runs.size() < canvases.size()) {
            operation.run(*canvases[runs.size()], tasks, [&](const std::function<void()>& run) {
                runs.push_back(run);
                prepareNext();
            });
            return;
        }
        for (int round = 0; round < kWarmUps + kRounds; ++round) {
            for (std::size_t i = 0; i < runs.size(); ++i) {
                caches.Evict();
                const double taken = SecondsOf(runs[i]);
                if (round >= kWarmUps) seconds[i].push_back(taken);
            }
        }
    };
    prepareNext();
    std::vector<double> medians;
    for (const std::vector<double>& ofCanvas : seconds) medians.push_back(Median(ofCanvas));
    return medians;
}

/// Prints a table as it is filled.
class GrowthTable {
  public:
    GrowthTable(std::ostream& out, std::ostream& csv) : out_(out), csv_(csv) {
        csv_ << "operation,tasks,megapixels,nanoseconds per pixel\n";
    }

    void Add(const Operation& operation, int tasks, Size size, double seconds) {
        const double nanoseconds = seconds * 1e3 / size.Megapixels();
        csv_ << operation.name << ',' << tasks << ',' << size.Megapixels() << ',' << nanoseconds << '\n' << std::flush;
        char line[120];
        std::snprintf(line, sizeof line, "%-31s %5d  %10.0f  %8.3f\n", operation.name, tasks, size.Megapixels(),
                      nanoseconds);
        out_ << line << std::flush;
        lines_.push_back({&operation, tasks, nanoseconds});
    }

    void PrintGrowth() const {
        out_ << "\nThe slowest size by the fastest, which should be at most " << kMostGrowth << ":\n";
        for (const Operation& operation : kOperations) {
            for (const int tasks : {1, 2}) PrintGrowth(operation, tasks);
        }
    }

  private:
    struct Line {
        const Operation* operation;
        int tasks;
        double nanoseconds;
    };

    void PrintGrowth(const Operation& operation, int tasks) const {
        double fastest = 0;
        double slowest = 0;
        for (const Line& line : lines_) {
            if (line.operation != &operation || line.tasks != tasks) continue;
            fastest = fastest == 0 ? line.nanoseconds : std::min(fastest, line.nanoseconds);
            slowest = std::max(slowest, line.nanoseconds);
        }
        const double growth = slowest / fastest;
        char text[120];
        const char* mark = growth <= kMostGrowth ? "ok" : "ABOVE";
        std::snprintf(text, sizeof text, "%-31s %5d  %5.2f  %s\n", operation.name, tasks, growth,
                      &operation == &kCopy ? "" : mark);
        out_ << text;
    }

    std::ostream& out_;
    std::ostream& csv_;
    std::vector<Line> lines_;
};

}  // namespace

bool MeasureGrowth(const std::string& csvFile, std::ostream& out) {
    std::ofstream csv(csvFile);
    if (!csv) return false;
    std::deque<Canvas> canvases;
    for (const Size size : kSizes) canvases.emplace_back(size);
    const ColdCaches caches;
    GrowthTable table(out, csv);
    out << "operation                       tasks  megapixels  ns/pixel\n";
    for (const Operation& operation : kOperations) {
        for (const int tasks : {1, 2, 4, 8}) {
            std::vector<Canvas*> measured;
            for (Canvas& canvas : canvases) {
                // More tasks than there are memory channels to feed are measured at one size only.
                if (tasks <= 2 || canvas.source.Extent() == kPhotoSize) measured.push_back(&canvas);
            }
            const std::vector<double> seconds = MedianSeconds(caches, operation, tasks, measured);
            for (std::size_t i = 0; i < measured.size(); ++i) {
                table.Add(operation, tasks, measured[i]->source.Extent(), seconds[i]);
            }
        }
    }
    table.PrintGrowth();
    return csv.flush().good();
}

}  // namespace ombrix::bench
