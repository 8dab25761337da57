// From image files to pictures.
#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>
#include <vips/vips8>

#include "cli/console.h"
#include "cli/failure.h"
#include "cli/images/losses.h"
#include "cli/images/metadata.h"
#include "cli/images/pages.h"
#include "cli/session.h"
#include "ombrix/host.h"

namespace ombrix::cli {

/// What an image file holds beside its colours.
struct ImageOrigin {
    bool hasAlpha = false;  ///< without alpha, all pixels are opaque
    Metadata metadata;
};

/// An image whose pixels are decoded when they are asked for, from top to bottom.
struct OpenedImage {
    std::filesystem::path file;
    vips::VImage image;  ///< 8 bits a channel: red, green, blue and perhaps alpha
    int pageHeight = 0;  ///< rows of one page or frame; they are stacked
    ImageOrigin origin;
};

struct ReadPicture {
    host::Picture picture;  ///< 32 bits: alpha, red, green, blue
    ImageOrigin origin;
};

/// A WorkError when the file is missing, empty or cannot be an image. Cheap enough to find mistakes before the work
/// begins.
void CheckImageFile(const std::filesystem::path& file);

/// Decodes all of an image for nothing but to see whether it can be. A WorkError when it cannot.
void CheckWholeImage(const std::filesystem::path& file);

/// Opens an image of an accepted kind: upright (the EXIF orientation is applied), in sRGB. Of pages that have several
/// sizes it opens the first, unless one is named. Tells `losses` when the file has deeper channels or more pages. A
/// WorkError when the file is missing, empty, damaged or no image, has no such page, or has more pixels than the
/// options or its size allow.
OpenedImage OpenImage(Session& session, const std::filesystem::path& file, const WantedPages& wanted, Losses& losses);

/// Width and height of the first page, upright. A WorkError when the file is no image.
std::pair<int, int> SizeOf(const std::filesystem::path& file);

/// The first page of a mask, a fill and the like.
OpenedImage OpenImage(Session& session, const std::filesystem::path& file);

/// For pixels that could not be decoded. Takes the library's message.
WorkError DamagedFile(const std::filesystem::path& file);

/// Whether any pixel of an image with alpha is not opaque. Decodes it until one is found. A WorkError when it cannot.
bool IsTransparent(const std::filesystem::path& file);

/// Decodes an opened image. A WorkError when it cannot.
ReadPicture Decoded(Session& session, const OpenedImage& image);

/// Opens an image and decodes it.
ReadPicture ReadImage(Session& session, const std::filesystem::path& file);

/// A new picture from an image of 3 or 4 bands (red, green, blue, alpha) of 8 bits. Reports progress to the console.
/// A vips::VError when pixels cannot be decoded.
host::Picture PictureOf(host::Host& host, const vips::VImage& image, Console& console);

/// libvips' last error on one line, without the name of the part that reports it. Clears it.
std::string TakeLibraryMessage();

}  // namespace ombrix::cli
