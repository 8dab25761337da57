// The tone and colour effects as they are measured: each with arguments that leave no part of its formula out.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "bench/bench_host.h"
#include "bench/bench_picture.h"
#include "bench/row_work.h"

namespace ombrix::bench {

struct ToneWork {
    struct Argument {
        std::string_view property;
        std::int64_t value;
    };

    std::string_view name;
    std::string_view className;  ///< empty for the map effect, which has no class
    std::vector<Argument> arguments;
};

std::span<const ToneWork> ToneWorks();
/// One of them by name.
const ToneWork& FindToneWork(std::string_view name);

/// The three tables of the map effect, of 256 bytes each: a brighter red, an S-curve for green, a darker blue.
struct MapTables {
    std::uint8_t red[256];
    std::uint8_t green[256];
    std::uint8_t blue[256];

    MapTables();
};

/// Gives an effect of the work's class the work's arguments.
void SetArguments(Effect& effect, const ToneWork& work);

/// Calls the effect on `source` and gives its row work to `receiver`: into `destination`, in place when that is null;
/// weighted by `mask` unless that is null.
void CaptureTone(const ToneWork& work, BenchPicture& source, BenchPicture* destination, BenchPicture* mask,
                 RowWorkReceiver receiver);

}  // namespace ombrix::bench
