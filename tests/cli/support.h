// Running the built command as a user does, on files in a folder of its own.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>
#include <vips/vips8>

namespace ombrix::test {

namespace fs = std::filesystem;

/// The built command.
inline constexpr const char* kCommand = OMBRIX_BUILD_DIR "/ombrix";

/// What became of a run of the command.
struct Outcome {
    int status = 0;  ///< exit status, or minus the signal that ended the process
    std::string out;
    std::string err;
};

/// Red, green, blue, alpha.
using Pixel = std::array<int, 4>;

/// A new folder, in which the command is run and which goes away with the test. Files are named relative to it.
class CommandTest : public testing::Test {
  protected:
    CommandTest();
    ~CommandTest() override;

    fs::path Path(const std::string& name) const { return folder_ / name; }

    /// Starts a program, which is looked for where the system has its programs, as Start does the command.
    pid_t StartProgram(std::vector<std::string> words, const std::function<void()>& prepare = {}) const;
    /// Starts the command; its output goes to files outside the folder. `prepare` runs in the child just before.
    pid_t Start(const std::vector<std::string>& words, const std::function<void()>& prepare = {}) const;
    Outcome Finish(pid_t child) const;
    Outcome Ombrix(const std::vector<std::string>& words, const std::function<void()>& prepare = {}) const {
        return Finish(Start(words, prepare));
    }
    /// Runs the command and expects it to succeed without a word on standard error.
    void Expect(const std::vector<std::string>& words) const;

    /// An image of one colour with 8 bits a channel and as many channels as levels.
    static vips::VImage Plain(const std::vector<double>& levels, int width = 20, int height = 20);
    /// A file with a picture of one colour; its kind goes by the suffix.
    void WriteColour(const std::string& name, const std::vector<double>& levels, int width = 20, int height = 20) const;
    void Write(const std::string& name, const std::string& bytes) const;

    vips::VImage Read(const std::string& name) const;
    Pixel PixelOf(const std::string& name, int x = 0, int y = 0) const;

    /// Every file of the folder with its bytes: what a failing command must leave as it is.
    std::map<std::string, std::string> Contents() const;

  private:
    fs::path folder_;
    fs::path log_;
};

std::string BytesOf(const fs::path& file);

/// Each channel within `tolerance` of what is expected.
MATCHER_P2(IsNear, pixel, tolerance, "is near " + testing::PrintToString(pixel)) {
    for (std::size_t i = 0; i < pixel.size(); ++i) {
        if (std::abs(arg[i] - pixel[i]) > tolerance) return false;
    }
    return true;
}

}  // namespace ombrix::test
