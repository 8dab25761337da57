// The blend modes as functions of single pixels, and the table that finds them by number.
#pragma once

#include <array>
#include <cstdint>

namespace ombrix {

/// Combines one pixel of the source with one of the fill. Each pointer is the first of four bytes, of which the
/// channels lie at RED_PIX, GREEN_PIX and BLUE_PIX; the result's fourth byte is the source's.
using BlendProc = void (*)(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result);

/// The modes from 1 on, in the order of their numbers: what expands OMBRIX_BLEND_MODES(MODE) gets each mode's name and
/// the formula that it stands for.
#define OMBRIX_BLEND_MODES(MODE)                    \
    MODE(Multiply, PerChannel<MultiplyValue>)       \
    MODE(Screen, PerChannel<ScreenValue>)           \
    MODE(Overlay, PerChannel<OverlayValue>)         \
    MODE(Darken, PerChannel<DarkenValue>)           \
    MODE(Lighten, PerChannel<LightenValue>)         \
    MODE(ColorDodge, PerChannel<ColorDodgeValue>)   \
    MODE(ColorBurn, PerChannel<ColorBurnValue>)     \
    MODE(SoftLight, PerChannel<SoftLightValue>)     \
    MODE(HardLight, PerChannel<HardLightValue>)     \
    MODE(Difference, PerChannel<DifferenceValue>)   \
    MODE(Exclusion, PerChannel<ExclusionValue>)     \
    MODE(Hue, Hue)                                  \
    MODE(Saturation, Saturation)                    \
    MODE(Color, Color)                              \
    MODE(Luminosity, Luminosity)                    \
    MODE(PinLight, PerChannel<PinLightValue>)       \
    MODE(SharpLight, PerChannel<SharpLightValue>)   \
    MODE(VividLight, PerChannel<VividLightValue>)   \
    MODE(LinearLight, PerChannel<LinearLightValue>) \
    MODE(PowerLight, PerChannel<PowerLightValue>)   \
    MODE(LinearBurn, PerChannel<LinearBurnValue>)   \
    MODE(LinearDodge, PerChannel<LinearDodgeValue>) \
    MODE(Add, PerChannel<AddValue>)

// BlendMultiplyProc and the 22 others.
#define OMBRIX_DECLARE(name, formula) \
    void Blend##name##Proc(const std::uint8_t* source, const std::uint8_t* fill, std::uint8_t* result);
OMBRIX_BLEND_MODES(OMBRIX_DECLARE)
#undef OMBRIX_DECLARE

/// The mode that has no proc.
inline constexpr std::int32_t kNormalMode = 0;
inline constexpr std::size_t kBlendProcCount = 23;

/// The procs of modes 1 to 23, at mode - 1. A null first entry means that the table is not filled yet.
extern std::array<BlendProc, kBlendProcCount> BlendHandlers;

/// Fills the table. On the host's thread only, before workers that need it run.
void FillBlendHandlers();

/// Where a mode other than 0 stands in the table: what is not a mode counts as multiply.
std::size_t BlendHandlerIndex(std::int32_t mode);

/// The proc of a mode other than 0, from the filled table.
BlendProc FindBlendProc(std::int32_t mode);

}  // namespace ombrix
