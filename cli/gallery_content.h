// The finished gallery, before it is laid out as a page or as a sheet.
#pragma once

#include <string>
#include <vector>
#include <vips/vips8>

#include "cli/gallery_plan.h"

namespace ombrix::cli {

/// A picture as the bytes of a JPEG file.
struct EncodedPicture {
    int width;
    int height;
    std::string bytes;
};

/// One picture with all that is said about it. All texts are valid UTF-8.
struct Exhibit {
    std::string title;        ///< what sets it apart in its chapter: "BlendMode=MODE_OVERLAY Opacity=0.5"
    std::string description;  ///< what is to be seen, for those who cannot see it
    std::string command;      ///< the command line that makes it; empty for the pictures that were given
    EncodedPicture view;      ///< for looking at it by itself
    EncodedPicture thumbnail;
    vips::VImage cell;  ///< for the contact sheet: red, green, blue
};

struct Chapter {
    std::string title;   ///< the class
    std::string origin;  ///< what it derives from, and the plug-in file
    std::vector<PropertyFact> facts;
    std::vector<Exhibit> exhibits;
};

struct GalleryContent {
    std::string title;
    std::vector<std::string> about;  ///< sentences on what was given and what is shown
    std::vector<Exhibit> given;      ///< the picture first, then its companions
    std::string drawnMask;           ///< an SVG file to be saved under drawnMaskName; empty when a mask was given
    std::string drawnMaskName;
    std::vector<Chapter> chapters;
};

}  // namespace ombrix::cli
