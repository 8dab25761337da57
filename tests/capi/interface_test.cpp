// What the functions of the C interface promise beside pixels.
#include <sys/wait.h>

#include <atomic>
#include <thread>

#include "tests/capi/support.h"

namespace ombrix::test {
namespace {

constexpr int kWidth = 33, kHeight = 9;

GuardedRows MakeRows(ombrix_layout layout = OMBRIX_RGBA) {
    return {kWidth, kHeight, layout, BytesOf(layout) == 4 ? OMBRIX_ALPHA_STRAIGHT : OMBRIX_ALPHA_NONE, 5, false, true};
}

/// The sentence of the failure that just happened holds `part`.
testing::AssertionResult Says(const std::string& part) {
    const std::string sentence = ombrix_last_error();
    if (sentence.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << sentence << "\" does not say \"" << part << '"';
}

TEST(Interface, KnowsEffectsAndPropertiesByNameAndWordInAnyCase) {
    for (const char* name : {"SepiaEffect", "sepia", "SEPIA", "Sepiaeffect"}) {
        const Effect effect(name);
        for (const char* property : {"SepiaValue", "value", "VALUE"}) {
            int64_t value = 0;
            EXPECT_EQ(ombrix_set_text(effect.handle, property, "42"), OMBRIX_OK) << ombrix_last_error();
            EXPECT_EQ(ombrix_get_integer(effect.handle, property, &value), OMBRIX_OK);
            EXPECT_EQ(value, 42);
            ombrix_set_integer(effect.handle, property, 1);
        }
    }
    ombrix_effect* none = nullptr;
    EXPECT_EQ(ombrix_effect_new("sepja", &none), OMBRIX_NOT_FOUND);
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE(Says("\"sepja\"")) << "and lists the words:";
    EXPECT_TRUE(Says("sepia"));

    const char* name = "";
    int effects = 0;
    bool hasSepia = false;
    for (; ombrix_effect_name(static_cast<size_t>(effects), &name) == OMBRIX_OK && name != nullptr; ++effects) {
        hasSepia = hasSepia || std::string(name) == "SepiaEffect";
    }
    EXPECT_GE(effects, 7);
    EXPECT_TRUE(hasSepia);
    char* json = nullptr;
    ASSERT_EQ(ombrix_catalogue(&json), OMBRIX_OK) << ombrix_last_error();
    EXPECT_NE(std::strstr(json, "\"SepiaEffect\""), nullptr);
    EXPECT_NE(std::strstr(json, ombrix_version()), nullptr);
    ombrix_free(json);
}

TEST(Interface, TakesValuesOfEachTypeAndNoOthers) {
    const Effect blend("blend");
    EXPECT_EQ(ombrix_set_text(blend.handle, "mode", "overlay"), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(ombrix_set_text(blend.handle, "mode", "MODE_OVERLAY"), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(ombrix_set_text(blend.handle, "opacity", "60%"), OMBRIX_OK) << ombrix_last_error();
    double opacity = 0;
    EXPECT_EQ(ombrix_get_number(blend.handle, "opacity", &opacity), OMBRIX_OK);
    EXPECT_EQ(opacity, 0.6);
    EXPECT_EQ(ombrix_set_integer(blend.handle, "opacity", 1), OMBRIX_OK) << "an Integer is a Double";
    EXPECT_EQ(ombrix_set_point(blend.handle, "location", -3, 4), OMBRIX_OK) << ombrix_last_error();
    int64_t x = 0, y = 0;
    EXPECT_EQ(ombrix_get_point(blend.handle, "location", &x, &y), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(x, -3);
    EXPECT_EQ(y, 4);
    EXPECT_EQ(ombrix_set_text(blend.handle, "location", "5,-6"), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(ombrix_get_point(blend.handle, "location", &x, &y), OMBRIX_OK);
    EXPECT_EQ(y, -6);

    for (const auto& [property, text] : {std::pair("mode", "overly"), std::pair("opacity", "60 %"),
                                         std::pair("location", "5"), std::pair("FillPicture", "a.png")}) {
        EXPECT_EQ(ombrix_set_text(blend.handle, property, text), OMBRIX_INVALID_ARGUMENT) << property;
    }
    EXPECT_EQ(ombrix_set_number(blend.handle, "mode", 1.5), OMBRIX_INVALID_ARGUMENT);
    EXPECT_TRUE(Says("Integer"));
    EXPECT_EQ(ombrix_get_integer(blend.handle, "opacity", &x), OMBRIX_INVALID_ARGUMENT);
    EXPECT_EQ(ombrix_set_integer(blend.handle, "red", 1), OMBRIX_NOT_FOUND);
    EXPECT_TRUE(Says("\"red\""));
    EXPECT_EQ(ombrix_set_picture(blend.handle, "opacity", nullptr), OMBRIX_INVALID_ARGUMENT);
    EXPECT_EQ(ombrix_set_integer(blend.handle, "errorcode", 1), OMBRIX_INVALID_ARGUMENT) << "which is read only";
}

/// In any order of calls, null is an answer and no crash.
TEST(Interface, RefusesNullPointers) {
    const Effect effect("sepia", {{"value", "30"}});
    const GuardedRows rows = MakeRows();
    int copies;
    double number;
    const ombrix_status statuses[] = {
        ombrix_effect_new(nullptr, nullptr),
        ombrix_effect_name(0, nullptr),
        ombrix_catalogue(nullptr),
        ombrix_set_integer(nullptr, "value", 1),
        ombrix_set_integer(effect.handle, nullptr, 1),
        ombrix_set_text(effect.handle, "value", nullptr),
        ombrix_get_number(effect.handle, "value", nullptr),
        ombrix_get_number(nullptr, "value", &number),
        ombrix_set_progress(nullptr, nullptr, nullptr),
        ombrix_apply(nullptr, &rows.rows, &rows.rows),
        ombrix_apply(effect.handle, nullptr, &rows.rows),
        ombrix_apply(effect.handle, &rows.rows, nullptr),
        ombrix_apply_new(effect.handle, &rows.rows, nullptr),
        ombrix_copies(effect.handle, &rows.rows, &rows.rows, nullptr),
        ombrix_copies(nullptr, &rows.rows, &rows.rows, &copies),
    };
    for (const ombrix_status status : statuses) EXPECT_EQ(status, OMBRIX_INVALID_ARGUMENT) << &status - statuses;
    EXPECT_TRUE(Says("null"));
    ombrix_effect_free(nullptr);
    ombrix_free(nullptr);
}

TEST(Interface, RefusesRowsThatMakeNoSense) {
    const Effect effect("invert");
    const GuardedRows good = MakeRows();
    good.Fill(1);
    const std::vector<std::uint8_t> before = good.Bytes();
    const auto refuses = [&](auto change) {
        ombrix_rows bad = good.rows;
        change(bad);
        return ombrix_apply(effect.handle, &good.rows, &bad) == OMBRIX_INVALID_ARGUMENT &&
               ombrix_apply(effect.handle, &bad, &good.rows) == OMBRIX_INVALID_ARGUMENT;
    };
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.size = 8; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.base = nullptr; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.row_bytes = kWidth * 4 - 1; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.row_bytes = -(kWidth * 4 - 1); }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.row_bytes = PTRDIFF_MIN; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.width = -1; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.width = INT64_MAX; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.height = INT64_MAX; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.height -= 1; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.layout = static_cast<ombrix_layout>(0); }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.alpha = static_cast<ombrix_alpha>(3); }));
    // One byte further, one row further down, and upside down, of the same memory.
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.base = static_cast<char*>(rows.base) + 1; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) { rows.base = static_cast<char*>(rows.base) + rows.row_bytes; }));
    EXPECT_TRUE(refuses([](ombrix_rows& rows) {
        rows.base = static_cast<char*>(rows.base) + (rows.height - 1) * rows.row_bytes;
        rows.row_bytes = -rows.row_bytes;
    }));
    EXPECT_TRUE(Says("overlap"));
    EXPECT_EQ(good.Bytes(), before);

    ombrix_rows empty = good.rows;
    empty.width = 0;
    EXPECT_EQ(ombrix_apply(effect.handle, &empty, &empty), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(good.Bytes(), before);
}

