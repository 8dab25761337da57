// Row workers from a function of one colour, for plug-ins of their own. Pixels are taken as the host lays them out.
#pragma once

#include <cstdint>
#include <type_traits>

#include "sdk/effect_params.h"

namespace ombrix {

/// The bytes of a pixel that hold its channels.
struct ChannelPositions {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

/// In a host's pictures. A pixel of 4 bytes has one more, its first, which effects leave alone.
inline constexpr ChannelPositions kPositionsIn4{1, 2, 3};
inline constexpr ChannelPositions kPositionsIn3{0, 1, 2};

/// Channels from 0 to 255.
struct PixelColour {
    int red;
    int green;
    int blue;
};

/// Mixes a channel by its mask channel. Divides by 256, not 255: under white the source loses one step.
constexpr int MixedByMask(int source, int effect, int mask) { return (source * mask + effect * (255 - mask)) / 256; }

namespace row_walk {

inline const ChannelPositions& PositionsOf(std::int32_t bytesPerPixel) {
    return bytesPerPixel == 4 ? kPositionsIn4 : kPositionsIn3;
}

inline PixelColour ColourAt(const std::uint8_t* pixel, const ChannelPositions& at) {
    return {pixel[at.red], pixel[at.green], pixel[at.blue]};
}

/// The record that a function of a colour takes first.
template <class Function>
struct RecordOf;
template <class Record>
struct RecordOf<PixelColour (*)(const Record&, PixelColour)> {
    using type = Record;
};

template <auto change, bool isMasked>
std::int32_t Walk(MPParamBlock* band) {
    using Record = typename RecordOf<decltype(change)>::type;
    static_assert(std::is_standard_layout_v<Record>, "the record's first member is a StdMPEffectParams");
    auto& record = *static_cast<Record*>(band->params);
    auto& head = *static_cast<StdMPEffectParams*>(band->params);
    const ChannelPositions at = PositionsOf(head.bytesPerPixel);
    const ChannelPositions maskAt = PositionsOf(head.maskBytesPerPixel);
    for (std::int64_t y = band->firstRow; y < band->endRow; ++y) {
        const std::uint8_t* source = head.srcBase + y * head.srcRowBytes;
        std::uint8_t* destination = head.dstBase + y * head.dstRowBytes;
        const std::uint8_t* mask = isMasked ? head.maskBase + y * head.maskRowBytes : nullptr;
        for (std::int32_t x = 0; x < head.generic.width; ++x) {
            const PixelColour before = ColourAt(source, at);
            PixelColour after = change(static_cast<const Record&>(record), before);
            if constexpr (isMasked) {
                const PixelColour weight = ColourAt(mask, maskAt);
                // Black is the whole effect, not 255 parts of 256.
                if ((weight.red | weight.green | weight.blue) != 0) {
                    after = {MixedByMask(before.red, after.red, weight.red),
                             MixedByMask(before.green, after.green, weight.green),
                             MixedByMask(before.blue, after.blue, weight.blue)};
                }
                mask += head.maskBytesPerPixel;
            }
            if (head.bytesPerPixel == 4) destination[0] = source[0];
            destination[at.red] = static_cast<std::uint8_t>(after.red);
            destination[at.green] = static_cast<std::uint8_t>(after.green);
            destination[at.blue] = static_cast<std::uint8_t>(after.blue);
            source += head.bytesPerPixel;
            destination += head.bytesPerPixel;
        }
        head.generic.rowsDone.fetch_add(1, std::memory_order_relaxed);
    }
    return 0;
}

}  // namespace row_walk

/// The workers, without and with a mask, of `PixelColour change(const Record&, PixelColour)`, where Record begins with
/// a StdMPEffectParams. `change` runs on any thread and gives channels from 0 to 255.
template <auto change>
constexpr RowWorker kColourWorker = row_walk::Walk<change, false>;
template <auto change>
constexpr RowWorker kMaskedColourWorker = row_walk::Walk<change, true>;

}  // namespace ombrix
