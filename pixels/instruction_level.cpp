#include "pixels/instruction_level.h"

namespace ombrix {

InstructionLevel BestInstructionLevel() {
#if defined(__x86_64__)
    __builtin_cpu_init();
    const bool isV3 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                      __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma");
    const bool isV4 = isV3 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512vl");
    if (isV4 && __builtin_cpu_supports("avx512vbmi")) return InstructionLevel::V4Vbmi;
    if (isV4) return InstructionLevel::V4;
    if (isV3) return InstructionLevel::V3;
#endif
    return InstructionLevel::Baseline;
}

InstructionLevel gInstructionLevel = BestInstructionLevel();

}  // namespace ombrix
