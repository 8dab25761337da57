#include "cli/images/image_reader.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "cli/failure.h"
#include "cli/images/accepted_kinds.h"
#include "cli/images/colour.h"
#include "cli/images/standard_input.h"
#include "cli/supervisor/limits.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/supervisor/worker.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

/// Reads the header. Pixels are decoded later, and errors in them come then.
VImage Open(const fs::path& file, VipsAccess access, const Pages& pages = {}, Console* console = nullptr) {
    const Doing reading(Activity::Reading, file.string());
    WillRead(NameToOpen(file));
    try {
        return OpenAccepted(file, access, pages, console);
    } catch (const vips::VError&) {
        throw WorkError(file.string() + " is damaged or not an image: " + TakeLibraryMessage());
    }
}

void CheckSize(const VImage& image, const fs::path& file, std::int64_t maxPixels) {
    const std::int64_t pixels = std::int64_t{image.width()} * image.height();
    const bool isGiven = maxPixels > 0;
    if (!isGiven) maxPixels = PixelLimit(static_cast<std::int64_t>(fs::file_size(NameToOpen(file))));
    if (pixels > maxPixels) {
        throw WorkError(
            file.string() + " has " + text::Size(image.width(), image.height()) + " pixels, more than the " +
            std::to_string(maxPixels) +
            (isGiven ? " that --max-pixels allows" : " that a file of its size may have; --max-pixels allows more"));
    }
}

int NumberOr(const VImage& image, const char* field, int otherwise) {
    return image.get_typeof(field) == G_TYPE_INT ? image.get_int(field) : otherwise;
}

/// What of a file is taken, and what is said of the rest.
class PageChoice {
  public:
    PageChoice(const fs::path& file, const VImage& first, const WantedPages& wanted)
        : file_(file), count_(PageCount(first)), isNamed_(wanted.one.has_value()) {
        if (wanted.one && *wanted.one > count_) {
            throw WorkError(file.string() + " has " + (count_ == 1 ? "one page" : std::to_string(count_) + " pages") +
                            ", so there is no page " + std::to_string(*wanted.one));
        }
        pages_ = {wanted.one ? *wanted.one - 1 : 0, !wanted.one && wanted.all && count_ > 1, wanted.shrink};
    }

    /// Whether the image that told of the pages will do.
    bool IsFirst() const { return pages_.first == 0 && !pages_.all && pages_.shrink == 1; }

    /// Opens the pages. Where they cannot be stacked, the first alone.
    VImage Open(VipsAccess access) {
        if (pages_.all) {
            try {
                return OpenAccepted(file_, access, pages_, nullptr);
            } catch (const vips::VError&) {
                vips_error_clear();
                pages_.all = false;
                areUnlike_ = true;
            }
        }
        return cli::Open(file_, access, pages_);
    }

    void Tell(Losses& losses) const {
        if (count_ == 1 || pages_.all) return;
        const std::string number = std::to_string(pages_.first + 1);
        losses.Add(file_.string() + " has " + std::to_string(count_) + " pages" +
                       (areUnlike_ ? " of several sizes" : "") + "; " + (isNamed_ ? "page " + number : "the first") +
                       " is used" + (isNamed_ ? "" : ", and --page takes another"),
                   isNamed_ ? "all pages but page " + number : "all pages but the first");
    }

  private:
    const fs::path& file_;
    const int count_;
    const bool isNamed_;
    Pages pages_;
    bool areUnlike_ = false;
};

/// The alpha of an opaque pixel.
double OpaqueAlpha(const VImage& image) {
    switch (image.format()) {
        case VIPS_FORMAT_USHORT:
            return UINT16_MAX;
        case VIPS_FORMAT_UINT:
            return UINT32_MAX;
        default:
            return image.interpretation() == VIPS_INTERPRETATION_scRGB ? 1 : UINT8_MAX;
    }
}

/// Where PackRows puts decoded rows.
struct PackedRows {
    host::Picture::Lock pixels;
    Console& console;
};

/// Packs finished rows into the picture. libvips calls it from a thread of its own, once at a time. It touches nothing
/// of the host but the locked bytes.
int PackRows(VipsRegion* region, VipsRect* area, void* argument) {
    auto& packed = *static_cast<PackedRows*>(argument);
    const int bands = region->im->Bands;
    for (int y = area->top; y < area->top + area->height; ++y) {
        const std::uint8_t* from = VIPS_REGION_ADDR(region, area->left, y);
        std::uint8_t* to = packed.pixels.Base() + y * packed.pixels.RowBytes() + std::ptrdiff_t{4} * area->left;
        for (int x = 0; x < area->width; ++x, from += bands, to += 4) {
            const std::uint8_t alpha = bands == 4 ? from[3] : std::uint8_t{255};
            to[0] = alpha;
            to[1] = from[0];
            to[2] = from[1];
            to[3] = from[2];
        }
    }
    Work().pixels += std::int64_t{area->width} * area->height;
    packed.console.Report(area->top + area->height, region->im->Ysize);
    return 0;
}

}  // namespace

