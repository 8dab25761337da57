// Colours of every space, and profiles of every sort, on their way to sRGB.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

class ColourTest : public CommandTest {
  protected:
    static std::string Profile(const char* name) {
        VipsBlob* blob = nullptr;
        EXPECT_EQ(vips_profile_load(name, &blob, nullptr), 0);
        std::size_t size = 0;
        const void* bytes = vips_blob_get(blob, &size);
        std::string profile(static_cast<const char*>(bytes), size);
        vips_area_unref(VIPS_AREA(blob));
        return profile;
    }

    static VImage With(const std::string& profile, const VImage& image) {
        VImage result = image.copy();
        vips_image_set_blob_copy(result.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
        return result;
    }

    static VImage As(VipsInterpretation meaning, const VImage& image) {
        return image.copy(VImage::option()->set("interpretation", meaning));
    }

    /// What becomes of an image when nothing is done to it.
    Outcome Show(const VImage& image, const std::string& name) const {
        image.write_to_file(Path(name).c_str());
        return Ombrix({"apply", "colorfilter", "Red=0", name, "out.png", "--force"});
    }
};

TEST_F(ColourTest, SpacesOfNoDeviceAreShownInTheirColours) {
    for (const VipsInterpretation space :
         {VIPS_INTERPRETATION_LAB, VIPS_INTERPRETATION_LABS, VIPS_INTERPRETATION_LABQ, VIPS_INTERPRETATION_XYZ,
          VIPS_INTERPRETATION_scRGB, VIPS_INTERPRETATION_LCH, VIPS_INTERPRETATION_YXY, VIPS_INTERPRETATION_HSV}) {
        SCOPED_TRACE(vips_enum_nick(VIPS_TYPE_INTERPRETATION, space));
        const VImage image = Plain({100, 150, 200}).colourspace(space);
        // A profile that was left in the file is none of theirs.
        for (const VImage& each : {image, With(Profile("p3"), image)}) {
            EXPECT_EQ(Show(each, "in.v").status, 0);
            // libvips is less exact with its packed form.
            EXPECT_THAT(PixelOf("out.png"),
                        IsNear(Pixel{100, 150, 200, 255}, space == VIPS_INTERPRETATION_LABQ ? 9 : 3));
        }
    }
}

TEST_F(ColourTest, NumbersBeyondTheRangeAreLimited) {
    for (const VipsBandFormat format : {VIPS_FORMAT_SHORT, VIPS_FORMAT_INT, VIPS_FORMAT_FLOAT, VIPS_FORMAT_DOUBLE}) {
        SCOPED_TRACE(vips_enum_nick(VIPS_TYPE_BAND_FORMAT, format));
        const VImage image =
            (VImage::black(4, 4, VImage::option()->set("bands", 3)) + std::vector<double>{-50, 120, 300}).cast(format);
        EXPECT_EQ(Show(As(VIPS_INTERPRETATION_sRGB, image), "in.v").status, 0);
        EXPECT_EQ(PixelOf("out.png"), (Pixel{0, 120, 255, 255}));
    }
}

TEST_F(ColourTest, PlanesOfInstrumentsAreRefused) {
    EXPECT_EQ(Show(Plain({10, 20, 30}), "three.fits").status, 0);
    const Outcome run = Show(As(VIPS_INTERPRETATION_MULTIBAND, Plain({10, 20, 30, 40})), "four.fits");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("four.fits has 4 planes"));
}

TEST_F(ColourTest, ProfilesAreFollowedInAWayThatTheyHave) {
    // Without its tables for the usual intent.
    std::string profile = Profile("cmyk");
    for (const char* table : {"A2B1", "A2B2"}) {
        const std::size_t at = profile.find(table);
        ASSERT_NE(at, std::string::npos);
        profile.replace(at, 3, "old");
    }
    const VImage image = With(profile, As(VIPS_INTERPRETATION_CMYK, Plain({200, 30, 90, 10})));
    const std::vector<double> expected =
        image.icc_transform("srgb", VImage::option()->set("embedded", true)->set("intent", VIPS_INTENT_PERCEPTUAL))
            .getpoint(0, 0);
    const Outcome run = Show(image, "in.tif");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("its colours are converted to sRGB"));
    EXPECT_THAT(PixelOf("out.png"), IsNear(Pixel{static_cast<int>(expected[0]), static_cast<int>(expected[1]),
                                                 static_cast<int>(expected[2]), 255},
                                           1));
}

TEST_F(ColourTest, ProfilesThatCannotBeUsedAreLeftAside) {
    for (const std::string& profile : {Profile("cmyk"), std::string("no profile at all")}) {
        // A PNG writer would refuse it.
        const Outcome run = Show(With(profile, Plain({100, 150, 200})), "in.v");
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.err, HasSubstr("the colour profile of in.v cannot be used and is left aside"));
        EXPECT_EQ(PixelOf("out.png"), (Pixel{100, 150, 200, 255}));
    }
}

TEST_F(ColourTest, AlphaIsNoColour) {
    const VImage deep = (Plain({100, 150, 200, 128}) * 257).cast(VIPS_FORMAT_USHORT);
    EXPECT_EQ(Show(With(Profile("p3"), As(VIPS_INTERPRETATION_RGB16, deep)), "in.png").status, 0);
    // By the primaries: 83.5, 151.7, 204.6.
    EXPECT_THAT(PixelOf("out.png"), IsNear(Pixel{84, 152, 205, 128}, 1));
}

}  // namespace
}  // namespace ombrix::test
