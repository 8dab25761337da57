#include "bench/whole_call_table.h"

#include <sys/resource.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/picture_set.h"
#include "bench/table_line.h"
#include "bench/tone_effects.h"
#include "bench/worker_call.h"
#include "ombrix/host.h"

namespace ombrix::bench {
namespace {

constexpr const char* kTable = "whole calls in the embedded host, by their work on the pixels alone";

/// A call adds little but the memory of the new picture.
constexpr Bar kBar{.least = 0.7};

/// Page faults of the process so far that needed no disk.
long PageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/// A picture of the host, and a view of it for the work on the pixels alone: both use the same kind of memory.
class HostPicture {
  public:
    HostPicture(host::Host& host, const BenchPicture& content)
        : picture_(host.NewPicture(content.Extent().width, content.Extent().height)),
          lock_(picture_),
          view_(content.Extent(), 32, lock_.Base()) {
        if (lock_.RowBytes() != static_cast<std::ptrdiff_t>(view_.RowBytes())) throw std::logic_error("padded rows");
        std::memcpy(view_.Bytes(), content.Bytes(), content.ByteCount());
    }

    const host::Picture& Get() const { return picture_; }
    BenchPicture& View() { return view_; }

  private:
    host::Picture picture_;
    host::Picture::Lock lock_;
    BenchPicture view_;
};

/// Calls an effect again and again.
class HostCall {
  public:
    HostCall(host::Host& host, const ToneEffect& effect, int tasks) : effect_(host.New(effect.className)) {
        for (const auto& argument : effect.arguments) effect_.Set(std::string(argument.property), argument.value);
        effect_.Set("MultiprocessingHint", tasks);
    }

    void Apply(const host::Picture& source) {
        const long before = PageFaults();
        result_ = effect_.Call("Apply", {source});
        faults_.push_back(PageFaults() - before);
        if (result_.IsNil()) throw std::runtime_error("Apply gave nil");
    }
    void ReleaseResult() { result_ = nullptr; }

    /// Of each call so far.
    const std::vector<long>& Faults() const { return faults_; }

  private:
    host::Object effect_;
    host::Value result_;
    std::vector<long> faults_;
};

/// "page faults 11719, 0, then 0": of the first call, the second, and the median of the others.
std::string Note(const std::vector<long>& faults) {
    char text[100];
    std::snprintf(text, sizeof text, "page faults %ld, %ld, then %.0f", faults.at(0), faults.at(1),
                  Median({faults.begin() + 2, faults.end()}));
    return text;
}

void Measure(benchmark::State& state, const ToneEffect& effect, int tasks) {
    const BenchPicture& content = Pictures(kPhotoSize, 32).original;
    host::Host host;  // a new one, so that the first call is the first that it sees
    host.Load(OMBRIX_BENCH_PLUGIN);
    HostPicture source(host, content);
    HostPicture destination(host, content);
    HostCall hostCall(host, effect, tasks);
    CaptureTone(effect, source.View(), &destination.View(), nullptr, [&](const WorkerCall& call) {
        const Contest contest{.prepare = [&] { hostCall.ReleaseResult(); },
                              .limits = {[&] { call.Run(tasks); }},
                              .work = [&] { hostCall.Apply(source.Get()); }};
        ReportShare(state, MeasureShare(state, contest), kPhotoSize.Megapixels(), kBar);
        state.SetLabel(Note(hostCall.Faults()));
    });
}

}  // namespace

void AddWholeCallTable(std::span<const int> taskCounts) {
    for (const ToneEffect& effect : ToneEffects()) {
        if (effect.className.empty()) continue;
        for (const int tasks : taskCounts) {
            AddLine({kTable, std::string(effect.name), tasks},
                    [&effect, tasks](benchmark::State& state) { Measure(state, effect, tasks); });
        }
    }
}

}  // namespace ombrix::bench
