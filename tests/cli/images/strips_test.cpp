// The result of a chain over strips is that over whole pictures. Methods that are called by name get whole pictures.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using vips::VImage;

class StripsTest : public CommandTest {
  protected:
    /// Noise, with a few pixels at the ends of the range.
    void WriteNoise(const std::string& name, int width, int height, int bands) const {
        std::vector<VImage> all;
        for (int i = 0; i < bands; ++i) {
            all.push_back(VImage::gaussnoise(
                width, height, VImage::option()->set("mean", 128)->set("sigma", 120)->set("seed", ++seed_)));
        }
        VImage::bandjoin(all).cast(VIPS_FORMAT_UCHAR).copy(Srgb()).write_to_file(Path(name).c_str());
    }

    static vips::VOption* Srgb() { return VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB); }

    void ExpectSame(const std::string& one, const std::string& other) const {
        const VImage a = Read(one), b = Read(other);
        ASSERT_EQ(a.bands(), b.bands());
        EXPECT_EQ((a - b).abs().max(), 0);
    }

  private:
    mutable int seed_ = 0;
};

TEST_F(StripsTest, FillsAndMasksComeInStripsToTheSameEffect) {
    WriteNoise("rgb.png", 67, 131, 3);
    WriteNoise("rgba.png", 67, 131, 4);
    WriteNoise("fill.png", 50, 90, 3);
    WriteNoise("fillmask.png", 50, 90, 1);
    WriteNoise("mask.png", 70, 140, 3);
    for (const std::string source : {"rgb.png", "rgba.png"}) {
        for (const std::string location : {"", "10,20", "-30,-50", "66,130", "-49,-89", "67,0", "0,-1000", "40,64"}) {
            for (const std::string size : {"", "20,33", "-1,9223372036854775807", "0,5"}) {
                if (location != "10,20" && location != "-30,-50" && !size.empty()) continue;
                for (const bool withMask : {false, true}) {
                    if (withMask != (source == "rgb.png") && !size.empty()) continue;
                    SCOPED_TRACE(source + " at " + location + ", size " + size + (withMask ? ", mask" : ""));
                    std::vector<std::string> strips = {"apply", "blend", "FillPicture=fill.png",
                                                       "BlendMode=MODE_OVERLAY", "Opacity=0.7"};
                    std::vector<std::string> whole = {"call",
                                                      "BlendEffect.Apply",
                                                      "source=" + source,
                                                      "fillPicture=fill.png",
                                                      "BlendMode=MODE_OVERLAY",
                                                      "opacity=0.7"};
                    const auto add = [&](const std::string& property, const std::string& value) {
                        whole.push_back(property + "=" + value);
                        if (!value.empty()) strips.push_back(property + "=" + value);
                    };
                    add("location", location);
                    add("size", size);
                    add("fillMask", withMask ? "fillmask.png" : "");
                    strips.insert(strips.end(), {source, "strips.png", "--force"});
                    whole.insert(whole.end(), {"whole.png", "--force"});
                    // A location outside or an empty size may get a note.
                    ASSERT_EQ(Ombrix(strips).status, 0);
                    ASSERT_EQ(Ombrix(whole).status, 0);
                    ExpectSame("strips.png", "whole.png");
                }
            }
        }
        Expect({"apply", "sepia", "SepiaValue=30", "--mask", "mask.png", source, "strips.png", "--force"});
        Expect({"call", "SepiaEffect.Apply", "source=" + source, "value=30", "mask=mask.png", "whole.png", "--force"});
        ExpectSame("strips.png", "whole.png");
    }
}

TEST_F(StripsTest, AnEffectThatLooksBeyondItsPixelGetsTheWholePicture) {
    WriteColour("in.png", {10, 20, 30}, 300, 200);
    Expect({"--plugin", OMBRIX_BUILD_DIR "/tests/odd_effects.so", "apply", "brightness", "BrightnessValue=1", "--then",
            "size", "--then", "invert", "in.png", "out.png"});
    // 300 + 200 is 244 more than 256.
    for (const auto& [x, y] : std::vector<std::pair<int, int>>{{0, 0}, {299, 199}, {150, 17}}) {
        EXPECT_EQ(PixelOf("out.png", x, y), (Pixel{255 - 255, 255 - 9, 255 - 19, 255}));
    }
}

}  // namespace
}  // namespace ombrix::test
