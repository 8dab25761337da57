// The gallery shows all that is registered, and its captions are true.

#include <sys/resource.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "tests/cli/gallery/fixture.h"

namespace ombrix::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using vips::VImage;

constexpr const char* kPosterize = OMBRIX_BUILD_DIR "/libposterize.so";
constexpr const char* kOddEffects = OMBRIX_BUILD_DIR "/tests/odd_effects.so";

class GalleryTest : public GalleryFixture {
  protected:
    Page PageOf(std::vector<std::string> words) const {
        words.insert(words.begin(), "gallery");
        words.insert(words.end(), {"-o", "page.html", "--force"});
        Expect(words);
        return Page(BytesOf(Path("page.html")));
    }

    static VImage Decoded(const std::string& uri) {
        const std::string bytes = BytesOfDataUri(uri);
        return VImage::new_from_buffer(bytes.data(), bytes.size(), "").copy_memory();
    }

    static double Difference(const VImage& a, const VImage& b) { return (a - b).abs().avg(); }
};

TEST_F(GalleryTest, ShowsEveryEffectAndEachOfItsConstants) {
    const Page page = PageOf({"photo.jpg", "--fill", "texture.png", "--plugin", kPosterize});
    std::vector<std::string> effects, constants, shown;
    std::istringstream list(Ombrix({"list", "--plugin", kPosterize}).out);
    std::smatch found;
    for (std::string line, effect; std::getline(list, line);) {
        if (std::regex_match(line, found, std::regex("(class|module) (\\w+).*"))) effect = "";
        if (std::regex_match(line, found, std::regex("class (\\w+).* implements .*IGraphicsEffect\\b.*"))) {
            effects.push_back(effect = found[1]);
        }
        if (!effect.empty() && std::regex_match(line, found, std::regex("  constant  \\w+\\.(\\w+) = .*"))) {
            constants.push_back(found[1]);
        }
    }
    for (const Element& heading : page.All("h2")) shown.push_back(heading.text);
    EXPECT_THAT(effects, Contains("PosterizeEffect"));
    EXPECT_THAT(shown, IsSupersetOf(effects));
    EXPECT_GE(constants.size(), 28u);
    const std::vector<std::string> titles = page.Texts("title");
    for (const std::string& constant : constants) {
        EXPECT_THAT(titles, Contains(testing::EndsWith("=" + constant))) << constant;
    }
    // The number of tasks does not change pictures.
    EXPECT_THAT(titles, Each(Not(HasSubstr("Multiprocessing"))));
    // Every effect has a mask or a fill mask.
    EXPECT_EQ(std::count_if(titles.begin(), titles.end(),
                            [](const std::string& title) { return title.ends_with("Mask=vignette.svg"); }),
              2 * static_cast<int>(effects.size()));
}

TEST_F(GalleryTest, CommandLinesMakeThePicturesAboveThem) {
    // Both shells and HTML need it quoted.
    const std::string photo = "it's \"<a>\" & $HOME.jpg";
    fs::rename(Path("photo.jpg"), Path(photo));
    const Page page = PageOf({photo, "--fill", "texture.png", "--plugin", kPosterize, "--quality", "100"});
    const std::vector<Element>& elements = page.Elements();
    const auto isMask = [](const Element& element) { return element.Has("download", "vignette.svg"); };
    const auto mask = std::find_if(elements.begin(), elements.end(), isMask);
    ASSERT_NE(mask, elements.end());
    Write("vignette.svg", BytesOfDataUri(mask->attributes.at("href")));

    const auto isView = [](const Element& element) { return element.Has("class", "view"); };
    auto element = std::find_if(elements.begin(), elements.end(), isView);
    std::set<std::string> commands;
    std::string picture;
    int compared = 0;
    for (; element != elements.end(); ++element) {
        if (element->name == "img") picture = element->attributes.at("src");
        if (!element->Has("class", "command")) continue;
        const std::string& command = element->text;
        ASSERT_THAT(command, testing::StartsWith(kCommand));
        EXPECT_TRUE(commands.insert(command.substr(command.rfind("'it"))).second) << "the file of two: " << command;
        // Each command is a process, so a third of the plain ones must do.
        const bool isSpecial = command.find("Mask=") != std::string::npos || command.find(',') != std::string::npos;
        if (commands.size() % 3 != 0 && !isSpecial) continue;
        const auto before = Contents();
        const Outcome run = Finish(StartProgram({"sh", "-c", command + " --quality 100"}));
        EXPECT_EQ(run.status, 0) << command << '\n' << run.err;
        for (const auto& [file, bytes] : Contents()) {
            if (before.count(file)) continue;
            EXPECT_LT(Difference(Read(file), Decoded(picture)), 1) << command;
            ++compared;
        }
    }
    EXPECT_GT(compared, 25);
}

