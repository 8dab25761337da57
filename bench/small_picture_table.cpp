#include "bench/small_picture_table.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/blend_modes.h"
#include "bench/picture_set.h"
#include "bench/table_line.h"
#include "bench/tone_effects.h"
#include "bench/worker_call.h"

namespace ombrix::bench {
namespace {

constexpr const char* kTable = "what a call on 256 x 256 pixels costs besides the work on the pixels";
constexpr Size kSize{256, 256};
constexpr int kCallsPerRound = 100;

/// Microseconds that a call may add: handing work to tasks and waiting for them takes its time.
double Most(int tasks) { return tasks > 1 ? 10 : 1; }

/// Measures `call`, a whole call, and `worker`, the work on the pixels on the calling thread, of which each of n tasks
/// would do the n-th part.
void Measure(benchmark::State& state, int tasks, const std::function<void()>& call, const WorkerCall& worker) {
    std::vector<double> callSeconds;
    std::vector<double> workerSeconds;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int i = 0; i < kCallsPerRound; ++i) {
            workerSeconds.push_back(SecondsOf([&worker] { worker.RunAlone(); }) / tasks);
            callSeconds.push_back(SecondsOf(call));
        }
        state.SetIterationTime(callSeconds.back());
    }
    const double callTime = Median(callSeconds) * 1e6;
    const double workerTime = Median(workerSeconds) * 1e6;
    const double over = callTime - workerTime;
    state.counters[kPixelRateCounter] = kSize.Megapixels() / Median(callSeconds);
    state.counters[kOverheadCounter] = over;
    state.counters[kMostOverheadCounter] = Most(tasks);
    char text[100];
    std::snprintf(text, sizeof text, "%+.1f us (at most %.0f): call %.1f, work alone %.1f", over, Most(tasks), callTime,
                  workerTime);
    state.SetLabel(text);
}

void MeasureTone(benchmark::State& state, const ToneEffect& effect, bool inPlace, int tasks) {
    PictureSet& pictures = Pictures(kSize, 32);
    Effect object(effect.className);
    SetArguments(object, effect);
    object.Base().MultiprocessingHint = tasks;
    const auto call = [&] {
        if (inPlace) {
            object.ApplyInPlace(pictures.source);
        } else {
            object.Apply(pictures.source);
        }
    };
    CaptureTone(effect, pictures.source, inPlace ? nullptr : &pictures.destination, nullptr,
                [&](const WorkerCall& worker) { Measure(state, tasks, call, worker); });
}

void MeasureBlend(benchmark::State& state, const BlendMode& mode, int tasks) {
    PictureSet& pictures = Pictures(kSize, 32);
    Effect object("BlendEffect");
    object.Set("BlendMode", mode.number);
    object.Set("FillPicture", pictures.fill.Handle());
    object.Base().MultiprocessingHint = tasks;
    const auto call = [&] { object.Apply(pictures.source); };
    CaptureBlend(mode, 1.0, pictures.source, pictures.fill, nullptr, pictures.destination,
                 [&](const WorkerCall& worker) { Measure(state, tasks, call, worker); });
}

}  // namespace

void AddSmallPictureTable(std::span<const int> taskCounts) {
    const auto add = [taskCounts](const std::string& measured, auto measure) {
        for (const int tasks : taskCounts) {
            if (tasks > 2) continue;
            AddLine({kTable, measured, tasks}, [measure, tasks](benchmark::State& state) { measure(state, tasks); });
        }
    };
    for (const char* name : {"brightness", "sepia"}) {
        for (const bool inPlace : {true, false}) {
            add(std::string(name) + (inPlace ? ", in place" : ", new"),
                [&effect = FindToneEffect(name), inPlace](benchmark::State& state, int tasks) {
                    MeasureTone(state, effect, inPlace, tasks);
                });
        }
    }
    add("multiply", [](benchmark::State& state, int tasks) { MeasureBlend(state, FindBlendMode("multiply"), tasks); });
}

}  // namespace ombrix::bench
