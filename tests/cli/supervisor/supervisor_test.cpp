// Whatever becomes of the work ends as one sentence with the right culprit, and leaves nothing behind.

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "cli/supervisor/sanitizers.h"
#include "tests/cli/support.h"

namespace ombrix::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using vips::VImage;

constexpr const char* kHostile = OMBRIX_BUILD_DIR "/tests/hostile_effects.so";

class SupervisorTest : public CommandTest {
  protected:
    SupervisorTest() {
        WriteColour("in.png", {100, 150, 200});
        fs::create_directory(Path("temporary"));
        fs::create_directory(Path("written"));
    }

    /// Libraries' temporary files are looked for as well.
    Outcome Run(const std::vector<std::string>& words) const {
        return Ombrix(words, [] { setenv("TMPDIR", "temporary", 1); });
    }

    void ExpectFailure(const std::vector<std::string>& words, const std::string& part) const {
        SCOPED_TRACE(testing::PrintToString(words));
        const auto before = Contents();
        const Outcome run = Run(words);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, StartsWith("ombrix: "));
        EXPECT_THAT(run.err, HasSubstr(part));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_TRUE(Contents() == before);
    }

    static std::vector<std::string> Hostile(const std::string& deed, const std::string& picture) {
        return {"--plugin", kHostile, "apply", "hostile", "Deed=" + deed, picture, "out.png"};
    }

    /// A picture that no encoder makes small.
    static VImage Noise(int side) {
        return VImage::gaussnoise(side, side, VImage::option()->set("mean", 128)->set("sigma", 50))
            .cast(VIPS_FORMAT_UCHAR);
    }
};

TEST_F(SupervisorTest, EffectsThatMisbehave) {
    struct Case {
        const char* deed;
        std::vector<std::string> options;
        const char* part;
    };
    for (const Case& each : std::vector<Case>{
             {"0", {}, "gave no picture and no reason"},
             {"1", {}, "the plug-in of HostileEffect crashed"},
             {"2", {"--limit-time", "0.5"}, "HostileEffect takes longer than the 0.5 seconds that --limit-time allows"},
             {"3", {"--limit-memory", "200M"}, "HostileEffect needs more than the 200 MB of memory"},
             {"4", {}, "HostileEffect gave no picture and no reason"},
             {"5", {}, "HostileEffect made a library end the work"},
             {"6", {}, "the plug-in of HostileEffect crashed (Aborted)"},
             {"7", {}, "HostileEffect gave no picture and no reason"},
             {"8", {}, "the work was killed"},
             {"11", {}, "the plug-in of HostileEffect crashed"},
         }) {
        if (kEmulated && each.deed == std::string("7")) continue;  // the emulator crashes when it is looked at
        std::vector<std::string> words = Hostile(each.deed, "in.png");
        words.insert(words.end(), each.options.begin(), each.options.end());
        ExpectFailure(words, each.part);
    }
}

TEST_F(SupervisorTest, AFileThatShrinksWhileItIsReadIsToBlame) {
    Noise(1000).write_to_file(Path("whole.pgm").c_str());
    fs::rename(Path("whole.pgm"), Path("mapped.ppm"));
    const Outcome run = Run(Hostile("10", "mapped.ppm"));
    EXPECT_EQ(run.err, "ombrix: mapped.ppm was cut short while it was read\n");
}

TEST_F(SupervisorTest, LimitsGoByTheSizeOfTheFile) {
    if (OMBRIX_SANITIZED) GTEST_SKIP() << "sanitizers take any amount of memory, and time";
    ExpectFailure(Hostile("2", "in.png"), "HostileEffect takes longer than 4.5 seconds, too long for files");
    ExpectFailure(Hostile("12", "in.png"), "HostileEffect needs more than the 900 MB of memory");
    // An emulator takes the limit for itself.
    if (!kEmulated) ExpectFailure(Hostile("13", "in.png"), "the plug-in of HostileEffect crashed");
    Noise(2000).write_to_file(Path("large.png").c_str());
    ExpectFailure(Hostile("13", "large.png"), "HostileEffect gave no picture");
}