TEST_F(GalleryTest, ThePageStandsByItself) {
    PageOf({"photo.jpg", "--fill", "texture.png"});
    const std::string html = BytesOf(Path("page.html"));
    const Page page(html);
    EXPECT_THAT(html, AllOf(Not(HasSubstr("http")), Not(HasSubstr("<script")), Not(HasSubstr("url("))));
    EXPECT_TRUE(page.All("html").front().Has("lang", "en"));

    std::set<std::string> places;
    for (const Element& element : page.Elements()) {
        if (!element.attributes.count("id")) continue;
        EXPECT_TRUE(places.insert(element.attributes.at("id")).second);
    }
    for (const Element& link : page.All("a")) {
        const std::string& target = link.attributes.at("href");
        EXPECT_TRUE(target.starts_with("data:") || places.count(target.substr(1))) << target;
    }
    const std::vector<Element> images = page.All("img");
    EXPECT_EQ(images.size() % 2, 0u);  // each small and large
    for (const Element& image : images) {
        const VImage decoded = Decoded(image.attributes.at("src"));
        EXPECT_EQ(image.attributes.at("width"), std::to_string(decoded.width()));
        EXPECT_EQ(image.attributes.at("height"), std::to_string(decoded.height()));
        EXPECT_GT(image.attributes.at("alt").size(), 15u);
    }
}

TEST_F(GalleryTest, PicturesAreNotLargerThanAsked) {
    Scene(400, 900, 3).write_to_file(Path("tall.png").c_str());
    const Page page = PageOf({"tall.png", "--size", "90"});
    for (const Element& image : page.All("img")) EXPECT_LE(std::stoi(image.attributes.at("height")), 90);
    // Command lines are for the picture at full size.
    EXPECT_THAT(page.Texts("command"), Contains(HasSubstr("Location=100,225 ")));
}

TEST_F(GalleryTest, UnusualPicturesCanBeSeen) {
    // All of a very wide picture would be a line.
    Scene(1500, 20, 3).write_to_file(Path("wide.png").c_str());
    const Element card = PageOf({"wide.png"}).All("img").front();
    EXPECT_EQ(std::stoi(card.attributes.at("width")), 4 * std::stoi(card.attributes.at("height")));
    // White on white would not be seen.
    Plain({255, 255, 255, 0}, 64, 64).write_to_file(Path("nothing.png").c_str());
    const VImage shown = Decoded(PageOf({"nothing.png"}).All("img").front().attributes.at("src"));
    EXPECT_GT(shown.max() - shown.min(), 20);
}

TEST_F(GalleryTest, FindsOutWhatUnknownEffectsTakeAndNeed) {
    const Page page = PageOf({"photo.jpg", "--plugin", kOddEffects});
    std::vector<std::string> odd;
    for (const std::string& command : page.Texts("command")) {
        const std::size_t effect = command.find(" N");  // all begin so
        if (effect != std::string::npos) odd.push_back(command.substr(effect + 1));
    }
    std::sort(odd.begin(), odd.end());
    odd.erase(std::unique(odd.begin(), odd.end()), odd.end());
    EXPECT_THAT(odd, AllOf(Contains(HasSubstr("NarrowEffect Strength=33 ")), Contains(HasSubstr("Kind=KIND_PLAIN ")),
                           Contains(HasSubstr("Kind=KIND_REVERSED ")), Contains(HasSubstr("Coarse=true ")),
                           Contains("NeedyEffect Over=photo.jpg photo.jpg photo-needy.jpg")));
    // Neither pictures that change nothing, nor constants of another property.
    EXPECT_THAT(odd, AllOf(Each(Not(HasSubstr("Aside="))), Each(Not(HasSubstr("Strength=KIND")))));

    EXPECT_THAT(page.Texts("facts"),
                Contains(AllOf(HasSubstr("Strength Integer, 33 to 47"), HasSubstr("Kind Integer, 2 constants"))));
    EXPECT_THAT(page.Texts("facts"), Contains(HasSubstr("SepiaValue Integer, 10 to 55")));
    std::string about;
    for (const Element& paragraph : page.All("p")) about += paragraph.text + "\n";
    EXPECT_THAT(about, AllOf(HasSubstr("No picture came from StubbornEffect"), HasSubstr("No fill was given")));
}

