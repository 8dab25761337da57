// What the gallery says about its pictures: titles, descriptions, and the command lines that make them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "cli/gallery_plan.h"
#include "cli/gallery_scene.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The name of the drawn mask in command lines: the page offers it under this name.
inline constexpr const char* kDrawnMaskName = "vignette.svg";

/// A file's name as valid UTF-8, for people to read.
std::string Displayed(const std::filesystem::path& file);

class Captions {
  public:
    /// `width` and `height` are those of the picture as it was given. All references must outlive this.
    Captions(const Session& session, const GalleryCommand& command, int width, int height)
        : session_(session), command_(command), width_(width), height_(height) {}

    std::string Title(const host::ClassInfo& type, const Shot& shot) const;
    std::string Description(const host::ClassInfo& type, const Shot& shot) const;
    /// Ready to be pasted into a shell in the folder that the gallery's own command line was given in. No two of them
    /// write to the same file.
    std::string CommandLine(const host::ClassInfo& type, const Shot& shot);

  private:
    std::filesystem::path FileOf(Role role) const;
    std::string Text(const SceneSetting& setting) const;
    std::vector<std::filesystem::path> PluginsOf(const host::ClassInfo& type) const;
    std::string OutputName(const host::ClassInfo& type, const Shot& shot);

    const Session& session_;
    const GalleryCommand& command_;
    const int width_;
    const int height_;
    std::set<std::string> outputs_;
};

}  // namespace ombrix::cli
