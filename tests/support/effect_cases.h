// The effects, each with values that use its whole formula, for tests of depths, paddings, tasks, masks and refusals;
// and the levels of instructions.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "pixels/bands.h"
#include "pixels/instruction_level.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {

/// The levels that this machine has.
inline std::vector<InstructionLevel> InstructionLevels() {
    std::vector<InstructionLevel> levels;
    for (const InstructionLevel level :
         {InstructionLevel::Baseline, InstructionLevel::V3, InstructionLevel::V4, InstructionLevel::V4Vbmi}) {
        if (level <= BestInstructionLevel()) levels.push_back(level);
    }
    return levels;
}

/// Selects a level for the scope.
class LevelScope {
  public:
    explicit LevelScope(InstructionLevel level) { gInstructionLevel = level; }
    ~LevelScope() { gInstructionLevel = BestInstructionLevel(); }
};

/// Streams destinations of any size past the caches for the scope, or none.
class StreamingScope {
  public:
    explicit StreamingScope(bool streams) {
        gStreamedFromBytes = streams ? 0 : std::numeric_limits<std::int64_t>::max();
    }
    ~StreamingScope() { gStreamedFromBytes = before_; }

  private:
    std::int64_t before_ = gStreamedFromBytes;
};

struct EffectCase {
    const char* className;
    std::vector<std::int64_t> values;  ///< the arguments between source and mask
};

inline void PrintTo(const EffectCase& effect, std::ostream* out) { *out << effect.className; }

inline const std::vector<EffectCase>& EffectCases() {
    static const std::vector<EffectCase> cases = {
        {"ColorFilterEffect", {40, -255, 7}},
        {"ContrastEffect", {37}},
        {"BrightnessEffect", {-90}},
        {"SepiaEffect", {33}},
        {"InvertEffect", {}},
        {"GrayscaleEffect", {0}},
        {"GrayscaleEffect", {2}},
        {"GrayscaleEffect", {3}},
    };
    return cases;
}

/// A case's name in the names of tests.
inline std::string NameOf(const ::testing::TestParamInfo<EffectCase>& tested) {
    return std::string(tested.param.className) + std::to_string(tested.index);
}

/// Calls `Apply` with all arguments.
inline FakePicture* Apply(FakeEffect& effect, const std::vector<std::int64_t>& values, FakePicture* source,
                          FakePicture* mask) {
    using Handle = REALobjectStruct*;
    using Integer = std::int64_t;
    const Handle from = source ? source->Handle() : nullptr;
    const Handle by = mask ? mask->Handle() : nullptr;
    Handle result = nullptr;
    if (values.empty()) result = effect.Method<Handle(Handle, Handle, Handle)>(0)(effect.Handle(), from, by);
    if (values.size() == 1) {
        result = effect.Method<Handle(Handle, Handle, Integer, Handle)>(0)(effect.Handle(), from, values[0], by);
    }
    if (values.size() == 3) {
        result = effect.Method<Handle(Handle, Handle, Integer, Integer, Integer, Handle)>(0)(
            effect.Handle(), from, values[0], values[1], values[2], by);
    }
    return reinterpret_cast<FakePicture*>(result);
}

/// Calls `ApplyInPlace` with all arguments.
inline void ApplyInPlace(FakeEffect& effect, const std::vector<std::int64_t>& values, FakePicture* source,
                         FakePicture* mask) {
    using Handle = REALobjectStruct*;
    using Integer = std::int64_t;
    const Handle from = source ? source->Handle() : nullptr;
    const Handle by = mask ? mask->Handle() : nullptr;
    if (values.empty()) effect.Method<void(Handle, Handle, Handle)>(1)(effect.Handle(), from, by);
    if (values.size() == 1) {
        effect.Method<void(Handle, Handle, Integer, Handle)>(1)(effect.Handle(), from, values[0], by);
    }
    if (values.size() == 3) {
        effect.Method<void(Handle, Handle, Integer, Integer, Integer, Handle)>(1)(effect.Handle(), from, values[0],
                                                                                  values[1], values[2], by);
    }
}

}  // namespace ombrix::testing
