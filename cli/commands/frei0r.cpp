// ombrix frei0r: the effects as plug-ins for programs that load frei0r's.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <system_error>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/images/output_file.h"
#include "cli/options.h"
#include "ombrix/host.h"

namespace ombrix::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kHelp =
    R"(Makes frei0r plug-ins, a file for each effect, which ffmpeg, GStreamer, MLT and the editors on it load.

Examples:
  ombrix frei0r -o ~/.frei0r-1/lib
  ombrix frei0r --plugin my_effects.so -o ~/.frei0r-1/lib

With --plugin it makes those of that plug-in alone. The folder notes where plug-ins lie that are not installed.)";

constexpr const char* kUsage = R"(  ombrix frei0r [--plugin FILE ...] -o DIR)";

const Command::About kAbout = {"frei0r", "Make plug-ins for video programs", {kHelp, kUsage}};

constexpr const char* kNotes = "ombrix-plugins.txt";

/// The file that each of them is a copy of.
fs::path Original() {
    for (const fs::path& folder : host::Host::OwnFolders()) {
        for (const char* place : {"ombrix-frei0r.so", "ombrix/ombrix-frei0r.so"}) {
            std::error_code error;
            if (fs::exists(folder / place, error)) return folder / place;
        }
    }
    throw WorkError("the bridge to frei0r is not installed; the package frei0r-plugins-ombrix has it");
}

std::string BytesOf(const fs::path& file) {
    std::ostringstream bytes;
    const std::ifstream stream(file, std::ios::binary);
    bytes << stream.rdbuf();
    if (!stream || !bytes) throw WorkError(file.string() + " cannot be read");
    return bytes.str();
}

class Frei0r : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override {
        app.add_option("words", words_)->group("");
        app.add_option("-o,--output", folder_, "Folder for the plug-ins; made where there is none")->type_name("DIR");
    }

    void Check() override {
        if (!words_.empty()) throw UsageError("frei0r takes options alone, not \"" + words_.front() + "\"");
        if (folder_.empty()) throw UsageError("frei0r needs a folder for the plug-ins: -o DIR");
    }

    void Run(Session& session) override {
        const std::string library = BytesOf(Original());
        std::error_code error;
        fs::create_directories(folder_, error);
        if (error) throw WorkError("the folder " + folder_ + " cannot be made: " + error.message());
        const Replace replace = session.options.force ? Replace::Anything : Replace::Nothing;
        std::vector<std::unique_ptr<OutputFile>> files;
        const auto write = [&](const std::string& name, const std::string& bytes) {
            files.push_back(std::make_unique<OutputFile>(fs::path(folder_) / name, replace));
            files.back()->Create();
            files.back()->Write(bytes);
        };
        for (const catalogue::Effect& effect : session.catalogue.Effects()) {
            if (IsWanted(session, effect)) write("ombrix_" + effect.Word() + ".so", library);
        }
        std::string notes;
        for (const fs::path& plugin : session.options.plugins) notes += fs::canonical(plugin).string() + "\n";
        if (!notes.empty()) write(kNotes, notes);
        for (const auto& file : files) file->Commit();
    }

  private:
    /// Without --plugin, all.
    static bool IsWanted(const Session& session, const catalogue::Effect& effect) {
        const auto& plugins = session.options.plugins;
        return plugins.empty() || std::ranges::any_of(plugins, [&](const fs::path& plugin) {
                   std::error_code error;
                   return fs::equivalent(plugin, effect.Type().plugin, error);
               });
    }

    std::vector<std::string> words_;
    std::string folder_;
};

}  // namespace

std::unique_ptr<Command> MakeFrei0r() { return std::make_unique<Frei0r>(); }

}  // namespace ombrix::cli
