// The start of the plug-in, as a host sees it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "plugin/plugin_entry.h"
#include "plugin/registered_classes.h"
#include "sdk/host_calls.h"
#include "tests/support/effect_cases.h"
#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Start, RegistersModulesThenClassesInTheirOrder) {
    FakeHost host;
    host.Start();
    EXPECT_EQ(host.announcedVersion, 13);
    std::vector<std::string> expected;
#define OMBRIX_MODULE(name) expected.push_back("module " #name);
#define OMBRIX_CLASS(name) expected.push_back("class " #name);
    OMBRIX_MODULES(OMBRIX_MODULE)
    OMBRIX_CLASSES(OMBRIX_CLASS)
#undef OMBRIX_MODULE
#undef OMBRIX_CLASS
    EXPECT_EQ(host.registered, expected);
    ASSERT_GE(expected.size(), 10u);
    EXPECT_THAT(std::vector(expected.begin(), expected.begin() + 10),
                ElementsAre("module OmbrixError", "module OmbrixUtilities", "class MPImageFilter",
                            "class ColorFilterEffect", "class ContrastEffect", "class BrightnessEffect",
                            "class SepiaEffect", "class BlendEffect", "class InvertEffect", "class GrayscaleEffect"));
    EXPECT_EQ((std::array{NULL_PIX, RED_PIX, GREEN_PIX, BLUE_PIX}), (std::array<std::uint8_t, 4>{0, 1, 2, 3}));
    for (const auto& [name, record] : host.classes) {
        EXPECT_EQ(record->version, 13) << name;
        EXPECT_EQ(record->flags, name == "MPImageFilter" ? kClassConsoleSafe : 0) << name;
    }
}

TEST(Start, OldHostsAreLeftAlone) {
    for (const double version : {0.0, 99.9, 100.5, 2010.5, 2010.999}) {
        FakeHost host;
        host.version = version;
        NULL_PIX = RED_PIX = GREEN_PIX = BLUE_PIX = 0;
        host.Start();
        EXPECT_THAT(host.registered, IsEmpty()) << version;
        EXPECT_EQ(RED_PIX + GREEN_PIX + BLUE_PIX, 0) << version;
        EXPECT_EQ(host.announcedVersion, 13) << version;
    }
    for (const double version : {100.0, 2011.0, 2024.2}) {
        FakeHost host;
        host.version = version;
        host.Start();
        EXPECT_FALSE(host.registered.empty()) << version;
    }
}

/// A service found is kept for the life of the process, so a host that lacks one needs a process of its own.
class StartAfresh : public ::testing::Test {
  protected:
    StartAfresh() { GTEST_FLAG_SET(death_test_style, OMBRIX_DEATH_TEST_STYLE); }

    template <class Test>
    static void Finish(Test test) {
        test();
        std::exit(::testing::Test::HasFailure() ? 1 : 0);
    }
};

TEST_F(StartAfresh, AServiceThatIsMissingGivesAnEmptyResultAndIsAskedForAgain) {
    EXPECT_EXIT(Finish([] {
                    FakeHost host;
                    host.missing = {"REALGetRBVersion", "REALGetPropValueObject", "CreateInstance",
                                    "pluginObjectType", "REALLoadObjectMethod",   "REALLockPictureDescription"};
                    host.Start();
                    EXPECT_EQ(REALGetRBVersion(), 0.0);
                    EXPECT_THAT(host.asked, Contains("REALGetRBVersion").Times(2));
                    EXPECT_THAT(host.registered, IsEmpty());
                    EXPECT_EQ(REALGetClassRef("Picture"), nullptr);
                    EXPECT_EQ(REALnewInstanceWithClass(reinterpret_cast<REALclassRef>(&host)), nullptr);
                    EXPECT_EQ(REALLoadObjectMethod(nullptr, "Any()"), nullptr);
                    REALpictureDescription description;
                    EXPECT_FALSE(REALLockPictureDescription(nullptr, &description, 8));
                    REALobjectStruct* object;
                    EXPECT_FALSE(REALGetPropValueObject(nullptr, "Any", &object));

                    // A service found is not asked for again.
                    host.missing.clear();
                    host.asked.clear();
                    EXPECT_EQ(REALGetRBVersion(), 2024.0);
                    EXPECT_EQ(REALGetRBVersion(), 2024.0);
                    EXPECT_THAT(host.asked, ElementsAre("REALGetRBVersion"));
                }),
                ::testing::ExitedWithCode(0), "");
}

TEST_F(StartAfresh, AHostWithHardlyAnyServiceDoesNoHarm) {
    EXPECT_EXIT(Finish([] {
                    FakeHost host;
                    host.missing = {"RegisterPluginVersion", "REALLockObject", "REALUnlockObject", "CreateInstance",
                                    "REALLoadObjectMethod"};
                    host.Start();
                    EXPECT_FALSE(host.registered.empty());
                    FakePicture* source = host.NewPicture("source", 20, 20, 32);
                    for (const EffectCase& tested : EffectCases()) {
                        FakeEffect effect(tested.className);
                        EXPECT_EQ(Apply(effect, tested.values, source, nullptr), nullptr);
                        EXPECT_EQ(effect.Base().ErrorCode, UNABLE_TO_CREATE_DESTINATION);
                        ApplyInPlace(effect, tested.values, source, nullptr);
                        EXPECT_EQ(effect.Base().ErrorCode, NO_ERROR);
                        // ProgressHandler counts references itself.
                        const REALpropertyDefinition& handler = host.classes["MPImageFilter"]->properties[0];
                        using Setter = void(REALobjectStruct*, std::int64_t, REALobjectStruct*);
                        reinterpret_cast<Setter*>(handler.setter.function)(effect.Handle(), 0, source->Handle());
                        using Getter = REALobjectStruct*(REALobjectStruct*, std::int64_t);
                        EXPECT_EQ(reinterpret_cast<Getter*>(handler.getter.function)(effect.Handle(), 0),
                                  source->Handle());
                    }
                }),
                ::testing::ExitedWithCode(0), "");
}

TEST(ClassData, LiesWhereTheHostWroteThatItDoes) {
    REALclassDefinition record{};
    char instance[64];
    auto* handle = reinterpret_cast<REALobjectStruct*>(instance);
    EXPECT_EQ(REALGetClassData(handle, &record), instance);
    record.dataOffset = 24;
    EXPECT_EQ(REALGetClassData(handle, &record), instance + 24);
}

TEST(ClassFlags, WebOnlyRulesOutTheDesktop) {
    REALclassDefinition record{};
    record.flags = 0x9;
    SetClassWebOnly(&record);
    EXPECT_EQ(record.flags, 0x101u);
    SetClassConsoleSafe(&record);
    EXPECT_EQ(record.flags, 0x105u);
}

}  // namespace
}  // namespace ombrix::testing