/// Columns of one picture lie among each other's rows.
TEST(Interface, TakesColumnsOfOnePicture) {
    const Effect effect("invert");
    const GuardedRows all(20, 5, OMBRIX_RGB, OMBRIX_ALPHA_NONE, 0, false, true);
    all.Fill(1);
    ombrix_rows left = all.rows, right = all.rows;
    left.width = right.width = 10;
    right.base = all.Pixel(10, 0);
    ASSERT_EQ(ombrix_apply(effect.handle, &left, &right), OMBRIX_OK) << ombrix_last_error();
    for (int y = 0; y < 5; ++y) {
        for (int i = 0; i < 30; ++i) EXPECT_EQ(all.Pixel(0, y)[i] + all.Pixel(10, y)[i], 255);
    }
    right.base = all.Pixel(9, 0);
    EXPECT_EQ(ombrix_apply(effect.handle, &left, &right), OMBRIX_INVALID_ARGUMENT);
}

TEST(Interface, LeavesTheDestinationAsItWasWhenTheEffectRefuses) {
    const GuardedRows small(kWidth - 1, kHeight, OMBRIX_RGB, OMBRIX_ALPHA_NONE, 0, false, true);
    for (const ombrix_layout from : {OMBRIX_GREY, OMBRIX_RGB, OMBRIX_BGR, OMBRIX_RGBA, OMBRIX_ARGB}) {
        for (const ombrix_layout to : {OMBRIX_RGB, OMBRIX_BGRA, OMBRIX_RGBA, OMBRIX_ARGB}) {
            const Effect effect("sepia", {{"value", "101"}});
            const GuardedRows source = MakeRows(from), result = MakeRows(to);
            source.Fill(1);
            result.Fill(2);
            const std::vector<std::uint8_t> before = result.Bytes();
            EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_REFUSED);
            EXPECT_TRUE(Says("SepiaValue=101; it goes from 10 to 55"));
            EXPECT_EQ(ombrix_apply(effect.handle, &result.rows, &result.rows), OMBRIX_REFUSED);
            ombrix_rows made{};
            made.size = sizeof made;
            EXPECT_EQ(ombrix_apply_new(effect.handle, &source.rows, &made), OMBRIX_REFUSED);
            EXPECT_EQ(made.base, nullptr);

            ombrix_set_integer(effect.handle, "value", 30);
            ombrix_set_picture(effect.handle, "mask", &small.rows);
            EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_REFUSED);
            EXPECT_TRUE(Says("the mask is 32x9 pixels, smaller"));
            EXPECT_EQ(result.Bytes(), before);
            ombrix_set_picture(effect.handle, "mask", nullptr);
            EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
        }
    }
}