TEST_F(SupervisorTest, TheWorkEndsWithItsSupervisor) {
    const auto before = Contents();
    EXPECT_EQ(Run({"--plugin", kHostile, "apply", "hostile", "Deed=9", "in.png", "out.png"}).status, -SIGKILL);
    for (int tries = 0; tries < 3000 && !fs::is_empty(Path("temporary")); ++tries) usleep(10'000);
    EXPECT_TRUE(Contents() == before);
}

TEST_F(SupervisorTest, FilesCutShortAreDamagedOrTakenAsFarAsTheyGo) {
    Noise(80).bandjoin({Noise(80), Noise(80)}).write_to_file(Path("whole.png").c_str());
    for (const std::string kind :
         {"png", "jpg", "tif", "webp", "gif", "ppm", "bmp", "jp2", "jxl", "heic", "avif", "v", "hdr", "pfm", "fits"}) {
        SCOPED_TRACE(kind);
        if (kEmulated && kind == "bmp") continue;  // its library looks for its modules past the emulator
        const std::string whole = "written/whole." + kind, cut = "written/cut." + kind;
        VImage picture = VImage::new_from_file(Path("whole.png").c_str());
        if (kind == "hdr" || kind == "pfm") picture = picture.cast(VIPS_FORMAT_FLOAT);
        picture.write_to_file(Path(whole).c_str());
        EXPECT_EQ(Run({"apply", "invert", whole, "whole-out.png", "--force"}).status, 0);
        const std::string bytes = BytesOf(Path(whole));
        Write(cut, bytes.substr(0, bytes.size() * 3 / 5));
        ExpectFailure({"apply", "invert", cut, "out.png", "--quiet"}, cut + " is damaged");
    }
    // Readers that need no more than the first page do not look at the end.
    VImage pages = Noise(80).bandjoin({Noise(80), Noise(80)});
    pages = pages.join(pages, VIPS_DIRECTION_VERTICAL).copy();
    pages.set(VIPS_META_PAGE_HEIGHT, 80);
    for (const std::string name : {"pages.gif", "pages.webp", "pages.tif", "pages.tif[bigtiff]"}) {
        pages.write_to_file(Path(name).c_str());
        const std::string file = name.substr(0, name.find('['));
        EXPECT_EQ(Run({"apply", "invert", file, "first.jpg", "--force", "--quiet"}).status, 0) << name;
        const std::string bytes = BytesOf(Path(file));
        Write(file, bytes.substr(0, bytes.size() * 17 / 20));
        ExpectFailure({"apply", "invert", file, "out.jpg", "--quiet"}, file + " is damaged");
    }
    const std::string chunks = BytesOf(Path("in.png"));
    Write("no-end.png", chunks.substr(0, chunks.size() - 1));
    ExpectFailure({"apply", "invert", "no-end.png", "out.png"}, "no-end.png is damaged or cut short: its end is");
    // Readers of these fill up what is missing.
    std::string levels = "P3 40 40 255\n";
    for (int i = 0; i < 40 * 40 * 3; ++i) levels += std::to_string(i % 256) + (i % 12 == 11 ? "\n" : " ");
    Write("plain.ppm", levels);
    EXPECT_EQ(Run({"apply", "invert", "plain.ppm", "plain.png"}).status, 0);
    Write("cut.ppm", levels.substr(0, levels.size() * 3 / 5));
    ExpectFailure({"apply", "invert", "cut.ppm", "out.png"}, "cut.ppm is damaged");

    const std::string page =
        "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
        "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 50 50]>>endobj\ntrailer<</Root 1 0 R>>\n";
    Write("whole.pdf", page + "%%EOF\n");
    Write("cut.pdf", page);
    EXPECT_EQ(Run({"apply", "invert", "whole.pdf", "page.png"}).status, 0);
    ExpectFailure({"apply", "invert", "cut.pdf", "out.png"}, "cut.pdf is damaged");
    Write("cut.pdf", "%PDF-1.4\n4 0 obj<</Linearized 1/L 999>>endobj\n" + page.substr(9) + "%%EOF\n");
    ExpectFailure({"apply", "invert", "cut.pdf", "out.png"}, "cut.pdf is damaged");

    std::string sgi("\1\xda\0\1\0\3\0\x28\0\x28\0\3\0\0\0\0\0\0\0\xff", 20);
    sgi.resize(512);
    sgi.append(4800, '\x11');
    // A matrix of 40x40 bytes: flags, dimensions, name, numbers.
    std::string matlab = "MATLAB 5.0 MAT-file";
    matlab.resize(124, ' ');
    const auto element = [](char type, const std::string& bytes) {
        const auto low = static_cast<char>(bytes.size() & 255), high = static_cast<char>(bytes.size() >> 8);
        return std::string{type, 0, 0, 0, low, high, 0, 0} + bytes;
    };
    matlab +=
        std::string("\0\1IM", 4) + element(14, element(6, std::string("\x09\0\0\0\0\0\0\0", 8)) +
                                                   element(5, std::string("\x28\0\0\0\x28\0\0\0", 8)) +
                                                   element(1, "picture8") + element(2, std::string(1600, '\x22')));
    for (const auto& [name, bytes] : {std::pair("plain.sgi", sgi), std::pair("plain.mat", matlab)}) {
        if (kEmulated && name == std::string("plain.sgi")) continue;  // as bmp
        Write(name, bytes);
        const Outcome whole = Run({"apply", "invert", name, "all.png", "--all-loaders", "--force"});
        EXPECT_EQ(whole.status, 0) << whole.err;
        Write(name, bytes.substr(0, bytes.size() * 3 / 5));
        ExpectFailure({"apply", "invert", name, "out.png", "--all-loaders"}, std::string(name) + " is damaged");
    }

    for (const char* kind : {"written/cut.png", "written/cut.jpg", "cut.ppm"}) {
        const Outcome run = Run({"apply", "invert", kind, "taken.png", "--allow-damaged", "--force"});
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.err, HasSubstr("note: " + std::string(kind) + " is damaged"));
        EXPECT_GT(Read("taken.png").width(), 0);
    }
    EXPECT_EQ(Run({"apply", "invert", "in.png", "sound.png", "--allow-damaged"}).err, "");
}

