// Pixels, from image files of every sort to image files.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

// 40 more red, 30 less blue.
const std::vector<std::string> kWarm = {"apply", "colorfilter", "Red=40", "Blue=-30"};

std::vector<std::string> Warm(const std::vector<std::string>& more) {
    std::vector<std::string> words = kWarm;
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

VImage As16Bits(const VImage& image, VipsInterpretation meaning) {
    return (image * 257).cast(VIPS_FORMAT_USHORT).copy(VImage::option()->set("interpretation", meaning));
}

using PixelsTest = CommandTest;

TEST_F(PixelsTest, EveryKindOfSourceBecomesRedGreenBlueAndAlpha) {
    const VImage colour = Plain({100, 150, 200});
    const Pixel warm{140, 150, 170, 255};
    struct Source {
        std::string file;
        VImage image;
        Pixel expected;
        int tolerance;
        std::string note;
    };
    const std::vector<Source> sources = {
        {"colour.png", colour, warm, 0, ""},
        {"colour.tif", colour, warm, 0, ""},
        {"colour.ppm", colour, warm, 0, ""},
        {"colour.gif", colour, warm, 0, ""},
        {"palette.png[palette=true]", colour, warm, 0, ""},
        {"lossless.webp[lossless=true]", colour, warm, 0, ""},
        {"colour.jpg[Q=95]", colour, warm, 3, ""},
        {"over.png", Plain({250, 0, 10}), {255, 0, 0, 255}, 0, ""},
        {"alpha.png", Plain({100, 150, 200, 128}), {140, 150, 170, 128}, 0, ""},
        {"clear.tif", Plain({100, 150, 200, 0}), {140, 150, 170, 0}, 0, ""},
        {"grey.png", Plain({100}), {140, 100, 70, 255}, 0, ""},
        {"grey.jpg[Q=95]", Plain({100}), {140, 100, 70, 255}, 3, ""},
        {"greyalpha.png", Plain({100, 60}), {140, 100, 70, 60}, 0, ""},
        {"bilevel.png[bitdepth=1]", Plain({255}), {255, 255, 225, 255}, 0, ""},
        {"deep.png", As16Bits(colour, VIPS_INTERPRETATION_RGB16), warm, 0, "deep.png has 16 bits a channel"},
        {"deepalpha.tif",
         As16Bits(Plain({100, 150, 200, 128}), VIPS_INTERPRETATION_RGB16),
         {140, 150, 170, 128},
         0,
         "deepalpha.tif has 16 bits a channel"},
        {"deepgrey.png", As16Bits(Plain({100}), VIPS_INTERPRETATION_GREY16), {140, 100, 70, 255}, 0, "16 bits"},
        {"deepgreyalpha.png", As16Bits(Plain({100, 60}), VIPS_INTERPRETATION_GREY16), {140, 100, 70, 60}, 0, "16 bits"},
        {"light.tif",
         Plain({1, 1, 1})
             .cast(VIPS_FORMAT_FLOAT)
             .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_scRGB)),
         {255, 255, 225, 255},
         0,
         "floating-point"},
        // No ink is white.
        {"paper.jpg[Q=95]",
         Plain({0, 0, 0, 0}).copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK)),
         {255, 255, 225, 255},
         2,
         "has CMYK colours"},
        {"yellow.tif",
         Plain({0, 0, 255, 0}).copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK)),
         {255, 241, 0, 255},
         6,
         "has CMYK colours"},
    };
    for (const Source& source : sources) {
        SCOPED_TRACE(source.file);
        source.image.write_to_file(Path(source.file).c_str());
        const std::string file = source.file.substr(0, source.file.find('['));
        const Outcome run = Ombrix(Warm({file, "out.png", "--force"}));
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(PixelOf("out.png", 19, 19), IsNear(source.expected, source.tolerance));
        EXPECT_EQ(Read("out.png").bands(), Read(file).has_alpha() ? 4 : 3);
        if (source.note.empty()) {
            EXPECT_EQ(run.err, "");
        } else {
            EXPECT_THAT(run.err, HasSubstr(source.note));
        }
        EXPECT_EQ(Ombrix(Warm({"--quiet", file, "out.png", "--force"})).err, "");
    }
}

