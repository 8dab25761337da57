// What files say of their pictures, from every kind of file to every other.

#include <algorithm>

#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using vips::VImage;

const std::vector<std::string> kKinds = {"jpg", "png", "webp", "tif", "heic", "avif", "jxl", "jp2"};

class MetadataTest : public CommandTest {
  protected:
    std::string ExifTool(std::vector<std::string> words) const {
        words.insert(words.begin(), "exiftool");
        const Outcome run = Finish(StartProgram(words));
        EXPECT_NE(run.status, 127) << "exiftool is not installed";
        return run.out;
    }

    /// A picture with all that its kind of file can hold, by another program.
    void WriteTagged(const std::string& name, int orientation = 1) const {
        WriteColour(name, {200, 100, 50}, 96, 64);
        ExifTool({"-q", "-m", "-overwrite_original", "-EXIF:Artist=A. Painter",
                  "-EXIF:DateTimeOriginal=2020:01:02 03:04:05", "-EXIF:ExifVersion=0231", "-EXIF:OffsetTime=+01:00",
                  "-EXIF:LensModel=A lens", "-EXIF:FNumber=5.6", "-EXIF:GPSLatitude=47.5", "-EXIF:GPSLatitudeRef=N",
                  "-EXIF:ColorSpace=Uncalibrated", "-EXIF:XResolution=300", "-EXIF:YResolution=300",
                  "-EXIF:ResolutionUnit=inches", "-XMP-dc:Title=A title", "-XMP-exif:ColorSpace#=65535",
                  "-EXIF:Orientation#=" + std::to_string(orientation), name});
        if (HoldsIptc(name)) ExifTool({"-q", "-m", "-overwrite_original", "-IPTC:City=Bern", name});
        if (name.ends_with(".jpg")) ExifTool({"-q", "-overwrite_original", "-Comment=A comment", name});
        if (name.ends_with(".png")) ExifTool({"-q", "-overwrite_original", "-PNG:Comment=A comment", name});
    }

    bool Holds(const std::string& name, const std::string& part) const {
        return BytesOf(Path(name)).find(part) != std::string::npos;
    }

    static bool HoldsIptc(const std::string& name) {
        return name.ends_with("jpg") || name.ends_with("png") || name.ends_with("tif") || name.ends_with("jp2");
    }
    static bool HoldsComments(const std::string& name) { return name.ends_with("jpg") || name.ends_with("png"); }

    /// All of it on one line.
    std::string Said(const std::string& name) const {
        return ExifTool({"-m", "-f", "-p",
                         "$EXIF:Artist|$EXIF:DateTimeOriginal|$EXIF:ExifVersion|$EXIF:OffsetTime|$EXIF:LensModel|"
                         "$EXIF:FNumber|$EXIF:GPSLatitude|$EXIF:ColorSpace|$EXIF:XResolution|$EXIF:ResolutionUnit|"
                         "$XMP:Title|$XMP:ColorSpace|$IPTC:City|$Comment",
                         name});
    }

    static std::string Expected(const std::string& from, const std::string& to) {
        return "A. Painter|2020:01:02 03:04:05|0231|+01:00|A lens|5.6|47 deg 30' 0.00\"|sRGB|300|inches|A title|sRGB|" +
               std::string(HoldsIptc(from) && HoldsIptc(to) ? "Bern" : "-") + "|" +
               (HoldsComments(from) && HoldsComments(to) ? "A comment" : "-") + "\n";
    }
};

TEST_F(MetadataTest, EveryKindOfFileKeepsWhatItCanHold) {
    for (const std::string& from : kKinds) {
        WriteTagged("in." + from);
        for (const std::string& to : kKinds) {
            // Every kind that is read, every kind that is written, and the usual way.
            if (from != to && from != "jpg" && to != "jpg") continue;
            SCOPED_TRACE(from + " to " + to);
            const std::string file = "out-" + from + "." + to;
            const Outcome run = Ombrix({"apply", "invert", "in." + from, file});
            ASSERT_EQ(run.status, 0) << run.err;
            EXPECT_EQ(Said(file), Expected(from, to));
            std::vector<std::string> lost;
            if (HoldsIptc(from) && !HoldsIptc(to)) lost.emplace_back("IPTC");
            if (HoldsComments(from) && !HoldsComments(to)) lost.emplace_back("comments");
            EXPECT_EQ(run.err.empty(), lost.empty()) << run.err;
            for (const std::string& each : lost) EXPECT_THAT(run.err, HasSubstr(each));
        }
    }
}

