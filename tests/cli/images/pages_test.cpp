// Frames of animations and pages of documents: all are worked on where the output can hold them, and nothing is lost in
// place without leave.

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using vips::VImage;

class PagesTest : public CommandTest {
  protected:
    static constexpr int kWidth = 24, kHeight = 17;

    /// Each page has a colour of its own, and a dot at its top left.
    static VImage Page(int index) {
        const VImage page = Plain({40.0 * index, 200 - 30.0 * index, 90}, kWidth, kHeight).copy_memory();
        page.draw_rect({255, 255, 255}, 0, 0, 3, 2);
        return page;
    }
    static VImage Stack(int count) {
        std::vector<VImage> pages;
        for (int i = 0; i < count; ++i) pages.push_back(Page(i));
        VImage stack = VImage::arrayjoin(pages, VImage::option()->set("across", 1));
        stack.set(VIPS_META_PAGE_HEIGHT, kHeight);
        return stack;
    }
    /// 3 frames. The name may end with options of the writer.
    void WriteAnimation(const std::string& name) const {
        VImage stack = Stack(3);
        stack.set("delay", std::vector<int>{100, 50, 70});
        stack.set("loop", 2);
        stack.write_to_file(Path(name).c_str());
    }
    VImage ReadAll(const std::string& name) const {
        return VImage::new_from_file(Path(name).c_str(), VImage::option()->set("n", -1));
    }
    static double Difference(const VImage& one, const VImage& other) {
        return (one.extract_band(0, VImage::option()->set("n", 3)) - other).abs().max();
    }
};

TEST_F(PagesTest, AnAnimationStaysOne) {
    WriteAnimation("in.gif");
    WriteAnimation("in.webp[lossless]");
    for (const std::string input : {"in.gif", "in.webp"}) {
        for (const std::string output : {"out.gif", "out.webp", "out.tif", "out.v"}) {
            SCOPED_TRACE(input + " to " + output);
            Expect({"apply", "invert", input, output, "--force"});
            VImage out = output == "out.v" ? Read(output) : ReadAll(output);
            ASSERT_EQ(out.height(), 3 * kHeight);
            EXPECT_EQ(vips_image_get_page_height(out.get_image()), kHeight);
            if (output == "out.webp") {
                EXPECT_LT((out.extract_band(0, VImage::option()->set("n", 3)) - Stack(3).invert()).abs().avg(), 8);
            } else {
                EXPECT_EQ(Difference(out, Stack(3).invert()), 0);
            }
            if (output == "out.tif") continue;
            EXPECT_EQ(out.get_array_int("delay"), (std::vector<int>{100, 50, 70}));
            EXPECT_EQ(out.get_int("loop"), 2);
        }
    }
}

TEST_F(PagesTest, EachPageIsAPictureOfItsOwn) {
    WriteAnimation("in.gif");
    // A fill lies on every page, at the same place.
    WriteColour("fill.png", {1, 2, 3}, 5, 4);
    VImage expected = Stack(3).copy_memory();
    for (int i = 0; i < 3; ++i)
        expected.draw_rect({1, 2, 3}, 4, i * kHeight + 3, 5, 4, VImage::option()->set("fill", true));
    Expect({"apply", "blend", "FillPicture=fill.png", "Location=4,3", "in.gif", "out.tif"});
    EXPECT_EQ(Difference(ReadAll("out.tif"), expected), 0);
    // An effect that gets whole pictures, here one that adds their height to all channels.
    Expect({"--plugin", OMBRIX_BUILD_DIR "/tests/odd_effects.so", "apply", "size", "in.gif", "whole.tif"});
    const VImage whole = ReadAll("whole.tif");
    ASSERT_EQ(whole.height(), 3 * kHeight);
    EXPECT_EQ(vips_image_get_page_height(whole.get_image()), kHeight);
    for (int i = 0; i < 3; ++i) {
        Page(i).write_to_file(Path("page.png").c_str());
        Expect(
            {"--plugin", OMBRIX_BUILD_DIR "/tests/odd_effects.so", "apply", "size", "page.png", "one.png", "--force"});
        EXPECT_EQ(Difference(whole.extract_area(0, i * kHeight, kWidth, kHeight), Read("one.png")), 0);
    }
}

TEST_F(PagesTest, PagesTurnOneByOne) {
    VImage stack = Stack(2);
    stack.set(VIPS_META_ORIENTATION, 6);
    stack.write_to_file(Path("in.tif").c_str());
    Expect({"apply", "invert", "in.tif", "out.tif"});
    const VImage out = ReadAll("out.tif");
    ASSERT_EQ(vips_image_get_page_height(out.get_image()), kWidth);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Difference(out.extract_area(0, i * kWidth, kHeight, kWidth), Page(i).rot90().invert()), 0) << i;
    }
}

TEST_F(PagesTest, OnePageCanBeNamed) {
    WriteAnimation("in.gif");
    Expect({"apply", "invert", "--page", "1", "in.gif", "first.gif", "--quiet"});
    const Outcome third = Ombrix({"apply", "invert", "--page", "3", "in.gif", "third.gif"});
    EXPECT_EQ(third.status, 0);
    EXPECT_THAT(third.err, HasSubstr("in.gif has 3 pages; page 3 is used"));
    for (const auto& [file, page] : std::vector<std::pair<std::string, int>>{{"first.gif", 0}, {"third.gif", 2}}) {
        const VImage out = ReadAll(file);
        ASSERT_EQ(out.height(), kHeight);
        EXPECT_EQ(Difference(out, Page(page).invert()), 0);
    }
    const Outcome none = Ombrix({"apply", "invert", "--page", "4", "in.gif", "out.gif"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "ombrix: in.gif has 3 pages, so there is no page 4\n");
    EXPECT_EQ(Ombrix({"apply", "invert", "--page", "0", "in.gif", "out.gif"}).status, 2);

    const Outcome still = Ombrix({"apply", "invert", "in.gif", "out.png"});
    EXPECT_EQ(still.status, 0);
    EXPECT_THAT(still.err, HasSubstr("in.gif has 3 pages; the first is used, and --page takes another"));
    EXPECT_EQ(Difference(Read("out.png"), Page(0).invert()), 0);
}

TEST_F(PagesTest, NothingIsLostInPlaceWithoutLeave) {
    WriteAnimation("in.gif");
    (Page(0).cast(VIPS_FORMAT_USHORT) * 257)
        .cast(VIPS_FORMAT_USHORT)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16))
        .write_to_file(Path("deep.png").c_str());
    struct {
        std::vector<std::string> words;
        std::string file, lost;
    } const kCases[] = {
        {{"--page", "2"}, "in.gif", "all pages but page 2"},
        {{}, "deep.png", "its depth of 16 bits a channel"},
    };
    for (const auto& [words, file, lost] : kCases) {
        const auto before = Contents();
        std::vector<std::string> all = {"apply", "invert", "--in-place", file};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome refused = Ombrix(all);
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.err, "ombrix: " + file + " would lose " + lost + "; --force accepts that\n");
        EXPECT_EQ(Contents(), before);
        all.push_back("--force");
        EXPECT_EQ(Ombrix(all).status, 0);
        EXPECT_NE(Contents(), before);
    }
    // All frames are kept, so this loses nothing.
    WriteAnimation("in.gif");
    Expect({"apply", "invert", "--in-place", "in.gif"});
    EXPECT_EQ(Difference(ReadAll("in.gif"), Stack(3).invert()), 0);
}

}  // namespace
}  // namespace ombrix::test
