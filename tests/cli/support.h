// Runs the built command as a user does.
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

inline constexpr const char* kCommand = OMBRIX_COMMAND;

/// Whether the command runs on a processor that is not the machine's.
#ifdef OMBRIX_EMULATED
inline constexpr bool kEmulated = true;
#else
inline constexpr bool kEmulated = false;
#endif

/// The result of running a program.
struct Outcome {
    int status = 0;  ///< exit status, or minus the signal that ended it
    std::string out;
    std::string err;
};

/// Red, green, blue, alpha.
using Pixel = std::array<int, 4>;

/// A new folder, which goes away with the test. The command runs in it, and file names are relative to it.
class CommandTest : public testing::Test {
  protected:
    CommandTest();
    ~CommandTest() override;

    fs::path Path(const std::string& name) const { return folder_ / name; }

    /// Starts a program from PATH, as Start does the command.
    pid_t StartProgram(std::vector<std::string> words, const std::function<void()>& prepare = {}) const;
    /// Starts the command with its output in files elsewhere. `prepare` runs in the child just before.
    pid_t Start(const std::vector<std::string>& words, const std::function<void()>& prepare = {}) const;
    Outcome Finish(pid_t child) const;
    Outcome Ombrix(const std::vector<std::string>& words, const std::function<void()>& prepare = {}) const {
        return Finish(Start(words, prepare));
    }
    /// Expects success and nothing on standard error.
    void Expect(const std::vector<std::string>& words) const;

    /// Expects one sentence on standard error. A wrong command line may show the usage of its subcommand as well.
    static void ExpectSentence(const Outcome& run);

    /// One colour, with 8 bits a channel and a channel for each level.
    static vips::VImage Plain(const std::vector<double>& levels, int width = 20, int height = 20);
    /// The suffix decides the kind of file.
    void WriteColour(const std::string& name, const std::vector<double>& levels, int width = 20, int height = 20) const;
    void Write(const std::string& name, const std::string& bytes) const;

    vips::VImage Read(const std::string& name) const;
    Pixel PixelOf(const std::string& name, int x = 0, int y = 0) const;

    /// All files with their bytes.
    std::map<std::string, std::string> Contents() const;

  private:
    fs::path folder_;
    fs::path log_;
};

std::string BytesOf(const fs::path& file);

/// No channel is more than `tolerance` away.
MATCHER_P2(IsNear, pixel, tolerance, "is near " + testing::PrintToString(pixel)) {
    for (std::size_t i = 0; i < pixel.size(); ++i) {
        if (std::abs(arg[i] - pixel[i]) > tolerance) return false;
    }
    return true;
}

}  // namespace ombrix::test
