// The levels of the instruction set that the loops over pixels are compiled for, and the one in use.
#pragma once

/// The levels, the lowest first, each with the namespace that its loops are in.
#if defined(__x86_64__)
#define OMBRIX_LEVELS(LEVEL) LEVEL(Baseline, baseline) LEVEL(V3, v3) LEVEL(V4, v4) LEVEL(V4Vbmi, v4_vbmi)
#else
#define OMBRIX_LEVELS(LEVEL) LEVEL(Baseline, baseline)
#endif

namespace ombrix {

enum class InstructionLevel {
    Baseline,  ///< what every processor of the kind has: SSE2, NEON
    V3,        ///< x86-64-v3: vectors of 256 bits
    V4,        ///< x86-64-v4: vectors of 512 bits
    V4Vbmi,    ///< the same with permutations of bytes, for look-ups in tables
};

/// The best level that this processor has.
InstructionLevel BestInstructionLevel();

/// The level in use: the best one, unless a test or a benchmark has set another that the processor has.
extern InstructionLevel gInstructionLevel;

}  // namespace ombrix
