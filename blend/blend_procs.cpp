#include "blend/blend_procs.h"

#include "blend/formulas.h"

namespace ombrix {
namespace {

template <class Formula>
void BlendPixel(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result) {
    const PixelFormat format(4);
    const std::uint8_t fourth = source[format.fourth];
    WriteColour(result, format, Formula()(ReadColour(source, format), ReadColour(fill, format)));
    result[format.fourth] = fourth;
}

}  // namespace

#define OMBRIX_DEFINE(name, formula)                                                                     \
    void Blend##name##Proc(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result) { \
        BlendPixel<formula>(source, fill, result);                                                       \
    }
OMBRIX_BLEND_MODES(OMBRIX_DEFINE)
#undef OMBRIX_DEFINE

std::array<BlendProc, kBlendProcCount> BlendHandlers{};

void FillBlendHandlers() {
#define OMBRIX_ENTRY(name, formula) Blend##name##Proc,
    BlendHandlers = {OMBRIX_BLEND_MODES(OMBRIX_ENTRY)};
#undef OMBRIX_ENTRY
}

std::size_t BlendHandlerIndex(std::int32_t mode) {
    const std::uint32_t index = static_cast<std::uint32_t>(mode) - 1;
    return index < kBlendProcCount ? index : 0;
}

BlendProc FindBlendProc(std::int32_t mode) { return BlendHandlers[BlendHandlerIndex(mode)]; }

}  // namespace ombrix