TEST_F(GalleryTest, TheSheetHoldsThePicturesAsTheyAre) {
    WriteColour("plain.png", {12, 200, 34}, 60, 40);
    Expect({"gallery", "photo.jpg", "--fill", "plain.png", "--sheet", "sheet.png"});
    const VImage sheet = Read("sheet.png");
    EXPECT_EQ(Contents().size(), 4u);  // no page
    const VImage matches = (sheet == std::vector<double>{12, 200, 34}).bandand();
    EXPECT_GE(matches.avg() / 255 * sheet.width() * sheet.height(), 60 * 40);
    EXPECT_GT(sheet.width(), 5 * 150);
}

TEST_F(GalleryTest, MistakesGetASentenceAndLeaveEverythingAsItWas) {
    WriteColour("small.png", {0, 0, 0}, 10, 10);
    Write("old.html", "mine");
    Write("broken.png", "nothing like a picture");
    const auto before = Contents();
    const struct {
        std::vector<std::string> words;
        int status;
        std::string message;
    } cases[] = {
        {{}, 2, "gallery shows one picture, and was given none"},
        {{"photo.jpg", "texture.png", "-o", "page.html"}, 2, "one picture, and was given photo.jpg and texture.png"},
        {{"photo.jpg"}, 2, "-o gallery.html"},
        {{"photo.jpg", "-o", "page.png"}, 2, "ends with .html"},
        {{"photo.jpg", "--sheet", "sheet.html"}, 2, "unknown suffix"},
        {{"photo.jpg", "-o", "page.html", "--size", "9"}, 2, "from 64 to 8192"},
        {{"photo.jpg", "-o", "page.html", "--fil", "texture.png"}, 2, "did you mean"},
        {{"photo.jpg", "--sheet", "photo.jpg", "--force"}, 2, "cannot be the output"},
        {{"photo.jpg", "-o", "old.html"}, 1, "old.html exists; --force replaces it"},
        {{"photo.jpg", "-o", "page.html", "--sheet", "texture.png"}, 1, "texture.png exists"},
        {{"missing.jpg", "-o", "page.html"}, 1, "there is no file missing.jpg"},
        {{"photo.jpg", "-o", "page.html", "--fill", "broken.png"}, 1, "broken.png"},
        {{"photo.jpg", "-o", "page.html", "--mask", "small.png"},
         1,
         "the mask small.png is 10x10, smaller than the picture"},
        {{"photo.jpg", "-o", "nowhere/page.html"}, 1, "nowhere"},
    };
    for (const auto& [words, status, message] : cases) {
        SCOPED_TRACE(testing::PrintToString(words));
        std::vector<std::string> all{"gallery"};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome run = Ombrix(all);
        EXPECT_THAT(run.err, HasSubstr(message));
        EXPECT_EQ(run.status, status);
        ExpectSentence(run);
        EXPECT_TRUE(Contents() == before);
    }
}

TEST_F(GalleryTest, AFullDiskAtTheSecondFileLeavesNeither) {
    const auto before = Contents();
    const std::vector<std::string> words = {"gallery", "photo.jpg", "-o", "page.html", "--sheet", "sheet.ppm"};
    // Enough for the page, but not for the sheet, which is not compressed.
    const auto limit = [] {
        const rlimit bytes{2'500'000, 2'500'000};
        setrlimit(RLIMIT_FSIZE, &bytes);
    };
    const Outcome run = Ombrix(words, limit);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("sheet.ppm"));
    EXPECT_TRUE(Contents() == before);
    Expect(words);
    EXPECT_LT(fs::file_size(Path("page.html")), 2'500'000u);
}

}  // namespace
}  // namespace ombrix::test
