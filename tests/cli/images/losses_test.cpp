// What a result does not have of its source: a note for another file, and a refusal in place.

#include <algorithm>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

class LossesTest : public CommandTest {
  protected:
    /// Puts a segment behind the first two bytes of a JPEG file.
    void AddSegment(const std::string& name, char marker, const std::string& data) const {
        const std::size_t size = data.size() + 2;
        Write(name,
              BytesOf(Path(name))
                  .insert(2, std::string{'\xff', marker, static_cast<char>(size / 256), static_cast<char>(size % 256)} +
                                 data));
    }

    void WriteWithProfile(const std::string& name, const char* profile) const {
        VipsBlob* blob = nullptr;
        ASSERT_EQ(vips_profile_load(profile, &blob, nullptr), 0);
        VImage image = Plain({100, 150, 200}).copy();
        std::size_t size = 0;
        const void* bytes = vips_blob_get(blob, &size);
        vips_image_set_blob_copy(image.get_image(), VIPS_META_ICC_NAME, bytes, size);
        vips_area_unref(VIPS_AREA(blob));
        image.write_to_file(Path(name).c_str());
    }
};

TEST_F(LossesTest, AreRefusedInPlaceAndNotedElsewhere) {
    (Plain({100, 150, 200}) * 257)
        .cast(VIPS_FORMAT_USHORT)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16))
        .write_to_file(Path("deep.png").c_str());
    Plain({0, 0, 255, 0})
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_CMYK))
        .write_to_file(Path("ink.tif").c_str());
    WriteWithProfile("wide.png", "p3");
    WriteColour("hdr.jpg", {100, 150, 200});
    AddSegment("hdr.jpg", '\xe2', std::string("urn:iso:std:iso:ts:21496:-1\0\0\0\0", 32));
    WriteColour("pair.jpg", {100, 150, 200});
    AddSegment("pair.jpg", '\xe2', std::string("MPF\0MM\0*\0\0\0\x08\0\0", 14));
    WriteColour("signed.jpg", {100, 150, 200});
    AddSegment("signed.jpg", '\xeb', "JP\0\0");
    WriteColour("moving.png", {100, 150, 200});
    Write("moving.png", BytesOf(Path("moving.png"))
                            .insert(33, std::string("\0\0\0\x08"
                                                    "acTL\0\0\0\x02\0\0\0\0\xf3\x8d\x93\x70",
                                                    20)));
    WriteColour("clear.png", {100, 150, 200, 128});
    fs::rename(Path("clear.png"), Path("clear.jpg"));

    struct Case {
        std::string file, what;
    };
    for (const Case& loss : std::vector<Case>{{"deep.png", "16 bits a channel"},
                                              {"ink.tif", "CMYK colours"},
                                              {"wide.png", "colour profile \"sP3C\""},
                                              {"hdr.jpg", "gain map"},
                                              {"pair.jpg", "further pictures"},
                                              {"signed.jpg", "APP11 block"},
                                              {"moving.png", "animation"},
                                              {"clear.jpg", "transparen"}}) {
        SCOPED_TRACE(loss.file);
        const auto before = Contents();
        const Outcome refused = Ombrix({"apply", "invert", "--in-place", loss.file});
        EXPECT_EQ(refused.status, 1);
        EXPECT_THAT(refused.err, HasSubstr(loss.file + " would lose its "));
        EXPECT_THAT(refused.err, HasSubstr(loss.what));
        EXPECT_THAT(refused.err, HasSubstr("--force accepts that"));
        EXPECT_EQ(std::count(refused.err.begin(), refused.err.end(), '\n'), 1) << refused.err;
        EXPECT_TRUE(Contents() == before);

        const Outcome noted =
            Ombrix({"apply", "invert", loss.file, "out" + fs::path(loss.file).extension().string(), "--force"});
        EXPECT_EQ(noted.status, 0);
        EXPECT_THAT(noted.err, HasSubstr(loss.what));
        EXPECT_EQ(Ombrix({"apply", "invert", "--in-place", "--force", loss.file}).status, 0);
        EXPECT_TRUE(BytesOf(Path(loss.file)) != before.at(loss.file));
    }
}

TEST_F(LossesTest, FilesThatLoseNothingAreChangedInSilence) {
    WriteWithProfile("srgb.png", "srgb");
    WriteColour("plain.jpg", {100, 150, 200});
    WriteColour("grey.tif", {100});
    for (const char* file : {"srgb.png", "plain.jpg", "grey.tif"}) Expect({"apply", "invert", "--in-place", file});
}

}  // namespace
}  // namespace ombrix::test
