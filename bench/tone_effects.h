// The tone and colour effects as they are measured: with arguments that leave no part of a formula out.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "bench/bench_host.h"
#include "bench/bench_picture.h"
#include "bench/worker_call.h"

namespace ombrix::bench {

struct ToneEffect {
    struct Argument {
        std::string_view property;
        std::int64_t value;
    };

    std::string_view name;
    std::string_view className;  ///< empty for the map effect, which has no class
    std::vector<Argument> arguments;
};

std::span<const ToneEffect> ToneEffects();
const ToneEffect& FindToneEffect(std::string_view name);

/// The three tables of the map effect, of 256 bytes each: a brighter red, an S-curve for green, a darker blue.
struct MapTables {
    std::uint8_t red[256];
    std::uint8_t green[256];
    std::uint8_t blue[256];

    MapTables();
};

/// `object` is of the effect's class.
void SetArguments(Effect& object, const ToneEffect& effect);

/// Calls the effect on `source` and gives its worker call to `receiver`. Without a `destination` it works in place;
/// `mask` may be null.
void CaptureTone(const ToneEffect& effect, BenchPicture& source, BenchPicture* destination, BenchPicture* mask,
                 WorkerCallReceiver receiver);

}  // namespace ombrix::bench
