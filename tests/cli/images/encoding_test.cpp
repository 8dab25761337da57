// How files are written: options of the writers and quality.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

class EncodingTest : public CommandTest {
  protected:
    EncodingTest() {
        const VImage noise = VImage::gaussnoise(200, 100, VImage::option()->set("mean", 128)->set("sigma", 20));
        VImage::bandjoin({noise, VImage::grey(200, 100) * 255, VImage::black(200, 100)})
            .cast(VIPS_FORMAT_UCHAR)
            .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
            .write_to_file(Path("in.png").c_str());
    }

    std::string QuantisationTables(const std::string& name) const {
        constexpr std::size_t kSegment = 2 + 2 + 65;  // marker, length, table
        const std::string bytes = BytesOf(Path(name));
        std::string tables;
        for (std::size_t at = 0; (at = bytes.find(std::string("\xff\xdb\0\x43", 4), at)) != std::string::npos;
             at += kSegment) {
            tables += bytes.substr(at, kSegment);
        }
        return tables;
    }

    /// The greatest difference to the inverted input.
    double Difference(const std::string& name) const { return (Read(name) - Read("in.png").invert()).abs().max(); }
};

TEST_F(EncodingTest, OptionsReachTheWriter) {
    for (const char* lossless : {"out.webp[lossless]", "out.avif[lossless=true]", "out.jxl[lossless,effort=3]",
                                 "out.jp2[lossless=true]", "out.tif[compression=deflate,predictor=horizontal]"}) {
        SCOPED_TRACE(lossless);
        Expect({"apply", "invert", "in.png", lossless});
        // libheif's way to colour differences takes one step of a channel.
        const std::string file = std::string(lossless).substr(0, std::string(lossless).find('['));
        EXPECT_LE(Difference(file), file == "out.avif" ? 3 : 0);
    }
    Expect({"apply", "invert", "in.png", "plain.tif"});
    EXPECT_LT(fs::file_size(Path("out.tif")), fs::file_size(Path("plain.tif")));

    Expect({"apply", "invert", "in.png", "chroma.jpg[subsample-mode=on,interlace]", "--quality", "95"});
    EXPECT_STREQ(Read("chroma.jpg").get_string("jpeg-chroma-subsample"), "4:2:0");
    EXPECT_EQ(Read("chroma.jpg").get_int("interlaced"), 1);
    Expect({"apply", "invert", "in.png", "low.jpg[Q=5]"});
    EXPECT_LT(fs::file_size(Path("low.jpg")) * 2, fs::file_size(Path("chroma.jpg")));
}

TEST_F(EncodingTest, KeptQualityIsThatOfTheFile) {
    for (const char* options :
         {"[Q=77,subsample-mode=on]", "[Q=95,subsample-mode=on,interlace]", "[Q=40,subsample-mode=off]"}) {
        SCOPED_TRACE(options);
        Read("in.png").write_to_file((Path("source.jpg").string() + options).c_str());
        Expect({"apply", "invert", "source.jpg", "out.jpg", "--quality", "keep", "--force"});
        const VImage source = Read("source.jpg"), out = Read("out.jpg");
        EXPECT_STREQ(out.get_string("jpeg-chroma-subsample"), source.get_string("jpeg-chroma-subsample"));
        EXPECT_EQ(out.get_typeof("interlaced"), source.get_typeof("interlaced"));
        EXPECT_EQ(QuantisationTables("out.jpg"), QuantisationTables("source.jpg"));
    }
    EXPECT_THAT(Ombrix({"apply", "invert", "in.png", "other.jpg", "--quality", "keep"}).err, HasSubstr("no JPEG file"));
    const Outcome wrong = Ombrix({"apply", "invert", "source.jpg", "out.webp", "--quality", "keep"});
    EXPECT_EQ(wrong.status, 2);
    EXPECT_THAT(wrong.err, HasSubstr("--quality keep is for .jpg"));
}