TEST_F(PixelsTest, TheSuffixDecidesWhatIsWritten) {
    WriteColour("in.png", {100, 150, 200, 128});
    const Pixel kept{140, 150, 170, 128};
    // 140, 150, 170 on white at 128/255.
    const Pixel onWhite{197, 202, 212, 255};
    struct Target {
        std::string suffix, loader;
        Pixel expected;
        int tolerance;
    };
    for (const Target& target : std::vector<Target>{{"png", "VipsForeignLoadPngFile", kept, 0},
                                                    {"tif", "VipsForeignLoadTiffFile", kept, 0},
                                                    {"TIFF", "VipsForeignLoadTiffFile", kept, 0},
                                                    {"webp", "VipsForeignLoadWebpFile", kept, 4},
                                                    {"v", "VipsForeignLoadVipsFile", kept, 0},
                                                    {"jpg", "VipsForeignLoadJpegFile", onWhite, 2},
                                                    {"ppm", "VipsForeignLoadPpmFile", onWhite, 1}}) {
        SCOPED_TRACE(target.suffix);
        const std::string file = "out." + target.suffix;
        const Outcome run = Ombrix(Warm({"in.png", file}));
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_STREQ(vips_foreign_find_load(Path(file).c_str()), target.loader.c_str());
        EXPECT_THAT(PixelOf(file, 7, 7), IsNear(target.expected, target.tolerance));
        EXPECT_EQ(run.err.find("laid on white") != std::string::npos, target.expected == onWhite) << run.err;
    }
}

TEST_F(PixelsTest, TheOrientationIsTakenIntoThePixels) {
    // Stored as 10 20 30 over 40 50 60.
    std::vector<std::uint8_t> stored = {10, 20, 30, 40, 50, 60};
    const VImage image = VImage::new_from_memory(stored.data(), stored.size(), 3, 2, 1, VIPS_FORMAT_UCHAR);
    const std::vector<std::vector<std::vector<int>>> shown = {
        {{10, 20, 30}, {40, 50, 60}},   {{30, 20, 10}, {60, 50, 40}},   {{60, 50, 40}, {30, 20, 10}},
        {{40, 50, 60}, {10, 20, 30}},   {{10, 40}, {20, 50}, {30, 60}}, {{40, 10}, {50, 20}, {60, 30}},
        {{60, 30}, {50, 20}, {40, 10}}, {{30, 60}, {20, 50}, {10, 40}}};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        VImage oriented = image.copy();
        oriented.set("orientation", orientation);
        oriented.write_to_file(Path("in.tif").c_str());
        Expect({"apply", "colorfilter", "Red=0", "in.tif", "out.tif", "--force"});
        const VImage out = Read("out.tif");
        const auto& expected = shown[orientation - 1];
        ASSERT_EQ(out.height(), static_cast<int>(expected.size()));
        ASSERT_EQ(out.width(), static_cast<int>(expected[0].size()));
        for (int y = 0; y < out.height(); ++y) {
            for (int x = 0; x < out.width(); ++x) EXPECT_EQ(out.getpoint(x, y)[0], expected[y][x]) << x << "," << y;
        }
        EXPECT_EQ(out.get_int("orientation"), 1);
    }
}

TEST_F(PixelsTest, ColourProfilesAreFollowedToSrgb) {
    // `nudge` shifts the profile's red primary.
    const auto write = [this](const char* name, int nudge, const std::vector<double>& colour) {
        VipsBlob* blob = nullptr;
        ASSERT_EQ(vips_profile_load(name, &blob, nullptr), 0);
        std::size_t size = 0;
        const void* bytes = vips_blob_get(blob, &size);
        std::string profile(static_cast<const char*>(bytes), size);
        vips_area_unref(VIPS_AREA(blob));
        const std::size_t entry = profile.find("rXYZ");
        std::size_t offset = 0;
        for (std::size_t i = 4; i < 8; ++i) offset = offset * 256 + static_cast<std::uint8_t>(profile[entry + i]);
        profile[offset + 11] = static_cast<char>(profile[offset + 11] + nudge);  // low byte of X
        VImage image = Plain(colour).copy();
        vips_image_set_blob_copy(image.get_image(), "icc-profile-data", profile.data(), profile.size());
        image.write_to_file(Path("in.png").c_str());
    };
    write("p3", 0, {100, 150, 200});
    EXPECT_THAT(Ombrix({"apply", "colorfilter", "Red=0", "in.png", "out.png"}).err, HasSubstr("converted to sRGB"));
    // By the primaries: 83.5, 151.7, 204.6.
    EXPECT_THAT(PixelOf("out.png"), IsNear(Pixel{84, 152, 205, 255}, 1));
    // What is written says that it is sRGB.
    VipsBlob* srgb = nullptr;
    ASSERT_EQ(vips_profile_load("srgb", &srgb, nullptr), 0);
    std::size_t expected = 0, actual = 0;
    const void* profile = vips_blob_get(srgb, &expected);
    const VImage out = Read("out.png");
    const void* written = out.get_blob("icc-profile-data", &actual);
    EXPECT_EQ(std::string(static_cast<const char*>(written), actual),
              std::string(static_cast<const char*>(profile), expected));
    vips_area_unref(VIPS_AREA(srgb));

    // A profile close to sRGB changes nothing. A conversion would make green 0.
    write("srgb", 16, {208, 1, 0});
    Expect({"apply", "colorfilter", "Red=0", "in.png", "out.png", "--force"});
    EXPECT_EQ(PixelOf("out.png"), (Pixel{208, 1, 0, 255}));
}

