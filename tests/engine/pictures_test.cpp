// New pictures and masks: how often the host is asked for its methods, and what happens when it has none.
#include "engine/pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::IsEmpty;

TEST(PictureCalls, LookUpClassAndMethodsOnce) {
    FakeHost host;
    host.Start();
    for (int round = 0; round < 2; ++round) {
        auto* picture = CreatePicture(5, 5, 32);
        auto* mask = host.NewPicture("mask", 5, 5, 32)->Handle();
        EXPECT_EQ(GetPictureMask(picture, false), nullptr);
        SetPictureMask(picture, mask);
        EXPECT_EQ(GetPictureMask(picture, false), mask);
        if (round == 0) {
            EXPECT_FALSE(host.asked.empty());
            host.asked.clear();
        }
    }
    EXPECT_THAT(host.asked, IsEmpty());
}

TEST(PictureCalls, AMethodThatTheHostLacksIsNeverCalled) {
    FakeHost host;
    host.Start();
    host.missing = {"Constructor(width as Integer, height as Integer, Depth as Integer)",
                    "Mask(Create as Boolean) as Picture", "Mask(assigns newMask as Picture)"};
    FakePicture* picture = host.NewPicture("picture", 5, 5, 32);
    picture->mask = host.NewPicture("mask", 5, 5, 32);
    EXPECT_EQ(CreatePicture(5, 5, 32), nullptr);
    EXPECT_EQ(host.LiveResults(), 0);
    EXPECT_EQ(GetPictureMask(picture->Handle(), false), nullptr);
    SetPictureMask(picture->Handle(), nullptr);
    EXPECT_NE(picture->mask, nullptr);

    host.missing.clear();
    EXPECT_NE(CreatePicture(5, 5, 32), nullptr);
    EXPECT_EQ(GetPictureMask(picture->Handle(), false), picture->mask->Handle());
}

}  // namespace
}  // namespace ombrix::testing
