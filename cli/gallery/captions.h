// Texts about the pictures: titles, descriptions, command lines.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "cli/gallery/plan.h"
#include "cli/gallery/request.h"
#include "cli/gallery/scene.h"
#include "cli/session.h"

namespace ombrix::cli {

/// What command lines call the drawn mask, which the page offers under this name.
inline constexpr const char* kDrawnMaskName = "vignette.svg";

/// A file's name in valid UTF-8.
std::string Displayed(const std::filesystem::path& file);

class Captions {
  public:
    /// The size is that of the original picture. The references must outlive this.
    Captions(const Session& session, const GalleryRequest& request, int width, int height)
        : session_(session), request_(request), width_(width), height_(height) {}

    std::string Title(const host::ClassInfo& type, const Shot& shot) const;
    std::string Description(const host::ClassInfo& type, const Shot& shot) const;
    /// The command that makes the picture, for the shell and folder in which the gallery was made. No two write the
    /// same file.
    std::string CommandLine(const host::ClassInfo& type, const Shot& shot);

  private:
    std::filesystem::path FileOf(Role role) const;
    std::string Text(const SceneSetting& setting) const;
    std::vector<std::filesystem::path> PluginsOf(const host::ClassInfo& type) const;
    std::string OutputName(const host::ClassInfo& type, const Shot& shot);

    const Session& session_;
    const GalleryRequest& request_;
    const int width_;
    const int height_;
    std::set<std::string> outputs_;
};

}  // namespace ombrix::cli
