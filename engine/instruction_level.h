// Runs a loop over pixels with the best instructions that the processor has.
//
// A loop is written once. Here it is compiled once per level of the instruction set, since compilers make vector code
// only of the instructions that they may use; the level is chosen when the plug-in is loaded.
#pragma once

#include <type_traits>

namespace ombrix {

enum class InstructionLevel {
    Baseline,  ///< what every processor of the kind has
    V3,        ///< x86-64-v3: 256-bit vectors
    V4,        ///< x86-64-v4: 512-bit vectors
    V4Vbmi,    ///< the same with permutations of bytes, which only table look-ups use
};

/// What is known of a level when a loop is compiled for it.
template <InstructionLevel level>
struct AtLevel {
    static constexpr bool hasFusedMultiplyAdd = level >= InstructionLevel::V3;
};

/// Calls a loop, which may want to know the level.
template <InstructionLevel level, class Loop>
void CallLoop(const Loop& loop) {
    if constexpr (std::is_invocable_v<const Loop&>) {
        loop();
    } else {
        loop(AtLevel<level>());
    }
}

/// The best level that this processor has.
InstructionLevel BestInstructionLevel();

/// The level in use: the best one, unless a test or a benchmark has set another that the processor has.
extern InstructionLevel gInstructionLevel;

// Sanitizers look at what the source reads and writes, which no level changes; one level keeps their builds short.
#if defined(__x86_64__) && !defined(OMBRIX_SANITIZED)
#define OMBRIX_HAS_LEVELS
#endif

#if defined(OMBRIX_HAS_LEVELS)
// The features of a level are listed one by one: g++ does not inline across functions whose `arch` differs, and all of
// this rests on the loop being inlined (`flatten`) into the function that has the features.
#define OMBRIX_V3_FEATURES "avx,avx2,bmi,bmi2,fma"
#define OMBRIX_V4_FEATURES OMBRIX_V3_FEATURES ",avx512f,avx512bw,avx512cd,avx512dq,avx512vl"
#define OMBRIX_V4_VBMI_FEATURES OMBRIX_V4_FEATURES ",avx512vbmi"

template <class Loop>
[[gnu::target(OMBRIX_V3_FEATURES), gnu::flatten, gnu::noinline]] void RunAtV3(const Loop& loop) {
    CallLoop<InstructionLevel::V3>(loop);
}

template <class Loop>
[[gnu::target(OMBRIX_V4_FEATURES), gnu::flatten, gnu::noinline]] void RunAtV4(const Loop& loop) {
    CallLoop<InstructionLevel::V4>(loop);
}
#endif

/// Calls `loop()`, or `loop(AtLevel<…>())`. What it calls must be inlinable, and it must hold all of the loop: the
/// choice costs a jump.
template <class Loop>
void RunAtBestLevel(const Loop& loop) {
#if defined(OMBRIX_HAS_LEVELS)
    switch (gInstructionLevel) {
        case InstructionLevel::V4Vbmi:
        case InstructionLevel::V4:
            return RunAtV4(loop);
        case InstructionLevel::V3:
            return RunAtV3(loop);
        case InstructionLevel::Baseline:
            break;
    }
#endif
    CallLoop<InstructionLevel::Baseline>(loop);
}

}  // namespace ombrix
