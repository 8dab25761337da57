#include "bench/tone_works.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "picture/map_effect.h"

namespace ombrix::bench {
namespace {

void CaptureMap(BenchPicture& source, const BenchPicture* destination, BenchPicture* mask, RowWorkReceiver receiver) {
    static const MapTables tables;
    Effect caller("InvertEffect");  // any effect can call it
    const RowWorkCapture capture(caller.Base(), std::move(receiver));
    MapParams params;
    params.redTable = tables.red;
    params.greenTable = tables.green;
    params.blueTable = tables.blue;
    REALobjectStruct* weights = mask ? mask->Handle() : nullptr;
    if (destination) {
        ApplyMapEffect(&caller.Base(), source.Handle(), weights, &params);
    } else {
        ApplyMapEffectInPlace(&caller.Base(), source.Handle(), weights, &params);
    }
}

}  // namespace

std::span<const ToneWork> ToneWorks() {
    static const std::vector<ToneWork> works = {
        {"colour filter", "ColorFilterEffect", {{"Red", 40}, {"Green", -30}, {"Blue", 7}}},
        {"brightness", "BrightnessEffect", {{"BrightnessValue", 25}}},
        {"invert", "InvertEffect", {}},
        {"contrast", "ContrastEffect", {{"ContrastValue", 25}}},
        {"map", "", {}},
        {"grey NTSC_PAL", "GrayscaleEffect", {{"GrayscaleType", 0}}},
        {"grey ITU_R", "GrayscaleEffect", {{"GrayscaleType", 1}}},
        {"grey AVERAGE", "GrayscaleEffect", {{"GrayscaleType", 2}}},
        {"grey WEIGHTEDAVERAGE", "GrayscaleEffect", {{"GrayscaleType", 3}}},
        {"sepia", "SepiaEffect", {{"SepiaValue", 30}}},
    };
    return works;
}

const ToneWork& FindToneWork(std::string_view name) {
    return *std::find_if(ToneWorks().begin(), ToneWorks().end(),
                         [name](const auto& work) { return work.name == name; });
}

MapTables::MapTables() {
    for (int i = 0; i < 256; ++i) {
        const double value = i / 255.0;
        red[i] = static_cast<std::uint8_t>(255.0 * std::pow(value, 0.8));
        green[i] = static_cast<std::uint8_t>(255.0 * value * value * (3.0 - 2.0 * value));
        blue[i] = static_cast<std::uint8_t>(255.0 * std::pow(value, 1.25));
    }
}

void SetArguments(Effect& effect, const ToneWork& work) {
    for (const auto& argument : work.arguments) effect.Set(argument.property, argument.value);
}

void CaptureTone(const ToneWork& work, BenchPicture& source, BenchPicture* destination, BenchPicture* mask,
                 RowWorkReceiver receiver) {
    if (destination) SetNewPicture(*destination);
    if (work.className.empty()) {
        CaptureMap(source, destination, mask, std::move(receiver));
        return;
    }
    Effect effect(work.className);
    SetArguments(effect, work);
    if (mask) effect.Set("Mask", mask->Handle());
    const RowWorkCapture capture(effect.Base(), std::move(receiver));
    if (destination) {
        effect.Apply(source);
    } else {
        effect.ApplyInPlace(source);
    }
}

}  // namespace ombrix::bench
