#include "cli/images/standard_input.h"

#include <unistd.h>

#include <system_error>

#include "cli/failure.h"
#include "cli/images/unnamed_file.h"

namespace ombrix::cli {

namespace {

constexpr const char* kName = "standard input";
int kept = -1;  // what was read of it; open until the process ends

void Keep() {
    if (isatty(STDIN_FILENO) != 0) throw UsageError("standard input is a terminal; pipe an image into it");
    kept = MakeUnnamedFile();
    try {
        CopyAll(STDIN_FILENO, kept);
    } catch (const std::system_error& failure) {
        throw WorkError(std::string(kName) + " cannot be read (" + failure.code().message() + ")");
    }
}

}  // namespace

std::filesystem::path InputFile(const std::string& word) {
    if (word != "-") return word;
    if (kept < 0) Keep();
    return kName;
}

std::filesystem::path NameToOpen(const std::filesystem::path& file) {
    if (kept < 0 || file != kName) return file;
    return "/proc/self/fd/" + std::to_string(kept);
}

}  // namespace ombrix::cli
