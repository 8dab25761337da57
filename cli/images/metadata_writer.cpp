#include "cli/images/metadata_writer.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "cli/images/boxes.h"
#include "cli/images/gif_blocks.h"
#include "cli/images/image_watch.h"
#include "cli/images/jpeg_file.h"
#include "cli/images/mapped_file.h"
#include "cli/images/png_text.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr int kUpright = 1;
constexpr std::size_t kMostThumbnail = 12'000;  // bytes
constexpr std::size_t kLeastThumbnail = 1024;
constexpr std::size_t kMostXmpInJpeg = 60'000;  // bytes that libvips writes
constexpr std::size_t kSegmentHeader = 4;       // bytes of a JPEG file's marker and length

void SetBlob(const VImage& image, const char* field, const Bytes& bytes) {
    vips_image_set_blob_copy(image.get_image(), field, bytes.data(), bytes.size());
}

}  // namespace

VImage MetadataWriter::Attach(const VImage& image) {
    VImage result = WithoutMetadata(image);
    if (encoding_.strip) return result;
    result = result.copy(VImage::option()->set("xres", metadata_.xResolution)->set("yres", metadata_.yResolution));
    if (!metadata_.resolutionUnit.empty()) {
        result.set(VIPS_META_RESOLUTION_UNIT, metadata_.resolutionUnit.c_str());
    }
    result.set(VIPS_META_ORIENTATION, kUpright);
    // For the block that libvips makes where there is none.
    if (encoding_.format.kind != FileKind::Vips) result.set("exif-ifd2-ColorSpace", "1");
    if (!metadata_.xmp.empty()) AttachXmp(result);
    AttachTexts(result);
    const FileKind kind = encoding_.format.kind;
    // Some kinds of files have their resolution there alone.
    const bool isInExif = kind == FileKind::WebP || kind == FileKind::Heif || kind == FileKind::Jxl;
    const bool hasResolution = metadata_.xResolution != 1 || metadata_.yResolution != 1;
    if (!metadata_.exif.empty() || !chunks_.empty() || (isInExif && hasResolution)) AttachExif(result);
    return result;
}

void MetadataWriter::AttachExif(VImage& image) {
    const int height = image.get_typeof(VIPS_META_PAGE_HEIGHT) != 0 ? image.get_int(VIPS_META_PAGE_HEIGHT) : 0;
    const ExifPicture picture{image.width(), height > 0 ? height : image.height(), metadata_.xResolution,
                              metadata_.yResolution};
    exif_ = ExifFor(metadata_.exif.empty() ? UprightExif() : metadata_.exif, picture);
    switch (encoding_.format.kind) {
        case FileKind::Jpeg:
        case FileKind::Png:
        case FileKind::WebP:
        case FileKind::Heif: {
            const std::size_t most = encoding_.format.kind == FileKind::Jpeg ? kMostExifInJpeg : SIZE_MAX;
            if (exif_.size() > most) break;
            std::size_t size = exif_.size() + chunks_.size();
            const std::size_t left = most - exif_.size();
            if (HasThumbnail(metadata_.exif) && left > kThumbnailFields + kLeastThumbnail) {
                WatchForThumbnail(image, picture, std::min(kMostThumbnail, left - kThumbnailFields));
                size += kThumbnailFields + thumbnailSize_;
            }
            room_.emplace(size);
            room_->ReserveIn(image);
            return;
        }
        case FileKind::Jxl:
        case FileKind::Jp2:
            if (HasThumbnail(metadata_.exif)) WatchForThumbnail(image, picture, kMostThumbnail);
            return;
        case FileKind::Tiff:
            return;
        case FileKind::Vips:
            return SetBlob(image, VIPS_META_EXIF_NAME, exif_);
        default:
            break;
    }
    exif_.clear();
    if (SaysSomething(metadata_.exif)) lost_.emplace_back("EXIF");
}

void MetadataWriter::WatchForThumbnail(VImage& image, const ExifPicture& picture, std::size_t size) {
    thumbnailSize_ = size;
    thumbnail_.emplace(picture.width, picture.height);
    look_ = [this](VipsRegion* part) { thumbnail_->Add(part); };
    image = Watched(image, look_);
}

