#include "bench/small_rows.h"

#include <cstdio>
#include <string>
#include <vector>

#include "bench/blend_works.h"
#include "bench/tone_works.h"
#include "bench/work_row.h"

namespace ombrix::bench {
namespace {

constexpr const char* kGroup = "what a call on 256 x 256 pixels costs besides its share of the row work";
constexpr Size kSize{256, 256};
/// Calls are short: many fit into an iteration, and their median is free of what else the machine did.
constexpr int kCallsPerIteration = 100;

/// Microseconds; handing work to tasks and waiting for them takes its time.
double Most(int tasks) { return tasks > 1 ? 10 : 1; }

/// Measures `call`, a whole call, and `worker`, the same rows by the worker itself on the calling thread. The share of
/// the row work that each of n tasks has counts as its n-th part.
void Measure(benchmark::State& state, int tasks, const std::function<void()>& call,
             const std::function<void()>& worker) {
    std::vector<double> calls;
    std::vector<double> works;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        for (int i = 0; i < kCallsPerIteration; ++i) {
            works.push_back(SecondsOf(worker) / tasks);
            calls.push_back(SecondsOf(call));
        }
        state.SetIterationTime(calls.back());
    }
    const double callTime = Median(calls) * 1e6;
    const double workTime = Median(works) * 1e6;
    const double over = callTime - workTime;
    state.counters[kPixelRateCounter] = kSize.Megapixels() / Median(calls);
    state.counters[kOverheadCounter] = over;
    state.counters[kMostOverheadCounter] = Most(tasks);
    char text[100];
    std::snprintf(text, sizeof text, "%+.1f us (at most %.0f): call %.1f, work alone %.1f", over, Most(tasks), callTime,
                  workTime);
    state.SetLabel(text);
}

std::function<void()> WorkerOn(GenericMPParams* params, RowWorker worker) {
    return [params, worker] {
        MPParamBlock all{0, params->height, params};
        worker(&all);
    };
}

void MeasureTone(benchmark::State& state, const ToneWork& work, bool inPlace, int tasks) {
    PictureSet& pictures = Pictures(kSize, 32);
    Effect effect(work.className);
    SetArguments(effect, work);
    effect.Base().MultiprocessingHint = tasks;
    CaptureTone(work, pictures.source, inPlace ? nullptr : &pictures.destination, nullptr,
                [&](GenericMPParams* params, RowWorker worker) {
                    const auto call = [&] {
                        if (inPlace) {
                            effect.ApplyInPlace(pictures.source);
                        } else {
                            effect.Apply(pictures.source);
                        }
                    };
                    Measure(state, tasks, call, WorkerOn(params, worker));
                });
    pictures.RestoreSource();
}

void MeasureBlend(benchmark::State& state, const BlendWork& work, int tasks) {
    PictureSet& pictures = Pictures(kSize, 32);
    Effect effect("BlendEffect");
    effect.Set("BlendMode", work.mode);
    effect.Set("FillPicture", pictures.fill.Handle());
    effect.Base().MultiprocessingHint = tasks;
    CaptureBlend(work, 1.0, pictures.source, pictures.fill, nullptr, pictures.destination,
                 [&](GenericMPParams* params, RowWorker worker) {
                     Measure(
                         state, tasks, [&] { effect.Apply(pictures.source); }, WorkerOn(params, worker));
                 });
}

}  // namespace

void AddSmallRows(std::span<const int> taskCounts) {
    const auto add = [taskCounts](const std::string& work, auto measure) {
        for (const int tasks : taskCounts) {
            if (tasks > 2) continue;
            AddRow({kGroup, work, tasks}, [measure, tasks](benchmark::State& state) { measure(state, tasks); });
        }
    };
    for (const char* name : {"brightness", "sepia"}) {
        const ToneWork& work = FindToneWork(name);
        add(std::string(name) + ", in place",
            [&work](auto& state, int tasks) { MeasureTone(state, work, true, tasks); });
        add(std::string(name) + ", new", [&work](auto& state, int tasks) { MeasureTone(state, work, false, tasks); });
    }
    add("multiply", [](auto& state, int tasks) { MeasureBlend(state, FindBlendWork("multiply"), tasks); });
}

}  // namespace ombrix::bench
