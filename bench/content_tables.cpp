#include "bench/content_tables.h"

#include <functional>
#include <string>

#include "bench/blend_modes.h"
#include "bench/effect_line.h"
#include "bench/picture_content.h"
#include "bench/tone_effects.h"

namespace ombrix::bench {
namespace {

Bar ToneBarOn(Content content, std::string_view effect, Traffic traffic) {
    switch (content) {
        case Content::Photo:
            return ToneBar(effect, traffic, 32);
        case Content::Greys:
        case Content::WhitePaper:
            return ToneBarOnGreys(effect, traffic);
        case Content::Noise:
        case Content::OneColour:
            break;
    }
    return {};
}

void MeasureTone(benchmark::State& state, const ToneEffect& effect, Content content, Traffic traffic,
                 const LineName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, 32, content);
    const EffectLine line{name, pictures, traffic, ToneBarOn(content, effect.name, traffic)};
    CaptureTone(effect, pictures.source, traffic == Traffic::IntoNew ? &pictures.destination : nullptr, nullptr,
                [&](const WorkerCall& call) { MeasureEffectLine(state, line, call); });
}

void MeasureBlend(benchmark::State& state, const BlendMode& mode, Content content, const LineName& name) {
    PictureSet& pictures = Pictures(kPhotoSize, 32, content);
    const Bar bar = content == Content::Photo ? BlendBar(mode.name, /*isMixed=*/false, 32) : Bar{};
    const EffectLine line{name, pictures, Traffic::Combine, bar};
    CaptureBlend(mode, 1.0, pictures.source, pictures.fill, nullptr, pictures.destination,
                 [&](const WorkerCall& call) { MeasureEffectLine(state, line, call); });
}

/// Adds a line for each content.
void AddLines(const std::string& table, std::string_view measured,
              const std::function<void(benchmark::State& state, Content content, const LineName& name)>& measure) {
    for (const Content content : kContents) {
        const LineName name{table, std::string(measured) + ", " + NameOf(content), 1};
        AddLine(name, [=](benchmark::State& state) { measure(state, content, name); });
    }
}

}  // namespace

void AddContentTables() {
    for (const Traffic traffic : {Traffic::InPlace, Traffic::IntoNew}) {
        const std::string table = std::string("by content, ") + (traffic == Traffic::InPlace ? kInPlace : kIntoNew);
        for (const char* name : {"grey NTSC_PAL", "grey ITU_R", "sepia"}) {
            AddLines(table, name,
                     [&effect = FindToneEffect(name), traffic](auto& state, Content content, const LineName& line) {
                         MeasureTone(state, effect, content, traffic, line);
                     });
        }
    }
    for (const char* name : {"hue", "luminosity", "colour dodge", "vivid light"}) {
        AddLines(std::string("by content, ") + kBlend, name,
                 [&mode = FindBlendMode(name)](auto& state, Content content, const LineName& line) {
                     MeasureBlend(state, mode, content, line);
                 });
    }
}

}  // namespace ombrix::bench
