#include "tests/cli/support.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace ombrix::test {

using vips::VImage;

namespace {

class ImageLibrary : public testing::Environment {
  public:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("cli_tests"), 0);
        // Tests rewrite files under the same names.
        vips_cache_set_max(0);
    }
    void TearDown() override { vips_shutdown(); }
};
const auto* const kImageLibrary = testing::AddGlobalTestEnvironment(new ImageLibrary);

fs::path NewFolder(const char* kind) {
    std::string name = (fs::temp_directory_path() / ("ombrix-" + std::string(kind) + "-XXXXXX")).string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test can be made");
    return name;
}

void RedirectTo(const fs::path& file, int descriptor) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
}

}  // namespace

std::string BytesOf(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

CommandTest::CommandTest() : folder_(NewFolder("files")), log_(NewFolder("log")) {}

CommandTest::~CommandTest() {
    fs::remove_all(folder_);
    fs::remove_all(log_);
}

pid_t CommandTest::Start(const std::vector<std::string>& words, const std::function<void()>& prepare) const {
    std::vector<std::string> all{kCommand};
    all.insert(all.end(), words.begin(), words.end());
    return StartProgram(std::move(all), prepare);
}

pid_t CommandTest::StartProgram(std::vector<std::string> words, const std::function<void()>& prepare) const {
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        if (chdir(folder_.c_str()) != 0) _exit(126);
        RedirectTo(log_ / "out", STDOUT_FILENO);
        RedirectTo(log_ / "err", STDERR_FILENO);
        if (prepare) prepare();
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    return child;
}

Outcome CommandTest::Finish(pid_t child) const {
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), BytesOf(log_ / "out"), BytesOf(log_ / "err")};
}

void CommandTest::Expect(const std::vector<std::string>& words) const {
    const Outcome run = Ombrix(words);
    EXPECT_EQ(run.status, 0) << testing::PrintToString(words);
    EXPECT_EQ(run.err, "") << testing::PrintToString(words);
}

void CommandTest::ExpectSentence(const Outcome& run) {
    EXPECT_THAT(run.err, testing::StartsWith("ombrix: "));
    const std::string rest = run.err.substr(std::min(run.err.find('\n') + 1, run.err.size()));
    EXPECT_TRUE(rest.empty() || (run.status == 2 && rest.starts_with("Usage:\n  ombrix "))) << run.err;
}

VImage CommandTest::Plain(const std::vector<double>& levels, int width, int height) {
    const auto bands = static_cast<int>(levels.size());
    return (VImage::black(width, height, VImage::option()->set("bands", bands)) + levels)
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", bands < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
}

void CommandTest::WriteColour(const std::string& name, const std::vector<double>& levels, int width, int height) const {
    Plain(levels, width, height).write_to_file(Path(name).c_str());
}

void CommandTest::Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
}

VImage CommandTest::Read(const std::string& name) const { return VImage::new_from_file(Path(name).c_str()); }

Pixel CommandTest::PixelOf(const std::string& name, int x, int y) const {
    std::vector<double> levels = Read(name).getpoint(x, y);
    if (levels.size() < 3) levels.insert(levels.begin(), 2, levels.front());
    Pixel pixel{0, 0, 0, 255};
    for (std::size_t i = 0; i < levels.size() && i < pixel.size(); ++i) pixel[i] = static_cast<int>(levels[i]);
    return pixel;
}

std::map<std::string, std::string> CommandTest::Contents() const {
    std::map<std::string, std::string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
        contents[entry.path().lexically_relative(folder_)] = entry.is_regular_file() ? BytesOf(entry.path()) : "";
    }
    return contents;
}

}  // namespace ombrix::test