TEST_F(EncodingTest, ChromaThatCannotBeKeptLosesNothing) {
    Expect({"apply", "invert", "in.png", "source.jpg[subsample-mode=off]"});
    std::string bytes = BytesOf(Path("source.jpg"));
    // The luma's sampling factors in the frame header, which follow its marker, length, depth, sides and count.
    const std::size_t frame = bytes.find(std::string("\xff\xc0\0\x11", 4));
    ASSERT_NE(frame, std::string::npos);
    bytes[frame + 11] = 0x21;
    Write("source.jpg", bytes);
    const Outcome run = Ombrix({"apply", "invert", "source.jpg", "out.jpg", "--quality", "keep", "--allow-damaged"});
    EXPECT_THAT(run.err, HasSubstr("2x1 pixels of source.jpg share their chroma"));
    EXPECT_STREQ(Read("out.jpg").get_string("jpeg-chroma-subsample"), "4:4:4");
}

TEST_F(EncodingTest, LosslessFilesStaySoInPlace) {
    struct Case {
        const char* name;
        const char* lossless;
        double tolerance = 0;
        const char* note = "";
    };
    const VImage rgba = Read("in.png").bandjoin(Read("in.png")[0]);
    rgba.write_to_file(Path("alpha.png").c_str());
    for (const char* source : {"in.png", "alpha.png"}) {
        for (const Case& each :
             {Case{"in.webp", "lossless"}, Case{"in.jxl", "lossless,effort=3"}, Case{"in.jp2", "lossless"},
              Case{"in.avif", "lossless,subsample-mode=off", 3, "may be lossless"},
              Case{"in.heic", "lossless,subsample-mode=off", 3, "may be lossless"}}) {
            SCOPED_TRACE(std::string(source) + " " + each.name);
            const std::string file = Path(each.name);
            Read(source).write_to_file((file + "[" + each.lossless + "]").c_str());
            const Outcome run = Ombrix({"invert", "--in-place", each.name});
            EXPECT_EQ(run.status, 0) << run.err;
            EXPECT_THAT(run.err, HasSubstr(each.note));
            EXPECT_LE(
                (Read(each.name).extract_band(0, VImage::option()->set("n", 3)) - Read("in.png").invert()).abs().max(),
                each.tolerance);
            const auto size = fs::file_size(file);

            Read(source).write_to_file((file + "[Q=70]").c_str());
            Expect({"invert", "--in-place", each.name});
            EXPECT_LT(fs::file_size(file), size);
        }
    }
    fs::copy_file(Path("in.png"), Path("png.jpg"));
    EXPECT_THAT(Ombrix({"invert", "--in-place", "png.jpg"}).err, HasSubstr("would lose its exact pixels"));
}

TEST_F(EncodingTest, WrongOptionsAreFoundBeforeTheWork) {
    Write("broken.png", "not read");
    struct Case {
        std::vector<std::string> output;
        std::string message;
    };
    for (const Case& wrong : std::vector<Case>{
             {{"out.tif[compresion=deflate]"}, "did you mean \"compression\""},
             {{"out.tif[compression=zip]"}, "is one of none, jpeg, deflate"},
             {{"out.jpg[Q=101]"}, "Q of out.jpg is a whole number from 1 to 100, not \"101\""},
             {{"out.jpg[Q=high]"}, "a whole number from 1 to 100"},
             {{"out.jpg[Q]"}, "a whole number"},
             {{"out.jpg[Q=5,Q=6]"}, "given twice"},
             {{"out.jpg[Q=5]", "--quality", "6"}, "give one of them"},
             {{"out.jpg[interlace=perhaps]"}, "true or false"},
             {{"out.png[compression=10]"}, "from 0 to 9"},
             {{"out.png[dither=2]"}, "a number from 0 to 1"},
             {{"out.png[filter=best]"}, "filter"},
             {{"out.png[target=x]"}, "no option \"target\""},
             {{"out.png[in=x]"}, "no option \"in\""},
             {{"out.png", "--quality", "50"}, "--quality means nothing for .png"},
             {{"out.xyz[Q=5]"}, ".xyz is an unknown suffix"},
         }) {
        SCOPED_TRACE(wrong.output.front());
        std::vector<std::string> words = {"apply", "invert", "broken.png"};
        words.insert(words.end(), wrong.output.begin(), wrong.output.end());
        const Outcome run = Ombrix(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, HasSubstr(wrong.message));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

}  // namespace
}  // namespace ombrix::test