TEST_F(MetadataTest, WhatAFormatCannotHoldIsOneNote) {
    WriteTagged("in.jpg");
    for (const char* file : {"out.gif", "out.ppm"}) {
        const Outcome run = Ombrix({"apply", "invert", "in.jpg", file});
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.err, testing::AllOf(HasSubstr("EXIF"), HasSubstr("IPTC"), HasSubstr("files cannot hold")));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
    // GIF files hold some of it, and pass it on.
    Expect({"apply", "invert", "out.gif", "again.gif"});
    EXPECT_EQ(ExifTool({"-p", "$XMP:Title|$Comment", "again.gif"}), "A title|A comment\n");
}

TEST_F(MetadataTest, StripLeavesNothing) {
    WriteTagged("in.jpg");
    for (const std::string& kind : kKinds) {
        SCOPED_TRACE(kind);
        Expect({"apply", "invert", "--strip", "in.jpg", "out." + kind});
        EXPECT_EQ(ExifTool({"-q", "-p", "$Artist", "-p", "$Title", "-p", "$City", "-p", "$GPSLatitude", "out." + kind}),
                  "");
        EXPECT_FALSE(Holds("out." + kind, "A. Painter"));
        EXPECT_EQ(PixelOf("out." + kind)[3], 255);
    }
}

TEST_F(MetadataTest, TheThumbnailShowsTheResult) {
    WriteTagged("in.jpg", 6);
    WriteColour("old.jpg[Q=95]", {0, 255, 0}, 160, 120);
    ExifTool({"-q", "-overwrite_original", "-ThumbnailImage<=old.jpg", "in.jpg"});
    const std::string old = BytesOf(Path("old.jpg"));
    ASSERT_TRUE(Holds("in.jpg", old.substr(old.size() / 2)));
    for (const std::string& kind : kKinds) {
        SCOPED_TRACE(kind);
        const std::string file = "out." + kind;
        ASSERT_EQ(Ombrix({"apply", "invert", "in.jpg", file}).status, 0);
        // Not a part of the old one is left.
        EXPECT_FALSE(Holds(file, old.substr(old.size() / 2)));
        if (kind == "tif") continue;
        Write("thumbnail.jpg", ExifTool({"-b", "-ThumbnailImage", file}));
        const VImage thumbnail = Read("thumbnail.jpg");
        EXPECT_EQ(thumbnail.width(), 64);
        EXPECT_EQ(thumbnail.height(), 96);
        EXPECT_THAT(PixelOf("thumbnail.jpg", 30, 50), IsNear(Pixel{55, 155, 205, 255}, 4));
        EXPECT_EQ(ExifTool({"-m", "-q", "-p", "${EXIF:Orientation#}", file}), "1\n");
    }
}

TEST_F(MetadataTest, EveryByteOfABlockStays) {
    WriteTagged("in.jpg");
    // A tag that no library knows, and a maker's notes, at an odd length.
    ExifTool({"-q", "-overwrite_original", "-EXIF:UserComment=" + std::string(1001, 'x'), "-EXIF:ImageUniqueID=0123",
              "in.jpg"});
    Expect({"apply", "invert", "in.jpg", "out.jpg"});
    const auto all = [this](const std::string& file) {
        return ExifTool({"-a", "-u", "-G1", "-s", "-EXIF:all", "--ColorSpace", "--Thumbnail*", "--IFD1:all", file});
    };
    EXPECT_EQ(all("out.jpg"), all("in.jpg"));
}

}  // namespace
}  // namespace ombrix::test