TEST_F(PixelsTest, MetadataIsCarriedAndTheOrientationReset) {
    VImage image = Plain({100, 150, 200}, 30, 20).copy(VImage::option()->set("xres", 11.8)->set("yres", 11.8));
    image.set("exif-ifd0-Artist", "A. Painter (A. Painter, ASCII, 11 components, 11 bytes)");
    image.set("exif-ifd2-FNumber", "56/10 (f/5.6, Rational, 1 components, 8 bytes)");
    std::string xmp = "<x:xmpmeta xmlns:x='adobe:ns:meta/'></x:xmpmeta>";
    image.set("xmp-data", nullptr, xmp.data(), xmp.size());
    image.set("orientation", 6);
    image.write_to_file(Path("in.jpg").c_str());

    for (const char* file : {"out.jpg", "out.png", "out.webp", "out.tif"}) {
        SCOPED_TRACE(file);
        Expect({"apply", "colorfilter", "Red=0", "in.jpg", file});
        const VImage out = Read(file);
        EXPECT_EQ(out.width(), 20);
        EXPECT_EQ(out.get_typeof("orientation") == 0 ? 1 : out.get_int("orientation"), 1);
        std::size_t size = 0;
        const void* carried = out.get_blob("xmp-data", &size);
        EXPECT_THAT(std::string(static_cast<const char*>(carried), size), HasSubstr("xmpmeta"));
        if (std::string(file) != "out.webp") {
            EXPECT_NEAR(out.xres(), 11.8, 0.1);
        }
        if (std::string(file) != "out.tif") {
            EXPECT_THAT(out.get_string("exif-ifd0-Artist"), HasSubstr("A. Painter"));
            EXPECT_THAT(out.get_string("exif-ifd2-FNumber"), HasSubstr("f/5.6"));
            EXPECT_THAT(out.get_string("exif-ifd0-Orientation"), testing::StartsWith("1 "));
        }
    }
}

TEST_F(PixelsTest, QualityReachesTheFile) {
    VImage::gaussnoise(200, 200, VImage::option()->set("mean", 128)->set("sigma", 60))
        .cast(VIPS_FORMAT_UCHAR)
        .write_to_file(Path("noise.png").c_str());
    for (const char* suffix : {".jpg", ".webp"}) {
        const std::string low = std::string("low") + suffix, high = std::string("high") + suffix;
        Expect({"apply", "invert", "noise.png", low, "--quality", "10"});
        Expect({"--quality", "95", "apply", "invert", "noise.png", high});
        EXPECT_LT(fs::file_size(Path(low)) * 2, fs::file_size(Path(high))) << suffix;
    }
}

TEST_F(PixelsTest, MasksWeighTheEffectAndMayBeLarger) {
    WriteColour("in.png", {100, 150, 200}, 20, 20);
    // Black on the left (all of the effect), white on the right (the source times 255/256).
    Plain({0}, 10, 30).join(Plain({255}, 20, 30), VIPS_DIRECTION_HORIZONTAL).write_to_file(Path("mask.png").c_str());
    Expect(Warm({"--mask", "mask.png", "in.png", "out.png"}));
    EXPECT_EQ(PixelOf("out.png", 9, 5), (Pixel{140, 150, 170, 255}));
    EXPECT_EQ(PixelOf("out.png", 10, 5), (Pixel{99, 149, 199, 255}));
    // As a property, as an argument, in place.
    Expect(Warm({"Mask=mask.png", "in.png", "property.png"}));
    Expect({"call", "ColorFilterEffect.Apply", "source=in.png", "red=40", "green=0", "blue=-30", "mask=mask.png",
            "call.png"});
    fs::copy(Path("in.png"), Path("changed.png"));
    Expect(Warm({"--mask", "mask.png", "--in-place", "changed.png"}));
    for (const char* same : {"property.png", "call.png", "changed.png"}) {
        EXPECT_EQ((Read(same) - Read("out.png")).abs().max(), 0) << same;
    }
}

