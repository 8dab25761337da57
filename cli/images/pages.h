// Pages of documents and frames of animations, which libvips stacks into one image.
#pragma once

#include <optional>
#include <string_view>
#include <vips/vips8>

namespace ombrix::cli {

/// What a user wants of a file.
struct WantedPages {
    std::optional<int> one;  ///< from 1
    bool all = false;        ///< rather than the first, when none is named
    int shrink = 1;          ///< 2, 4 or 8: may be so many times smaller, where that is faster
};

/// What to open of a file.
struct Pages {
    int first = 0;  ///< from 0
    bool all = false;
    int shrink = 1;  ///< of readers that can
};

/// How many pages the file of an image has. Smaller versions of one picture do not count.
int PageCount(const vips::VImage& image);

/// Whether a file that libvips' writer makes can have pages.
bool HoldsPages(std::string_view writer);

/// Rows of one page of a stack.
int PageHeight(const vips::VImage& image);

/// The same pixels as a single page.
vips::VImage AsOnePage(const vips::VImage& image);

/// The same pixels as a stack that goes on as `like` does, with pages of `pageHeight` rows.
vips::VImage AsPagesOf(const vips::VImage& image, const vips::VImage& like, int pageHeight);

/// Turns each page by the image's EXIF orientation. Needs random access.
vips::VImage Upright(const vips::VImage& image);

}  // namespace ombrix::cli