TEST_F(SupervisorTest, SmallFilesCostLittle) {
    // 35 bytes for 4 billion pixels.
    Write("huge.gif",
          std::string("GIF89a\xff\xff\xff\xff\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\xff\xff\xff\xff\0\2\2D\1\0;", 35));
    ExpectFailure({"apply", "invert", "huge.gif", "out.png"}, "huge.gif has 65535x65535 pixels");
    ExpectFailure({"apply", "invert", "huge.gif", "out.png", "--max-pixels", "5000000000"},
                  "huge.gif needs more than the 900 MB of memory");
    const std::string svg =
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='3000' "
        "height='3000'><filter id='f' width='1' height='1'><feTurbulence baseFrequency='.1' "
        "numOctaves='9999999'/></filter><rect width='3000' height='3000' filter='url(#f)'/></svg>";
    Write("slow.svg", svg);
    ExpectFailure({"apply", "invert", "slow.svg", "out.png"}, "slow.svg takes longer than 4 seconds to decode");
}

TEST_F(SupervisorTest, OnlyAcceptedKindsAreRead) {
    Write("a.csv", "1,2,3\n4,5,6\n");
    Write("a.png", "1,2,3\n4,5,6\n");
    for (const char* file : {"a.csv", "a.png"}) {
        ExpectFailure({"apply", "invert", file, "out.png"}, "not an image of a kind that can be read; --all-loaders");
    }
    EXPECT_EQ(Run({"apply", "invert", "a.csv", "read.png", "--all-loaders"}).status, 0);
}

TEST_F(SupervisorTest, ADiskThatIsFullIsSaidSo) {
    if (mount("ombrix-test", Path("written").c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "no file system can be mounted";
    }
    Noise(1000).write_to_file(Path("noise.png").c_str());
    for (const char* kind : {"png", "jpg", "tif", "webp", "ppm", "jp2", "jxl", "v", "bmp"}) {
        const Outcome run = Run({"apply", "invert", "noise.png", std::string("written/out.") + kind});
        EXPECT_EQ(run.status, 1) << kind;
        EXPECT_THAT(run.err, HasSubstr("cannot be written: the disk is full"));
        EXPECT_TRUE(fs::is_empty(Path("written"))) << kind;
    }
    umount(Path("written").c_str());
}

TEST_F(SupervisorTest, WhatIsReplacedPassesOnItsRights) {
    WriteColour("old.png", {1, 2, 3});
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(chown(Path("old.png").c_str(), 1234, 2345), 0);
    }
    ASSERT_EQ(chmod(Path("old.png").c_str(), 06754), 0);
    EXPECT_EQ(Run({"apply", "invert", "in.png", "old.png", "--force"}).status, 0);
    struct stat status = {};
    ASSERT_EQ(stat(Path("old.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0754u);
    if (isRoot) {
        EXPECT_EQ(std::pair(status.st_uid, status.st_gid), (std::pair<uid_t, gid_t>(1234, 2345)));
    }
}

TEST_F(SupervisorTest, LinksThatOthersLayAreNotFollowed) {
    if (geteuid() != 0) GTEST_SKIP() << "no file can be another user's";
    fs::create_symlink(Path("in.png"), Path("written/link.png"));
    ASSERT_EQ(lchown(Path("written/link.png").c_str(), 65534, 65534), 0);
    WriteColour("source.png", {1, 2, 3});
    fs::permissions(Path("written"), fs::perms::all | fs::perms::sticky_bit);
    ExpectFailure({"apply", "invert", "source.png", "written/link.png", "--force"}, "is another user's link");
    fs::permissions(Path("written"), fs::perms::owner_all);
    EXPECT_EQ(Run({"apply", "invert", "source.png", "written/link.png", "--force"}).err, "");
}

TEST_F(SupervisorTest, ReadOnlyFilesNeedForce) {
    const auto asNobody = [] {
        setenv("TMPDIR", "temporary", 1);
        if (geteuid() == 0 && setuid(65534) != 0) _exit(125);
    };
    // The command itself must be within the other user's reach.
    if (access(kCommand, X_OK) != 0) GTEST_SKIP();
    for (const char* folder : {"", "temporary", "written"}) fs::permissions(Path(folder), fs::perms::all);
    fs::permissions(Path("in.png"), fs::perms::owner_read | fs::perms::others_read);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(Path("in.png").c_str(), 65534, 65534), 0);
    }
    const Outcome refused = Ombrix({"apply", "invert", "--in-place", "in.png"}, asNobody);
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("in.png is read-only; --force replaces it"));
    EXPECT_EQ(Ombrix({"apply", "invert", "--in-place", "in.png", "--force"}, asNobody).err, "");
    EXPECT_EQ(PixelOf("in.png"), (Pixel{155, 105, 55, 255}));
}

}  // namespace
}  // namespace ombrix::test
