#include "cli/images/image_writer.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "cli/failure.h"
#include "cli/images/image_watch.h"
#include "cli/images/metadata_writer.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

/// As libvips reads options.
std::string InBrackets(const std::string& options) { return options.empty() ? "" : "[" + options + "]"; }

/// Some formats have no writer to a target.
void SaveThroughBuffer(const VImage& image, const Encoding& encoding, const vips::VTarget& target) {
    VipsBlob* buffer = nullptr;
    VImage::call_option_string(std::string(encoding.format.writer).c_str(), InBrackets(encoding.options).c_str(),
                               VImage::option()->set("in", image)->set("buffer", &buffer));
    std::size_t size = 0;
    const void* bytes = vips_blob_get(buffer, &size);
    const bool isWritten =
        vips_target_write(target.get_target(), bytes, size) == 0 && vips_target_end(target.get_target()) == 0;
    vips_area_unref(VIPS_AREA(buffer));
    if (!isWritten) throw vips::VError();
}

/// libvips' writer for its own format insists on a name that ends with .v.
void SaveAsVips(const VImage& image, int descriptor) {
    const VImage file(vips_image_new());
    VipsImage* out = file.get_image();
    g_free(out->filename);
    out->filename = g_strdup(("/proc/self/fd/" + std::to_string(descriptor)).c_str());
    out->dtype = VIPS_IMAGE_OPENOUT;
    if (vips_image_write(image.get_image(), out) != 0) throw vips::VError();
}

void Save(const VImage& image, const Encoding& encoding, int descriptor) {
    const vips::VTarget target = vips::VTarget::new_to_descriptor(descriptor);
    const std::string_view writer = encoding.format.writer;
    if (writer == "vipssave") return SaveAsVips(image, descriptor);
    if (writer.ends_with("_buffer")) return SaveThroughBuffer(image, encoding, target);
    vips::VOption* options = VImage::option()->set("in", image)->set("target", target);
    if (encoding.quality) options->set("Q", *encoding.quality);
    if (encoding.strip) options->set("strip", true);
    // Other TIFF files hold 4 GB at most.
    const std::uint64_t bytes = VIPS_IMAGE_SIZEOF_IMAGE(image.get_image());
    if (writer == "tiffsave_target" && bytes > 0xf0000000) options->set("bigtiff", true);
    VImage::call_option_string(std::string(writer).c_str(), InBrackets(encoding.options).c_str(), options);
}

/// Notes the least alpha, which comes last in a pixel.
void LookAtAlpha(VipsRegion* part, std::atomic<bool>& isOpaque) {
    const VipsRect& area = part->valid;
    for (int y = area.top; y < VIPS_RECT_BOTTOM(&area); ++y) {
        const std::uint8_t* row = VIPS_REGION_ADDR(part, area.left, y);
        std::uint8_t least = 255;
        for (int x = 0; x < area.width; ++x) least = std::min(least, row[4 * x + 3]);
        if (least < 255) isOpaque = false;
    }
}

}  // namespace

VImage Viewed(const host::Picture& picture, const host::Picture::Lock& pixels, bool withAlpha) {
    const auto rowBytes = static_cast<int>(pixels.RowBytes());
    const std::size_t size = static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(picture.Height());
    // A row with its padding, then cropped. Padded 24-bit rows need not be whole pixels, so these begin as single
    // bytes.
    VImage image;
    if (picture.Depth() == 32) {
        image = VImage::new_from_memory(pixels.Base(), size, rowBytes / 4, picture.Height(), 4, VIPS_FORMAT_UCHAR)
                    .extract_area(0, 0, picture.Width(), picture.Height());
        const VImage colours = image.extract_band(1, VImage::option()->set("n", 3));
        image = withAlpha ? colours.bandjoin(image[0]) : colours;
    } else {
        image = VImage::new_from_memory(pixels.Base(), size, rowBytes, picture.Height(), 1, VIPS_FORMAT_UCHAR)
                    .extract_area(0, 0, picture.Width() * 3, picture.Height())
                    .bandfold(VImage::option()->set("factor", 3));
    }
    return image.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

void WriteImage(const VImage& image, const ImageOrigin& origin, const Encoding& encoding, int descriptor,
                const fs::path& name, Console& console) {
    MetadataWriter metadata(origin.metadata, encoding);
    VImage written = metadata.Attach(image);
    std::atomic<bool> isOpaque = true;
    std::function<void(VipsRegion*)> look = [&isOpaque](VipsRegion* part) { LookAtAlpha(part, isOpaque); };
    if (image.bands() == 4 && !encoding.format.alpha) {
        written =
            Watched(written, look).flatten(VImage::option()->set("background", std::vector<double>{255, 255, 255}));
    }
    Save(written, encoding, descriptor);
    try {
        if (!metadata.Finish(descriptor)) {
            console.Note(name.string() + " is without the EXIF of the original, since the file is too large for it");
        }
    } catch (const std::system_error& failure) {
        throw WorkError(name.string() + " cannot be written (" + failure.code().message() + ")");
    }
    if (!isOpaque) {
        console.Note(std::string(encoding.format.suffix) + " files have no transparency; " + name.string() +
                     " is laid on white");
    }
}

}  // namespace ombrix::cli