/// Black masks let all of an effect through, white ones nothing; of any layout, also when it is the destination.
TEST(Interface, TakesMasksOfAnyLayout) {
    for (const ombrix_layout layout : {OMBRIX_GREY, OMBRIX_RGB, OMBRIX_BGRA, OMBRIX_ARGB}) {
        const Effect effect("invert");
        const GuardedRows mask = MakeRows(layout), source = MakeRows(OMBRIX_RGBA), result = MakeRows(OMBRIX_RGBA);
        source.Fill(1);
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) std::memset(mask.Pixel(x, y), x < 16 ? 0 : 255, BytesOf(layout));
        }
        ASSERT_EQ(ombrix_set_picture(effect.handle, "mask", &mask.rows), OMBRIX_OK) << ombrix_last_error();
        ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                // Masks weigh in 256ths: under white, one level is lost.
                const int green = source.Pixel(x, y)[1];
                EXPECT_NEAR(result.Pixel(x, y)[1], x < 16 ? 255 - green : green, x < 16 ? 0 : 1);
                EXPECT_EQ(result.Pixel(x, y)[3], source.Pixel(x, y)[3]);
            }
        }
        // Nobody has to keep the mask's memory for longer than the handle knows of it.
        ombrix_set_picture(effect.handle, "mask", nullptr);
        ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &source.rows), OMBRIX_OK) << ombrix_last_error();
    }
    // A mask one row above its destination, in the same memory: as if it was apart.
    const Effect effect("invert");
    const GuardedRows both(kWidth, kHeight + 1, OMBRIX_RGB, OMBRIX_ALPHA_NONE, 0, false, true),
        apart = MakeRows(OMBRIX_RGB), source = MakeRows(OMBRIX_RGB), expected = MakeRows(OMBRIX_RGB);
    both.Fill(1);
    apart.Fill(1);
    source.Fill(2);
    ombrix_rows mask = both.rows, result = both.rows;
    mask.height = result.height = kHeight;
    result.base = both.Pixel(0, 1);
    ombrix_set_picture(effect.handle, "mask", &apart.rows);
    ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &expected.rows), OMBRIX_OK) << ombrix_last_error();
    ombrix_set_picture(effect.handle, "mask", &mask);
    ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &result), OMBRIX_OK) << ombrix_last_error();
    for (int y = 0; y < kHeight; ++y) EXPECT_EQ(std::memcmp(both.Pixel(0, y + 1), expected.Pixel(0, y), kWidth * 3), 0);
}

TEST(Interface, LeavesNoEffectAWayToMemoryThatItWasLent) {
    LoadRowEffects();
    const Effect effect("hoard");
    for (int time = 0; time < 3; ++time) {
        const GuardedRows source = MakeRows(OMBRIX_RGB), result = MakeRows(OMBRIX_RGB);
        EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
    }
}

