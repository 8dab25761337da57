#include "bench/host_rows.h"

#include <sys/resource.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/copy_pace.h"
#include "bench/picture_set.h"
#include "bench/tone_works.h"
#include "bench/work_row.h"
#include "host/host.h"

namespace ombrix::bench {
namespace {

constexpr const char* kGroup = "whole calls in the embedded host, by the row work alone";

/// A call should cost little more than its row work: what comes on top is the new picture's memory.
constexpr Limit kLimit{.least = 0.7};

/// Page faults that needed no disk, of the process so far.
long PageFaults() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

/// A picture of the host, as the row work on its own and the copy take it: they are to have the same kind of memory.
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

/// Calls of an effect, of which each releases the result of the one before.
class HostCall {
  public:
    HostCall(host::Host& host, const ToneWork& work, int tasks) : effect_(host.New(work.className)) {
        for (const auto& argument : work.arguments) effect_.Set(std::string(argument.property), argument.value);
        effect_.Set("MultiprocessingHint", tasks);
    }

    void Apply(const host::Picture& source) {
        const long before = PageFaults();
        result_ = effect_.Call("Apply", {source});
        faults_.push_back(PageFaults() - before);
        if (result_.IsNil()) throw std::runtime_error("Apply gave nil");
    }
    void ReleaseResult() { result_ = nullptr; }

    /// Of the calls so far, in their order.
    const std::vector<long>& Faults() const { return faults_; }

  private:
    host::Object effect_;
    host::Value result_;
    std::vector<long> faults_;
};

/// "0.63 of a copy; page faults 11719, 0, then 0": of the first call, the second, and the median of the others.
std::string Note(double copyRatio, const std::vector<long>& faults) {
    char text[100];
    std::snprintf(text, sizeof text, "%.2f of a copy; page faults %ld, %ld, then %.0f", copyRatio, faults.at(0),
                  faults.at(1), Median({faults.begin() + 2, faults.end()}));
    return text;
}

void Measure(benchmark::State& state, const ToneWork& work, int tasks) {
    const BenchPicture& content = Pictures(kPhotoSize, 32).original;
    host::Host host;  // a new one, so that the first call is the first that it sees
    host.Load(OMBRIX_BENCH_PLUGIN);
    HostPicture source(host, content);
    HostPicture destination(host, content);
    HostPicture scratch(host, content);
    HostCall call(host, work, tasks);
    CaptureTone(work, source.View(), &destination.View(), nullptr, [&](GenericMPParams* params, RowWorker worker) {
        std::vector<double> copies;
        const auto prepare = [&] {
            call.ReleaseResult();
            copies.push_back(SecondsOf(
                [&] { Copy(scratch.View().Bytes(), source.View().Bytes(), source.View().ByteCount(), tasks); }));
        };
        const Pace pace = MeasurePace(state, {.prepare = prepare,
                                              .copy = [&] { RunRowWork(params, worker, tasks); },
                                              .work = [&] { call.Apply(source.Get()); }});
        ReportPace(state, pace, kPhotoSize, kLimit);
        state.SetLabel(Note(Median(copies) / pace.workSeconds, call.Faults()));
    });
}

}  // namespace

void AddHostRows(std::span<const int> taskCounts) {
    for (const ToneWork& work : ToneWorks()) {
        if (work.className.empty()) continue;
        for (const int tasks : taskCounts) {
            AddRow({kGroup, std::string(work.name), tasks},
                   [&work, tasks](benchmark::State& state) { Measure(state, work, tasks); });
        }
    }
}

}  // namespace ombrix::bench