TEST_F(PixelsTest, ChainsKeepPropertiesAndMasksWithTheirEffects) {
    WriteColour("in.png", {100, 150, 200});
    WriteColour("white.png", {255});
    // Only the second effect has the mask: white takes 1 off each channel of (140, 150, 170).
    Expect(Warm({"--then", "ColorFilterEffect", "--mask", "white.png", "Red=100", "--then", "brightness",
                 "BrightnessValue=5", "in.png", "out.png"}));
    EXPECT_EQ(PixelOf("out.png"), (Pixel{144, 154, 174, 255}));

    fs::copy(Path("in.png"), Path("changed.png"));
    Expect(Warm({"--then", "invert", "--in-place", "changed.png"}));
    EXPECT_EQ(PixelOf("changed.png"), (Pixel{115, 105, 85, 255}));
}

TEST_F(PixelsTest, ValuesAreTakenInEveryForm) {
    WriteColour("in.png", {100, 150, 200}, 30, 20);
    WriteColour("fill.png", {50, 60, 70}, 10, 10);
    Expect({"apply", "GRAYSCALEEFFECT", "grayscaletype=ntsc_pal", "in.png", "name.png"});
    // 0.299 x 100 + 0.587 x 150 + 0.114 x 200 = 140.75
    EXPECT_EQ(PixelOf("name.png"), (Pixel{140, 140, 140, 255}));
    Expect({"apply", "blend", "FillPicture=fill.png", "BlendMode=MODE_ADD", "Location=25,-5",
            "Size=4,9223372036854775807", "Opacity=0.5", "in.png", "blend.png"});
    // 150, 210, 255 (limited) after MODE_ADD, then half of it: the opacity weights are 128 of 256 each.
    EXPECT_EQ(PixelOf("blend.png", 25, 4), (Pixel{125, 180, 227, 255}));
    for (const auto& [x, y] : std::vector<std::pair<int, int>>{{24, 4}, {29, 4}, {25, 5}}) {
        EXPECT_EQ(PixelOf("blend.png", x, y), (Pixel{100, 150, 200, 255})) << x << "," << y;
    }
    for (const char* cores : {"1", "3", "8", "auto", "all"}) {
        Expect(Warm({"in.png", "cores.png", "--force", "--cores", cores}));
        EXPECT_EQ(PixelOf("cores.png", 29, 19), (Pixel{140, 150, 170, 255})) << cores;
    }
    fs::copy(Path("in.png"), Path("a=b.png"));
    Expect({"apply", "invert", "./a=b.png", "./c=d.png"});
    EXPECT_EQ(PixelOf("c=d.png"), (Pixel{155, 105, 55, 255}));
    Expect({"apply", "invert", "in.png", "--force", "--", "-out.png"});
    EXPECT_EQ(PixelOf("-out.png"), (Pixel{155, 105, 55, 255}));
}

TEST_F(PixelsTest, CallsGiveFilesOrPrint) {
    WriteColour("in.png", {100, 150, 200, 128});
    Expect({"call", "colorfilter.applyinplace", "SOURCE=in.png", "red=40", "green=0", "blue=-30", "changed.png"});
    EXPECT_EQ(PixelOf("changed.png"), (Pixel{140, 150, 170, 128}));
    // A property, since the method has no such argument.
    Expect({"call", "brightness.apply", "source=in.png", "BrightnessValue=7", "property.png"});
    EXPECT_EQ(PixelOf("property.png"), (Pixel{107, 157, 207, 128}));
    Expect({"call", "OmbrixUtilities.EnsurePictureBits", "src=in.png", "depth=24", "small.tif"});
    EXPECT_EQ(Read("small.tif").bands(), 3);
    EXPECT_EQ(PixelOf("small.tif"), (Pixel{100, 150, 200, 255}));
    // No file has 16 bits: the picture is converted, with 5 bits a channel left.
    Expect({"call", "OmbrixUtilities.EnsurePictureBits", "src=in.png", "depth=16", "coarse.png"});
    EXPECT_THAT(PixelOf("coarse.png"), IsNear(Pixel{100, 150, 200, 255}, 8));
    // One of nine overloads. 471 means that it got the source and no mask.
    const Outcome run =
        Ombrix({"call", "Item.Pick", "value=7", "source=in.png", "--plugin", OMBRIX_BUILD_DIR "/tests/host_probe.so"});
    EXPECT_EQ(run.out, "471\n") << run.err;
}

}  // namespace
}  // namespace ombrix::test