struct Reports {
    int calls = 0;
    std::int64_t done = 0, all = 0;
    int cancelAt = 0;
    ombrix_status within = OMBRIX_OK;
};

int Report(void* data, int64_t done, int64_t all) {
    auto& reports = *static_cast<Reports*>(data);
    EXPECT_GT(done, reports.done);
    reports.done = done;
    reports.all = all;
    const char* name;
    reports.within = ombrix_effect_name(0, &name);
    return ++reports.calls == reports.cancelAt;
}

TEST(Interface, ReportsProgressAndEndsWhenAsked) {
    constexpr int kLarge = 1500;
    const GuardedRows source(kLarge, kLarge, OMBRIX_RGBA, OMBRIX_ALPHA_STRAIGHT, 0, false, true);
    const GuardedRows result(kLarge, kLarge, OMBRIX_RGBA, OMBRIX_ALPHA_STRAIGHT, 0, false, true);
    const Effect effect("invert");
    Reports reports;
    ASSERT_EQ(ombrix_set_progress(effect.handle, Report, &reports), OMBRIX_OK);
    ASSERT_EQ(ombrix_apply(effect.handle, &source.rows, &result.rows), OMBRIX_OK) << ombrix_last_error();
    EXPECT_GT(reports.calls, 4);
    EXPECT_EQ(reports.done, kLarge);
    EXPECT_EQ(reports.all, kLarge);
    EXPECT_EQ(reports.within, OMBRIX_BUSY) << "of a call within the report";

    reports = {};
    reports.cancelAt = 2;
    EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &source.rows), OMBRIX_CANCELLED);
    EXPECT_EQ(reports.calls, 2);
    EXPECT_LT(reports.done, kLarge);
    // All of the picture, with a mask: the effect itself reports.
    reports = {};
    reports.cancelAt = 1;
    ombrix_set_picture(effect.handle, "mask", &result.rows);
    EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &source.rows), OMBRIX_CANCELLED) << ombrix_last_error();
    ASSERT_EQ(ombrix_set_progress(effect.handle, nullptr, nullptr), OMBRIX_OK);
    EXPECT_EQ(ombrix_apply(effect.handle, &source.rows, &source.rows), OMBRIX_OK) << ombrix_last_error();
    EXPECT_EQ(reports.calls, 1);
}

TEST(Interface, WorksOnAnyThreadWithAnErrorForEach) {
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i, &wrong] {
            for (int turn = 0; turn < 50; ++turn) {
                const Effect effect("invert");
                const GuardedRows rows = MakeRows(i % 2 == 0 ? OMBRIX_RGBA : OMBRIX_BGR);
                rows.Fill(7);
                const std::vector<std::uint8_t> before = rows.Bytes();
                const std::string unknown = "property" + std::to_string(i);
                if (ombrix_set_integer(effect.handle, unknown.c_str(), 1) != OMBRIX_NOT_FOUND) ++wrong;
                for (int twice = 0; twice < 2; ++twice) {
                    if (ombrix_apply(effect.handle, &rows.rows, &rows.rows) != OMBRIX_OK) ++wrong;
                }
                if (rows.Bytes() != before || !Says(unknown)) ++wrong;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

/// In a process of its own, whose library has not been used.
int StatusInChild() {
    ombrix_effect* effect = nullptr;
    const ombrix_status status = ombrix_effect_new("invert", &effect);
    ombrix_effect_free(effect);
    return status;
}

int StatusOf(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(InterfaceDeathTest, WorksInAChildUnlessTheParentHasUsedIt) {
    GTEST_FLAG_SET(death_test_style, OMBRIX_DEATH_TEST_STYLE);
    EXPECT_EXIT(
        {
            const pid_t before = fork();
            if (before == 0) _exit(StatusInChild());
            int failures = StatusOf(before) == OMBRIX_OK ? 0 : 1;
            failures += StatusInChild() == OMBRIX_OK ? 0 : 2;
            ombrix_effect* effect = nullptr;
            ombrix_effect_new("sepia", &effect);
            const pid_t after = fork();
            if (after == 0) {
                ombrix_effect_free(effect);
                _exit(ombrix_set_integer(effect, "value", 1) == OMBRIX_FORKED ? StatusInChild() : 99);
            }
            failures += StatusOf(after) == OMBRIX_FORKED ? 0 : 4;
            failures += StatusInChild() == OMBRIX_OK ? 0 : 8;
            _exit(failures);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace ombrix::test
