// The gallery before its layout.
#pragma once

#include <string>
#include <vector>
#include <vips/vips8>

#include "cli/gallery/plan.h"
#include "cli/gallery/request.h"
#include "cli/gallery/scene.h"
#include "cli/session.h"

namespace ombrix::cli {

/// A JPEG file.
struct EncodedPicture {
    int width;
    int height;
    std::string bytes;
};

/// A picture with its texts, in valid UTF-8.
struct Exhibit {
    std::string title;        ///< such as "BlendMode=MODE_OVERLAY Opacity=0.5"
    std::string description;  ///< for those who cannot see it
    std::string command;      ///< what makes it; empty for the given pictures
    EncodedPicture view;      ///< large
    EncodedPicture thumbnail;
    vips::VImage cell;  ///< for the contact sheet: red, green, blue
};

struct Chapter {
    std::string title;   ///< a class
    std::string origin;  ///< superclass, interfaces, plug-in
    std::vector<PropertyFact> facts;
    std::vector<Exhibit> exhibits;
};

struct GalleryContent {
    std::string title;
    std::vector<std::string> about;  ///< whole sentences
    std::vector<Exhibit> given;      ///< the picture, then fill and mask
    std::string drawnMask;           ///< an SVG file for people to save; empty when a mask was given
    std::string drawnMaskName;
    std::vector<Chapter> chapters;
};

/// Tries all effects on the pictures. A vips::VError when one cannot be encoded.
GalleryContent MakeContent(Session& session, const GalleryRequest& request, const Originals& originals);

}  // namespace ombrix::cli
