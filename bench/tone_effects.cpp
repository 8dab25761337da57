#include "bench/tone_effects.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "effects/map_effect.h"

namespace ombrix::bench {
namespace {

void CaptureMap(BenchPicture& source, const BenchPicture* destination, BenchPicture* mask,
                WorkerCallReceiver receiver) {
    static const MapTables tables;
    Effect caller("InvertEffect");  // any effect's object will do
    const WorkerCallCapture capture(caller.Base(), std::move(receiver));
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

std::span<const ToneEffect> ToneEffects() {
    static const std::vector<ToneEffect> effects = {
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
    return effects;
}

const ToneEffect& FindToneEffect(std::string_view name) {
    return *std::find_if(ToneEffects().begin(), ToneEffects().end(),
                         [name](const auto& effect) { return effect.name == name; });
}

MapTables::MapTables() {
    for (int i = 0; i < 256; ++i) {
        const double value = i / 255.0;
        red[i] = static_cast<std::uint8_t>(255.0 * std::pow(value, 0.8));
        green[i] = static_cast<std::uint8_t>(255.0 * value * value * (3.0 - 2.0 * value));
        blue[i] = static_cast<std::uint8_t>(255.0 * std::pow(value, 1.25));
    }
}

void SetArguments(Effect& object, const ToneEffect& effect) {
    for (const auto& argument : effect.arguments) object.Set(argument.property, argument.value);
}

void CaptureTone(const ToneEffect& effect, BenchPicture& source, BenchPicture* destination, BenchPicture* mask,
                 WorkerCallReceiver receiver) {
    if (destination) SetNewPicture(*destination);
    if (effect.className.empty()) {
        CaptureMap(source, destination, mask, std::move(receiver));
        return;
    }
    Effect object(effect.className);
    SetArguments(object, effect);
    if (mask) object.Set("Mask", mask->Handle());
    const WorkerCallCapture capture(object.Base(), std::move(receiver));
    if (destination) {
        object.Apply(source);
    } else {
        object.ApplyInPlace(source);
    }
}

}  // namespace ombrix::bench
