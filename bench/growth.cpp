#include "bench/growth.h"

#include <algorithm>
#include <cstdio>
#include <deque>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include "bench/blend_works.h"
#include "bench/cold_caches.h"
#include "bench/copy_pace.h"
#include "bench/picture_content.h"
#include "bench/tone_works.h"
#include "bench/work_row.h"

namespace ombrix::bench {
namespace {

/// Of about 1, 3, 12, 50, 150 and 500 megapixels; rows of common lengths.
constexpr Size kSizes[] = {{1000, 1000}, {2000, 1500}, kPhotoSize, {8000, 6250}, {15000, 10000}, {25000, 20000}};

/// The slowest size of a work may take so much longer for a pixel than the fastest.
constexpr double kMostGrowth = 1.3;

/// The pictures of one size: three, where the other rows have six.
struct Canvas {
    explicit Canvas(Size size) : source(size, 32), fill(size, 32), destination(size, 32) {
        PaintPhoto(source, 1);
        PaintPhoto(fill, 2);
    }

    BenchPicture source;
    BenchPicture fill;
    BenchPicture destination;
};

using Measure = std::function<void(const std::function<void()>& work)>;

struct Work {
    const char* name;
    /// Prepares the work on `tasks` tasks, and calls `measure` with it.
    void (*run)(Canvas& canvas, int tasks, const Measure& measure);
};

RowWorkReceiver Receiver(int tasks, const Measure& measure) {
    return [tasks, &measure](GenericMPParams* params, RowWorker worker) {
        measure([=] { RunRowWork(params, worker, tasks); });
    };
}

/// The works; the last is the copy that they are seen beside, which is held to nothing.
constexpr Work kWorks[] = {
    {"brightness in place",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneWork("brightness"), canvas.source, nullptr, nullptr, Receiver(tasks, measure));
     }},
    {"brightness into a new picture",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneWork("brightness"), canvas.source, &canvas.destination, nullptr, Receiver(tasks, measure));
     }},
    {"sepia into a new picture",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureTone(FindToneWork("sepia"), canvas.source, &canvas.destination, nullptr, Receiver(tasks, measure));
     }},
    {"multiply",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         CaptureBlend(FindBlendWork("multiply"), 1.0, canvas.source, canvas.fill, nullptr, canvas.destination,
                      Receiver(tasks, measure));
     }},
    {"memcpy",
     [](Canvas& canvas, int tasks, const Measure& measure) {
         measure([&canvas, tasks] {
             Copy(canvas.destination.Bytes(), canvas.source.Bytes(), canvas.source.ByteCount(), tasks);
         });
     }},
};

constexpr const Work& kCopy = kWorks[std::size(kWorks) - 1];

/// The seconds that a work takes for each canvas, medians. The canvases take turns, so that what else the machine does
/// meets all of them alike. Each run finds the caches cold: else small pictures would be measured in them, and large
/// ones not.
std::vector<double> MedianSeconds(const ColdCaches& caches, const Work& work, int tasks,
                                  const std::vector<Canvas*>& canvases) {
    std::vector<std::function<void()>> runs;
    std::vector<std::vector<double>> seconds(canvases.size());
    const std::function<void()> prepareNext = [&] {
        if (runs.size() < canvases.size()) {
            work.run(*canvases[runs.size()], tasks, [&](const std::function<void()>& run) {
                runs.push_back(run);
                prepareNext();
            });
            return;
        }
        for (int round = 0; round < kWarmUps + kIterations; ++round) {
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
        csv_ << "work,tasks,megapixels,nanoseconds per pixel\n";
    }

    void Add(const Work& work, int tasks, Size size, double seconds) {
        const double nanoseconds = seconds * 1e3 / size.Megapixels();
        csv_ << work.name << ',' << tasks << ',' << size.Megapixels() << ',' << nanoseconds << '\n' << std::flush;
        char line[120];
        std::snprintf(line, sizeof line, "%-31s %5d  %10.0f  %8.3f\n", work.name, tasks, size.Megapixels(),
                      nanoseconds);
        out_ << line << std::flush;
        lines_.push_back({&work, tasks, nanoseconds});
    }

    void PrintGrowth() const {
        out_ << "\nFrom the fastest size to the slowest, of which at most " << kMostGrowth << " is wanted:\n";
        for (const Work& work : kWorks) {
            for (const int tasks : {1, 2}) PrintGrowth(work, tasks);
        }
    }

  private:
    struct Line {
        const Work* work;
        int tasks;
        double nanoseconds;
    };

    void PrintGrowth(const Work& work, int tasks) const {
        double fastest = 0;
        double slowest = 0;
        for (const Line& line : lines_) {
            if (line.work != &work || line.tasks != tasks) continue;
            fastest = fastest == 0 ? line.nanoseconds : std::min(fastest, line.nanoseconds);
            slowest = std::max(slowest, line.nanoseconds);
        }
        const double growth = slowest / fastest;
        char text[120];
        const char* mark = growth <= kMostGrowth ? "ok" : "ABOVE";
        std::snprintf(text, sizeof text, "%-31s %5d  %5.2f  %s\n", work.name, tasks, growth,
                      &work == &kCopy ? "" : mark);
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
    out << "work                            tasks  megapixels  ns/pixel\n";
    for (const Work& work : kWorks) {
        for (const int tasks : {1, 2, 4, 8}) {
            std::vector<Canvas*> measured;
            for (Canvas& canvas : canvases) {
                // More tasks than there are memory channels to feed are measured at one size only.
                if (tasks <= 2 || canvas.source.Extent() == kPhotoSize) measured.push_back(&canvas);
            }
            const std::vector<double> seconds = MedianSeconds(caches, work, tasks, measured);
            for (std::size_t i = 0; i < measured.size(); ++i) {
                table.Add(work, tasks, measured[i]->source.Extent(), seconds[i]);
            }
        }
    }
    table.PrintGrowth();
    return csv.flush().good();
}

}  // namespace ombrix::bench
