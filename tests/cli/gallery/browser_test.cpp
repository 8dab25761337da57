// The gallery in a real browser, on windows of three widths.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <regex>
#include <thread>

#include "tests/cli/gallery/fixture.h"

namespace ombrix::test {
namespace {

/// Added to a copy of the page: writes what the browser makes of it into the title of the page around it.
constexpr const char* kProbe = R"(<script>
addEventListener('load', () => {
  const images = [...document.images];
  const wrong = images.filter(image => !image.complete || image.naturalWidth === 0 ||
    image.naturalWidth !== Number(image.getAttribute('width')) ||
    image.naturalHeight !== Number(image.getAttribute('height')));
  const overflow = document.scrollingElement.scrollWidth - innerWidth;
  const small = [...document.querySelectorAll('.grid img')];
  const unseen = small.filter(image => image.getBoundingClientRect().width < 100);
  const open = [...document.querySelectorAll('.view')].filter(view => getComputedStyle(view).display !== 'none').length;

  location.hash = '#view-7';
  const box = document.querySelector('#view-7 img').getBoundingClientRect();
  const covers = getComputedStyle(document.getElementById('view-7')).position === 'fixed' &&
    document.elementFromPoint(innerWidth / 2, innerHeight / 2).closest('#view-7') !== null;
  const inside = box.width > 100 && box.left >= 0 && box.top >= 0 && box.right <= innerWidth &&
    box.bottom <= innerHeight;
  parent.document.title = [innerWidth, images.length, wrong.length, overflow, unseen.length, open,
    covers && inside].join(' ');
});
</script>)";

class GalleryBrowserTest : public GalleryFixture {
  protected:
    static bool HasBrowser() { return std::system("command -v chromium > /dev/null 2>&1") == 0; }

    /// The page's document at a width; the browser's log is in `err`.
    Outcome Load(const std::string& page, int width) const {
        // Windows are never as narrow as a phone, but frames can be.
        Write("frame.html", "<!DOCTYPE html><title></title><iframe src=\"" + page + "\" width=\"" +
                                std::to_string(width) + "\" height=\"900\" style=\"border: 0\"></iframe>");
        const pid_t browser =
            StartProgram({"chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
                          "--disable-dev-shm-usage", "--no-first-run", "--disable-background-networking",
                          "--disable-component-update", "--disable-sync", "--user-data-dir=" + Path("profile").string(),
                          "--enable-logging=stderr", "--hide-scrollbars", "--window-size=1500,1000",
                          "--allow-file-access-from-files", "--dump-dom", "file://" + Path("frame.html").string()},
                         [] { setpgid(0, 0); });
        setpgid(browser, browser);
        // Ends a browser that hangs, with its children.
        std::thread limit([browser] {
            for (int tenths = 0; tenths < 1200 && kill(browser, 0) == 0; ++tenths) {
                siginfo_t ended = {};
                if (waitid(P_PID, static_cast<id_t>(browser), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                    ended.si_pid == browser) {
                    return;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
            kill(-browser, SIGKILL);
        });
        limit.join();
        return Finish(browser);
    }
};

TEST_F(GalleryBrowserTest, EveryPictureIsThereAtEveryWidth) {
    if (!HasBrowser()) {
        ASSERT_EQ(std::getenv("OMBRIX_BROWSER_NEEDED"), nullptr) << "chromium is not installed";
        GTEST_SKIP() << "chromium is not installed; ./check installs it";
    }
    Scene(600, 400, 1).write_to_file(Path("photo.jpg").c_str());
    Expect({"gallery", "photo.jpg", "--fill", "texture.png", "-o", "page.html"});
    std::string html = BytesOf(Path("page.html"));
    const std::size_t images = Page(html).All("img").size();
    html.insert(html.rfind("</body>"), kProbe);
    Write("probed.html", html);

    for (const int width : {390, 820, 1440}) {
        SCOPED_TRACE(width);
        const Outcome run = Load("probed.html", width);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.err, testing::Not(testing::HasSubstr("CONSOLE")));
        std::smatch found;
        const std::regex facts("<title>(\\d+) (\\d+) (\\d+) (-?\\d+) (\\d+) (\\d+) (true|false)</title>");
        ASSERT_TRUE(std::regex_search(run.out, found, facts)) << run.out.substr(0, 500) << run.err;
        EXPECT_EQ(std::stoi(found[1]), width);
        EXPECT_EQ(std::stoul(found[2]), images);
        EXPECT_EQ(found[3], "0") << "pictures without their natural size";
        EXPECT_LE(std::stoi(found[4]), 0) << "the page is wider than the window";
        EXPECT_EQ(found[5], "0") << "pictures too small to see";
        EXPECT_EQ(found[6], "0") << "views open before one is asked for";
        EXPECT_EQ(found[7], "true") << "an open view does not fill the window";
    }
}

}  // namespace
}  // namespace ombrix::test
