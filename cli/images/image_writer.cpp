#include "cli/images/image_writer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/images/metadata.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

constexpr int kDefaultQuality = 90;  // above libvips' own: this is to be looked at, not served

constexpr std::array kFormats = {
    OutputFormat{".jpg", "jpegsave", true, false}, OutputFormat{".jpeg", "jpegsave", true, false},
    OutputFormat{".png", "pngsave", false, true},  OutputFormat{".webp", "webpsave", true, true},
    OutputFormat{".tif", "tiffsave", false, true}, OutputFormat{".tiff", "tiffsave", false, true},
    OutputFormat{".gif", "gifsave", false, true},  OutputFormat{".avif", "heifsave", true, true},
    OutputFormat{".heic", "heifsave", true, true}, OutputFormat{".jxl", "jxlsave", true, true},
    OutputFormat{".jp2", "jp2ksave", true, true},  OutputFormat{".bmp", "magicksave_bmp", false, true},
    OutputFormat{".ppm", "ppmsave", false, false}, OutputFormat{".v", "vipssave", false, true},
};

bool IsBuiltIn(const OutputFormat& format) {
    // Before libvips has started, which is when the command line is checked.
    if (g_type_from_name("VipsForeignSave") == 0) return true;
    return vips_type_find("VipsForeignSave", std::string(format.writer).c_str()) != 0;
}

/// libvips' own format is written by names that end with its suffix alone. The link lies in the worker's private
/// folder.
fs::path LinkTo(const fs::path& file, std::string_view suffix) {
    const fs::path link = fs::temp_directory_path() / ("output" + std::string(suffix));
    fs::create_symlink(file, link);
    return link;
}

void Save(const VImage& image, const OutputFormat& format, std::optional<int> quality, const fs::path& file) {
    vips::VOption* options = VImage::option()->set("in", image);
    if (format.lossy) options->set("Q", quality.value_or(kDefaultQuality));
    // The name of a descriptor has no suffix to go by.
    if (format.suffix == ".avif") options->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1);
    // Other TIFF files hold 4 GB at most.
    const std::uint64_t bytes = VIPS_IMAGE_SIZEOF_IMAGE(image.get_image());
    if (format.writer == "tiffsave" && bytes > 0xf0000000) options->set("bigtiff", true);
    if (format.writer == "magicksave_bmp") {
        // ImageMagick's own rules may forbid it to open the name of a descriptor.
        VipsBlob* blob = nullptr;
        VImage::call("magicksave_bmp_buffer", options->set("buffer", &blob));
        std::size_t length = 0;
        const void* data = vips_blob_get(blob, &length);
        const vips::VTarget target = vips::VTarget::new_to_file(file.c_str());
        const int result = vips_target_write(target.get_target(), data, length) | vips_target_end(target.get_target());
        vips_area_unref(VIPS_AREA(blob));
        if (result != 0) throw vips::VError();
        return;
    }
    const fs::path name = format.writer == "vipssave" ? LinkTo(file, format.suffix) : file;
    VImage::call(std::string(format.writer).c_str(), options->set("filename", name.c_str()));
}

/// Passes pixels on and looks at their alpha, which comes last.
int LookAtAlpha(VipsRegion* out, void* input, void* /*image*/, void* isOpaque, gboolean* /*stop*/) {
    auto* in = static_cast<VipsRegion*>(input);
    const VipsRect& area = out->valid;
    if (vips_region_prepare(in, &area) != 0 || vips_region_region(out, in, &area, area.left, area.top) != 0) return -1;
    for (int y = area.top; y < VIPS_RECT_BOTTOM(&area); ++y) {
        const std::uint8_t* row = VIPS_REGION_ADDR(in, area.left, y);
        std::uint8_t least = 255;
        for (int x = 0; x < area.width; ++x) least = std::min(least, row[4 * x + 3]);
        if (least < 255) *static_cast<std::atomic<bool>*>(isOpaque) = false;
    }
    return 0;
}

/// The same image, which notes in `isOpaque`, as it is read, that a pixel is transparent.
VImage WatchAlpha(const VImage& image, std::atomic<bool>& isOpaque) {
    VipsImage* in = image.get_image();
    VipsImage* out = vips_image_new();
    VImage watched(out);
    g_object_ref(in);
    vips_object_local(out, in);
    if (vips_image_pipelinev(out, VIPS_DEMAND_STYLE_THINSTRIP, in, nullptr) != 0 ||
        vips_image_generate(out, vips_start_one, LookAtAlpha, vips_stop_one, in, &isOpaque) != 0) {
        throw vips::VError();
    }
    return watched;
}

}  // namespace

const OutputFormat& FormatFor(const fs::path& file) {
    const std::string suffix = text::LowerCase(file.extension().string());
    std::vector<std::string> usable;
    for (const OutputFormat& format : kFormats) {
        if (!IsBuiltIn(format)) continue;
        if (format.suffix == suffix) return format;
        usable.emplace_back(format.suffix);
    }
    throw UsageError((suffix.empty() ? file.string() + " has no suffix to say what kind of file to write"
                                     : file.string() + " cannot be written: " + suffix + " is an unknown suffix") +
                     "; there are " + text::Listed(usable));
}

void CheckQuality(const OutputFormat& format, std::optional<int> quality) {
    if (!quality || format.lossy) return;
    std::vector<std::string> lossy;
    for (const OutputFormat& other : kFormats) {
        if (other.lossy && IsBuiltIn(other)) lossy.emplace_back(other.suffix);
    }
    throw UsageError("--quality means nothing for " + std::string(format.suffix) +
                     ", which keeps every pixel; it is for " + text::Listed(lossy));
}

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

void WriteImage(const VImage& image, const ImageOrigin& origin, const OutputFormat& format, std::optional<int> quality,
                const fs::path& file, const fs::path& name, Console& console) {
    VImage written = WithoutMetadata(image);
    std::atomic<bool> isOpaque = true;
    if (image.bands() == 4 && !format.alpha) {
        written = WatchAlpha(written, isOpaque)
                      .flatten(VImage::option()->set("background", std::vector<double>{255, 255, 255}));
    }
    if (!origin.metadata.is_null()) written = WithMetadata(written, origin.metadata);
    Save(written, format, quality, file);
    if (!isOpaque) {
        console.Note(std::string(format.suffix) + " files have no transparency; " + name.string() +
                     " is laid on white");
    }
}

}  // namespace ombrix::cli
