// What only JPEG files have.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/images/metadata.h"

namespace ombrix::cli {

struct JpegHeader {
    std::vector<std::string> comments;
    bool hasMorePictures = false;  ///< behind this one: previews, the other eye, a gain map
    bool hasGainMap = false;
    bool hasExtendedXmp = false;               ///< beyond the block of 64 kB
    std::vector<std::string> unknownSegments;  ///< "APP11"
};

/// Reads a JPEG file up to its pixels. Nothing when it is none.
std::optional<JpegHeader> ReadJpegHeader(const std::filesystem::path& file);

struct JpegQuality {
    int quality = 0;  ///< 1 to 100: the one whose quantisation tables are the nearest
    bool isProgressive = false;
    int chromaAcross = 1, chromaDown = 1;  ///< pixels that share their chroma

    bool HasHalfChroma() const { return chromaAcross == 2 && chromaDown == 2; }   ///< 4:2:0
    bool HasWholeChroma() const { return chromaAcross == 1 && chromaDown == 1; }  ///< 4:4:4
};

/// Nothing when the file is no JPEG file.
std::optional<JpegQuality> ReadJpegQuality(const std::filesystem::path& file);

/// The segments of a JPEG file for Photoshop's blocks and comments, as far as they fit.
struct JpegSegments {
    JpegSegments(const Bytes& resources, const std::vector<Metadata::Comment>& comments);

    Bytes bytes;  ///< of all of them, no more than of one at most; empty when there is nothing to write
    bool losesResources = false;
    bool losesComments = false;
};

}  // namespace ombrix::cli
