// Calls of effects: error codes, results, and that all locks and references are given back in order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::uint8_t> Bytes(const FakePicture& picture) {
    return {picture.bytes->data(), picture.bytes->data() + picture.bytes->size()};
}

class Driver : public ::testing::TestWithParam<EffectCase> {
  protected:
    void SetUp() override { host_.Start(); }

    FakeHost host_;
};

struct Refusal {
    const char* what;
    std::function<void(FakeHost&, FakePicture& source, FakePicture& mask)> arrange;
    std::int64_t error;         ///< of Apply
    std::int64_t errorInPlace;  ///< of ApplyInPlace
    bool givesPicture;
};

const Refusal kRefusals[] = {
    {"source cannot be locked", [](auto&, auto& source, auto&) { source.refusesLock = true; }, 2, 2, false},
    {"source of 16 bits", [](auto&, auto& source, auto&) { source.bits = 16; }, 2, 2, false},
    {"source of 64 bits", [](auto&, auto& source, auto&) { source.bits = 64; }, 2, 2, false},
    {"source without a base", [](auto&, auto& source, auto&) { source.hidesBase = true; }, 2, 2, false},
    {"source with short rows", [](auto&, auto& source, auto&) { source.rowBytes = 20 * 4 - 1; }, 2, 2, false},
    {"source with endless rows", [](auto&, auto& source, auto&) { source.rowBytes = ~std::size_t{}; }, 2, 2, false},
    {"no new pictures", [](auto& host, auto&, auto&) { host.refusesInstances = true; }, 3, 0, false},
    {"new picture cannot be locked", [](auto& host, auto&, auto&) { host.refusesDestinationLock = true; }, 3, 0, false},
    {"new picture too narrow", [](auto& host, auto&, auto&) { host.destinationWidthError = -1; }, 3, 0, false},
    {"new picture of another depth", [](auto& host, auto&, auto&) { host.destinationBits = 24; }, 3, 0, false},
    {"mask cannot be locked", [](auto&, auto&, auto& mask) { mask.refusesLock = true; }, 1, 1, true},
    {"mask too narrow", [](auto&, auto&, auto& mask) { mask.width = 19; }, 1, 1, true},
    {"mask too low", [](auto&, auto&, auto& mask) { mask.height = 16; }, 1, 1, true},
    {"mask of 16 bits", [](auto&, auto&, auto& mask) { mask.bits = 16; }, 1, 1, true},
    {"mask without a base", [](auto&, auto&, auto& mask) { mask.hidesBase = true; }, 1, 1, true},
    {"mask with short rows", [](auto&, auto&, auto& mask) { mask.rowBytes = 20 * 4 - 1; }, 1, 1, true},
};

TEST_P(Driver, RefusesWhatWillNotDoAndGivesEverythingBack) {
    for (const Refusal& refusal : kRefusals) {
        SCOPED_TRACE(refusal.what);
        FakeHost host;
        host.Start();
        FakePicture* source = host.NewPicture("source", 20, 17, 32);
        FakePicture* mask = host.NewPicture("mask", 20, 17, 32);
        const auto before = Bytes(*source);
        refusal.arrange(host, *source, *mask);
        FakeEffect effect(GetParam().className);
        effect.Base().ErrorCode = 99;

        FakePicture* result = Apply(effect, GetParam().values, source, mask);
        EXPECT_EQ(effect.Base().ErrorCode, refusal.error);
        EXPECT_EQ(host.Locks(), 0);
        ASSERT_EQ(result != nullptr, refusal.givesPicture);
        EXPECT_EQ(host.LiveResults(), refusal.givesPicture ? 1 : 0);
        if (result) {
            EXPECT_EQ(Bytes(*result), Bytes(*host.NewPicture("untouched", 20, 17, 32)));
        }

        ApplyInPlace(effect, GetParam().values, source, mask);
        EXPECT_EQ(effect.Base().ErrorCode, refusal.errorInPlace);
        EXPECT_EQ(host.Locks(), 0);
        if (refusal.errorInPlace != NO_ERROR) {
            EXPECT_EQ(Bytes(*source), before);
        }
        EXPECT_EQ(source->references, 1);
        EXPECT_EQ(mask->references, 1);

        FakePicture* good = host.NewPicture("good", 20, 17, 32);
        ApplyInPlace(effect, GetParam().values, good, nullptr);
        EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
    }
}

TEST_P(Driver, LocksAndUnlocksInOrder) {
    FakePicture* source = host_.NewPicture("source", 20, 17, 32);
    FakePicture* mask = host_.NewPicture("mask", 20, 17, 32);
    FakeEffect effect(GetParam().className);
    ASSERT_TRUE(Apply(effect, GetParam().values, source, mask));
    EXPECT_THAT(host_.log, ElementsAre("lock source", "lock result", "lock mask", "unlock mask", "unlock source",
                                       "unlock result"));
    host_.log.clear();
    ApplyInPlace(effect, GetParam().values, source, mask);
    EXPECT_THAT(host_.log, ElementsAre("lock source", "lock mask", "unlock mask", "unlock source"));
}

TEST_P(Driver, ANilSourceIsAnIllegalParameterAndNothingElseHappens) {
    FakeEffect effect(GetParam().className);
    effect.Base().progressHandler = host_.ProgressHandler();
    EXPECT_EQ(Apply(effect, GetParam().values, nullptr, nullptr), nullptr);
    EXPECT_EQ(effect.Base().ErrorCode, ILLEGAL_INPUT_PARAMETER);
    effect.Base().ErrorCode = NO_ERROR;
    ApplyInPlace(effect, GetParam().values, nullptr, nullptr);
    EXPECT_EQ(effect.Base().ErrorCode, ILLEGAL_INPUT_PARAMETER);
    EXPECT_THAT(host_.log, IsEmpty());
    EXPECT_THAT(host_.reports, IsEmpty());
    EXPECT_THAT(host_.pictures, IsEmpty());
}

TEST_P(Driver, HandsTheSourcesMaskOnUnlessToldNotTo) {
    FakePicture* source = host_.NewPicture("source", 20, 17, 32);
    FakePicture* attached = host_.NewPicture("attached", 20, 17, 32);
    FakeEffect effect(GetParam().className);
    EXPECT_EQ(Apply(effect, GetParam().values, source, nullptr)->mask, nullptr);

    source->mask = attached;
    EXPECT_EQ(Apply(effect, GetParam().values, source, nullptr)->mask, attached);
    EXPECT_EQ(attached->references, 2);  // the test's and the result's

    *static_cast<std::uint8_t*>(effect.Data()) = 2;  // IgnoreAlpha: any byte but 0 is true
    EXPECT_EQ(Apply(effect, GetParam().values, source, nullptr)->mask, nullptr);
    ApplyInPlace(effect, GetParam().values, source, nullptr);
    EXPECT_EQ(source->mask, attached);
    EXPECT_EQ(attached->references, 2);
}

TEST_P(Driver, TheHintsLowHalfCounts) {
    FakePicture* source = host_.NewPicture("source", 20, 40, 32);
    FakeEffect effect(GetParam().className);
    effect.Base().MultiprocessingHint = (std::int64_t{1} << 32) + 3;
    Apply(effect, GetParam().values, source, nullptr);
    EXPECT_EQ(host_.tasksStarted, 3);
}

INSTANTIATE_TEST_SUITE_P(Effects, Driver, ::testing::ValuesIn(EffectCases()), NameOf);

}  // namespace
}  // namespace ombrix::testing