void MetadataWriter::AttachXmp(const VImage& image) {
    const Bytes xmp = XmpFor(metadata_.xmp);
    const FileKind kind = encoding_.format.kind;
    if (kind == FileKind::Other || (kind == FileKind::Jpeg && xmp.size() > kMostXmpInJpeg)) {
        lost_.emplace_back("XMP");
    } else if (kind == FileKind::Png) {
        chunks_ = PngText({}, xmp, {});
    } else if (kind == FileKind::Jxl || kind == FileKind::Jp2 || kind == FileKind::Gif) {
        xmp_ = xmp;
    } else {
        SetBlob(image, VIPS_META_XMP_NAME, xmp);
    }
}

void MetadataWriter::AttachTexts(const VImage& image) {
    const Bytes& resources = metadata_.resources;
    const Bytes iptc = IptcAmong(resources);
    const bool hasComments = !metadata_.comments.empty();
    bool losesIptc = false, losesComments = false;
    switch (encoding_.format.kind) {
        case FileKind::Jpeg: {
            const JpegSegments segments(resources, metadata_.comments);
            losesIptc = segments.losesResources;
            losesComments = segments.losesComments;
            segments_ = segments.bytes;
            if (segments_.empty()) break;
            // Fill bytes may stand before a marker.
            const std::size_t least = MarkedRoom::kShortest + kSegmentHeader;
            if (segments_.size() < least) segments_.insert(segments_.begin(), least - segments_.size(), 0xff);
            segmentRoom_.emplace(segments_.size() - kSegmentHeader);
            SetBlob(image, VIPS_META_IPTC_NAME, segmentRoom_->Mark());
            break;
        }
        case FileKind::Png: {
            const Bytes text = PngText(metadata_.comments, {}, resources);
            chunks_.insert(chunks_.end(), text.begin(), text.end());
            break;
        }
        case FileKind::Tiff:
            if (!resources.empty()) SetBlob(image, VIPS_META_PHOTOSHOP_NAME, resources);
            if (!iptc.empty()) SetBlob(image, VIPS_META_IPTC_NAME, iptc);
            losesComments = hasComments;
            break;
        case FileKind::Vips:
            if (!resources.empty()) SetBlob(image, VIPS_META_IPTC_NAME, ResourcesInJpeg(resources));
            losesComments = hasComments;
            break;
        case FileKind::Gif:
            losesIptc = !iptc.empty();
            break;
        case FileKind::Jp2:
            losesComments = hasComments;
            break;
        default:
            // What else programs keep beside IPTC describes their own work.
            losesIptc = !iptc.empty();
            losesComments = hasComments;
    }
    if (losesIptc) lost_.emplace_back("IPTC");
    if (losesComments) lost_.emplace_back("comments");
}

bool MetadataWriter::FillSegments(int descriptor) const {
    const MappedFile file(descriptor);
    const auto mark = segmentRoom_->FindIn(file.Bytes());
    if (!mark || *mark < kSegmentHeader) return false;
    WriteAt(descriptor, segments_, *mark - kSegmentHeader);
    return true;
}

bool MetadataWriter::Finish(int descriptor) {
    if (encoding_.strip) return true;
    if (segmentRoom_ && !FillSegments(descriptor)) throw std::system_error(EIO, std::generic_category());
    if (thumbnail_) {
        if (const Bytes jpeg = thumbnail_->Jpeg(thumbnailSize_); !jpeg.empty()) exif_ = WithThumbnail(exif_, jpeg);
    }
    if (room_) {
        // A mark that stayed would be taken for a thumbnail.
        if (!room_->Fill(descriptor, exif_, chunks_)) throw std::system_error(EIO, std::generic_category());
        return true;
    }
    switch (encoding_.format.kind) {
        case FileKind::Tiff:
            return exif_.empty() || AddExifToTiff(descriptor, exif_);
        case FileKind::Jxl:
        case FileKind::Jp2:
            AddBoxes(descriptor, {exif_, xmp_, IptcAmong(metadata_.resources)});
            break;
        case FileKind::Gif:
            AddToGif(descriptor, metadata_.comments, xmp_);
            break;
        default:
            break;
    }
    return true;
}

std::vector<std::string> LostMetadata(const Metadata& metadata, const Encoding& encoding) {
    MetadataWriter writer(metadata, encoding);
    writer.Attach(VImage::black(1, 1, VImage::option()->set("bands", 3)));
    return writer.Lost();
}

}  // namespace ombrix::cli