void CheckImageFile(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(NameToOpen(file), error);
    if (!fs::exists(status)) {
        throw WorkError("there is no file " + file.string() +
                        (error && error != std::errc::no_such_file_or_directory ? " (" + error.message() + ")" : ""));
    }
    if (fs::is_directory(status)) throw WorkError(file.string() + " is a folder; name an image file in it");
    if (!fs::is_regular_file(status)) throw WorkError(file.string() + " is not an ordinary file");
    if (access(NameToOpen(file).c_str(), R_OK) != 0) {
        throw WorkError(file.string() + " cannot be read (" + std::generic_category().message(errno) + ")");
    }
    if (fs::file_size(NameToOpen(file)) == 0) throw WorkError(file.string() + " is empty; an image file is needed");
    WillRead(NameToOpen(file));
}

WorkError DamagedFile(const fs::path& file) {
    return WorkError(file.string() + " is damaged or cut short: " + TakeLibraryMessage());
}

void CheckWholeImage(const fs::path& file) {
    std::int64_t seen = 0;
    try {
        const VImage image = Open(file, VIPS_ACCESS_SEQUENTIAL);
        const Doing reading(Activity::Reading, file.string());
        // Row by row, to be seen at work.
        VipsImage* watched = image.get_image();
        vips_image_set_progress(watched, TRUE);
        g_signal_connect(watched, "eval", G_CALLBACK(+[](VipsImage*, VipsProgress* progress, std::int64_t* before) {
                             Work().pixels += static_cast<std::int64_t>(progress->npels) - *before;
                             *before = static_cast<std::int64_t>(progress->npels);
                         }),
                         &seen);
        image.avg();
    } catch (const vips::VError&) {
        throw DamagedFile(file);
    }
}

OpenedImage OpenImage(Session& session, const fs::path& file, const WantedPages& wanted, Losses& losses) {
    CheckImageFile(file);
    VImage image = Open(file, VIPS_ACCESS_SEQUENTIAL, {}, &session.console);
    PageChoice choice(file, image, wanted);
    if (!choice.IsFirst()) image = choice.Open(VIPS_ACCESS_SEQUENTIAL);
    choice.Tell(losses);
    CheckSize(image, file, session.options.maxPixels);
    if (const std::string depth = DepthAbove8Bits(image); !depth.empty()) {
        losses.Add(file.string() + " has " + depth + "; it is reduced to 8 bits", "its depth of " + depth);
    }
    try {
        // A sequential reader cannot give the rows in the order that turning needs.
        if (NumberOr(image, VIPS_META_ORIENTATION, 1) > 1) image = Upright(choice.Open(VIPS_ACCESS_RANDOM));
        const int pageHeight = PageHeight(image);
        if (pageHeight == image.height()) image = AsOnePage(image);
        OpenedImage opened{file, image, pageHeight, {}};
        opened.origin.metadata = MetadataOf(image, file);
        opened.image = ToSrgb(image, file, losses);
        opened.origin.hasAlpha = opened.image.bands() == 4;
        return opened;
    } catch (const vips::VError&) {
        throw DamagedFile(file);
    }
}

std::pair<int, int> SizeOf(const fs::path& file) {
    CheckImageFile(file);
    const VImage image = Open(file, VIPS_ACCESS_SEQUENTIAL);
    // From here on EXIF's orientations swap the sides.
    constexpr int kTransposed = 5;
    const bool isTransposed = NumberOr(image, VIPS_META_ORIENTATION, 1) >= kTransposed;
    return isTransposed ? std::pair(image.height(), image.width()) : std::pair(image.width(), image.height());
}

OpenedImage OpenImage(Session& session, const fs::path& file) {
    Losses losses(session.console, false);
    return OpenImage(session, file, {}, losses);
}

bool IsTransparent(const fs::path& file) {
    try {
        const VImage image = Open(file, VIPS_ACCESS_SEQUENTIAL);
        const Doing reading(Activity::Reading, file.string());
        if (!image.has_alpha()) return false;
        return image[image.bands() - 1].min() < OpaqueAlpha(image);
    } catch (const vips::VError&) {
        throw DamagedFile(file);
    }
}

ReadPicture Decoded(Session& session, const OpenedImage& image) {
    session.console.BeginStage("reading " + image.file.string());
    const Doing reading(Activity::Reading, image.file.string());
    try {
        return {PictureOf(session.host, image.image, session.console), image.origin};
    } catch (const vips::VError&) {
        throw DamagedFile(image.file);
    }
}

ReadPicture ReadImage(Session& session, const fs::path& file) { return Decoded(session, OpenImage(session, file)); }

host::Picture PictureOf(host::Host& host, const VImage& image, Console& console) {
    host::Picture picture = host.NewPicture(image.width(), image.height());
    PackedRows packed{host::Picture::Lock(picture), console};
    if (vips_sink_disc(image.get_image(), PackRows, &packed) != 0) throw vips::VError();
    return picture;
}

std::string TakeLibraryMessage() {
    std::string_view message = vips_error_buffer();
    message = message.substr(0, message.find('\n'));
    if (const std::size_t colon = message.find(": "); colon != std::string_view::npos) message.remove_prefix(colon + 2);
    std::string line = text::OnOneLine(message);
    vips_error_clear();
    return line.empty() ? "the image library gives no reason" : line;
}

}  // namespace ombrix::cli
