#include "blend/blend_procs.h"

#include "blend/modes.h"
#include "sdk/process_state.h"

namespace ombrix {
namespace {

Rgb<int> ReadColour(const std::uint8_t* pixel) { return {pixel[RED_PIX], pixel[GREEN_PIX], pixel[BLUE_PIX]}; }

template <class Mode>
void BlendPixel(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result) {
    const std::uint8_t fourth = source[NULL_PIX];
    const Rgb<int> blended = Apply(Mode(), ReadColour(source), ReadColour(fill));
    result[RED_PIX] = static_cast<std::uint8_t>(blended.red);
    result[GREEN_PIX] = static_cast<std::uint8_t>(blended.green);
    result[BLUE_PIX] = static_cast<std::uint8_t>(blended.blue);
    result[NULL_PIX] = fourth;
}

}  // namespace

#define OMBRIX_DEFINE(mode)                                                                              \
    void Blend##mode##Proc(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result) { \
        BlendPixel<mode>(source, fill, result);                                                          \
    }
OMBRIX_BLEND_MODES(OMBRIX_DEFINE)
#undef OMBRIX_DEFINE

std::array<BlendProc, kBlendProcCount> BlendHandlers{};

void FillBlendHandlers() {
#define OMBRIX_ENTRY(mode) Blend##mode##Proc,
    BlendHandlers = {OMBRIX_BLEND_MODES(OMBRIX_ENTRY)};
#undef OMBRIX_ENTRY
}

std::size_t BlendHandlerIndex(std::int32_t mode) {
    const std::uint32_t index = static_cast<std::uint32_t>(mode) - 1;
    return index < kBlendProcCount ? index : 0;
}

BlendProc FindBlendProc(std::int32_t mode) { return BlendHandlers[BlendHandlerIndex(mode)]; }

}  // namespace ombrix
