// What transparent pixels do: of the picture they stay as they are, of a fill they let the picture show.

#include <vector>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using vips::VImage;

class TransparencyTest : public CommandTest {
  protected:
    static constexpr int kWidth = 60, kHeight = 70;

    void SetUp() override {
        Noise(kWidth, kHeight, 3, 1).write_to_file(Path("in.png").c_str());
        fill_ = Noise(40, 30, 3, 5);
        alpha_ = Noise(40, 30, 1, 9);
        mask_ = Noise(45, 50, 1, 13);
        fill_.write_to_file(Path("fill.png").c_str());
        fill_.bandjoin(alpha_).write_to_file(Path("shape.png").c_str());
        fill_.bandjoin(255).write_to_file(Path("opaque.png").c_str());
        (fill_.cast(VIPS_FORMAT_USHORT) * 257)
            .bandjoin(65535)
            .cast(VIPS_FORMAT_USHORT)
            .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16))
            .write_to_file(Path("opaque16.png").c_str());
        mask_.write_to_file(Path("mask.png").c_str());
        alpha_.invert().write_to_file(Path("hidden.png").c_str());
        const VImage visible = (alpha_ * mask_.extract_area(0, 0, 40, 30).invert() / 255).rint();
        visible.cast(VIPS_FORMAT_UCHAR).invert().write_to_file(Path("both.png").c_str());
    }

    /// All levels, with many at the ends.
    static VImage Noise(int width, int height, int bands, int seed) {
        std::vector<VImage> all;
        for (int i = 0; i < bands; ++i) {
            all.push_back(VImage::gaussnoise(
                width, height, VImage::option()->set("mean", 128)->set("sigma", 120)->set("seed", seed + i)));
        }
        return VImage::bandjoin(all)
            .cast(VIPS_FORMAT_UCHAR)
            .copy(VImage::option()->set("interpretation",
                                        bands < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
    }

    void ExpectSame(const std::vector<std::string>& settings, const std::vector<std::string>& expected) const {
        const auto run = [this](const std::vector<std::string>& given, const char* output) {
            std::vector<std::string> words = {"apply", "blend", "BlendMode=MODE_SCREEN"};
            words.insert(words.end(), given.begin(), given.end());
            words.insert(words.end(), {"in.png", output, "--force", "--quiet"});
            const Outcome outcome = Ombrix(words);
            ASSERT_EQ(outcome.status, 0) << outcome.err;
        };
        run(settings, "out.png");
        run(expected, "expected.png");
        EXPECT_EQ((Read("out.png") - Read("expected.png")).abs().max(), 0) << testing::PrintToString(settings);
    }

  private:
    VImage fill_, alpha_, mask_;
};

TEST_F(TransparencyTest, AFillShowsItsShape) {
    for (const std::string location : {"Location=10,20", "Location=-15,55", "Location=100,0"}) {
        ExpectSame({"FillPicture=shape.png", location}, {"FillPicture=fill.png", "FillMask=hidden.png", location});
        ExpectSame({"FillPicture=shape.png", "FillMask=mask.png", location},
                   {"FillPicture=fill.png", "FillMask=both.png", location});
    }
    ExpectSame({"FillPicture=shape.png", "Size=20,10", "Opacity=0.3"},
               {"FillPicture=fill.png", "FillMask=hidden.png", "Size=20,10", "Opacity=0.3"});
    // No mask, which would take a step off each channel.
    ExpectSame({"FillPicture=opaque.png"}, {"FillPicture=fill.png"});
    ExpectSame({"FillPicture=opaque16.png"}, {"FillPicture=fill.png"});
}

TEST_F(TransparencyTest, InAMaskItDoesNotCountAndANoteSaysSo) {
    Noise(kWidth, kHeight, 3, 21).write_to_file(Path("m.png").c_str());
    Noise(kWidth, kHeight, 3, 21).bandjoin(Noise(kWidth, kHeight, 1, 30)).write_to_file(Path("m4.png").c_str());
    Expect({"apply", "invert", "--mask", "m.png", "in.png", "expected.png"});
    const Outcome outcome = Ombrix({"apply", "invert", "--mask", "m4.png", "in.png", "out.png"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, testing::HasSubstr("m4.png is transparent in parts, which Mask does not look at"));
    EXPECT_EQ((Read("out.png") - Read("expected.png")).abs().max(), 0);
}

}  // namespace
}  // namespace ombrix::test
