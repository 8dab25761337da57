// An effect of another plug-in, built on this one's base class.
#include "tests/effects/effects_test.h"

namespace ombrix::testing {
namespace {

class Posterize : public Effects {
  protected:
    Posterize() { host_.Load(OMBRIX_BUILD_DIR "/libposterize.so"); }
};

TEST_F(Posterize, MapsThroughTheOtherPluginsEngine) {
    const auto colourAt = [](int x, int y) { return Colour{x, 255 - x, y}; };
    const Picture source = Painted(256, 20, colourAt);
    const Object effect = host_.New("PosterizeEffect");
    EXPECT_TRUE(effect.IsA("MPImageFilter"));
    EXPECT_EQ(effect.Get("Levels").AsInteger(), 4);
    const Picture result(effect.Call("Apply", {source}).AsObject());
    for (int x = 0; x < 256; ++x) {
        const int level = x < 43 ? 0 : x < 128 ? 85 : x < 213 ? 170 : 255;
        EXPECT_EQ(At(result, x, 3)[0], level) << x;
    }
    for (const std::int64_t levels : {2, 256}) {
        effect.Set("Levels", levels);
        const Picture changed = Painted(256, 20, colourAt);
        effect.CallInterface("IGraphicsEffectInPlace", "ApplyInPlace", {changed});
        EXPECT_EQ(ErrorOf(effect), 0);
        for (int x = 0; x < 256; ++x) {
            EXPECT_EQ(At(changed, x, 3)[0], levels == 256 ? x : x < 128 ? 0 : 255) << x;
        }
    }
    for (const std::int64_t levels :
         {std::int64_t{1}, std::int64_t{257}, std::int64_t{-4}, (std::int64_t{1} << 32) + 4}) {
        effect.Set("Levels", levels);
        EXPECT_TRUE(effect.Call("Apply", {source}).IsNil());
        EXPECT_EQ(ErrorOf(effect), 4);
    }
}

TEST(PosterizeAlone, IsRefusedWithoutThePluginOfItsBaseClass) {
    Host host;
    try {
        host.Load(OMBRIX_BUILD_DIR "/libposterize.so");
        FAIL();
    } catch (const host::Error& error) {
        EXPECT_NE(std::string(error.what()).find("MPImageFilter"), std::string::npos) << error.what();
    }
}

}  // namespace
}  // namespace ombrix::testing
