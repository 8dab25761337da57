#include "cli/images/accepted_kinds.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cli/failure.h"
#include "cli/images/cut_short.h"
#include "cli/images/image_reader.h"
#include "cli/images/standard_input.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using vips::VImage;

namespace {

ReadingRules rules;

enum class Input { Source, Name, Memory };

struct Kind {
    const char* reader;     ///< libvips' operation
    const char* className;  ///< of the reader and its kin
    Input input;
    bool (*matches)(std::string_view head);
};

/// The four bytes at `at`; fewer at the end of a short file.
std::string_view FourAt(std::string_view head, std::size_t at) { return head.substr(std::min(at, head.size()), 4); }

bool IsHeif(std::string_view head) {
    if (FourAt(head, 4) != "ftyp"sv) return false;
    constexpr std::array kBrands = {"heic"sv, "heix"sv, "hevc"sv, "hevx"sv, "heim"sv, "heis"sv,
                                    "mif1"sv, "msf1"sv, "avif"sv, "avis"sv, "miaf"sv};
    return std::ranges::find(kBrands, FourAt(head, 8)) != kBrands.end();
}

bool IsTiff(std::string_view head) {
    return head.starts_with("II*\0"sv) || head.starts_with("MM\0*"sv) || head.starts_with("II+\0"sv) ||
           head.starts_with("MM\0+"sv);
}

/// One of the letters after a P, and a space.
bool IsPnm(std::string_view head) {
    return head.size() > 2 && head[0] == 'P' && "123456fF"sv.find(head[1]) != std::string_view::npos &&
           std::isspace(static_cast<unsigned char>(head[2])) != 0;
}

/// Plain, after a declaration or comments, or compressed.
bool IsSvg(std::string_view head) {
    if (head.starts_with("\x1f\x8b"sv)) return true;
    if (head.starts_with("\xef\xbb\xbf"sv)) head.remove_prefix(3);
    const std::size_t first = head.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && head[first] == '<' && head.find("<svg") != std::string_view::npos;
}

template <const std::string_view&... beginnings>
bool Begins(std::string_view head) {
    return (head.starts_with(beginnings) || ...);
}

constexpr std::string_view kJpeg = "\xff\xd8\xff"sv, kPng = "\x89PNG\r\n\x1a\n"sv, kGif87 = "GIF87a"sv,
                           kGif89 = "GIF89a"sv, kJxl = "\xff\x0a"sv, kJxlBox = "\0\0\0\x0cJXL \r\n\x87\n"sv,
                           kJp2 = "\0\0\0\x0cjP  \r\n\x87\n"sv, kCodestream = "\xff\x4f\xff\x51"sv,
                           kRadiance = "#?RADIANCE"sv, kRgbe = "#?RGBE"sv, kExr = "\x76\x2f\x31\x01"sv,
                           kFits = "SIMPLE  ="sv, kVips = "\x08\xf2\xa6\xb6"sv, kVipsSwapped = "\xb6\xa6\xf2\x08"sv,
                           kPdf = "%PDF-"sv, kBmp = "BM"sv;

/// The kinds that people have as pictures. Left out are those of instruments and of whole ImageMagick, whose readers
/// take many more bytes for their own. BMP is read by ImageMagick's, from memory: a name could choose another of them.
constexpr std::array kKinds = {
    Kind{"jpegload_source", "VipsForeignLoadJpeg", Input::Source, Begins<kJpeg>},
    Kind{"pngload_source", "VipsForeignLoadPng", Input::Source, Begins<kPng>},
    Kind{"gifload_source", "VipsForeignLoadNsgif", Input::Source, Begins<kGif87, kGif89>},
    Kind{"webpload_source", "VipsForeignLoadWebp", Input::Source,
         [](std::string_view head) { return head.starts_with("RIFF") && FourAt(head, 8) == "WEBP"; }},
    Kind{"tiffload_source", "VipsForeignLoadTiff", Input::Source, IsTiff},
    Kind{"heifload_source", "VipsForeignLoadHeif", Input::Source, IsHeif},
    Kind{"jxlload_source", "VipsForeignLoadJxl", Input::Source, Begins<kJxl, kJxlBox>},
    Kind{"jp2kload_source", "VipsForeignLoadJp2k", Input::Source, Begins<kJp2, kCodestream>},
    Kind{"ppmload_source", "VipsForeignLoadPpm", Input::Source, IsPnm},
    Kind{"radload_source", "VipsForeignLoadRad", Input::Source, Begins<kRadiance, kRgbe>},
    Kind{"openexrload", "VipsForeignLoadOpenexr", Input::Name, Begins<kExr>},
    Kind{"fitsload_source", "VipsForeignLoadFits", Input::Source, Begins<kFits>},
    Kind{"vipsload_source", "VipsForeignLoadVips", Input::Source, Begins<kVips, kVipsSwapped>},
    Kind{"pdfload_source", "VipsForeignLoadPdf", Input::Source, Begins<kPdf>},
    Kind{"magickload_buffer", "VipsForeignLoadMagick", Input::Memory, Begins<kBmp>},
    Kind{"svgload_source", "VipsForeignLoadSvg", Input::Source, IsSvg},  // last, since it looks furthest
};

std::string Head(const fs::path& file) {
    std::string head(4096, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

const Kind* KindOf(std::string_view head) {
    const auto kind = std::ranges::find_if(kKinds, [head](const Kind& each) { return each.matches(head); });
    return kind != kKinds.end() ? &*kind : nullptr;
}

struct Unreference {
    void operator()(VipsBlob* bytes) const { vips_area_unref(VIPS_AREA(bytes)); }
};
using Unreferenced = std::unique_ptr<VipsBlob, Unreference>;

VImage Load(const fs::path& file, const Kind* kind, VipsAccess access, const Pages& pages, VipsFailOn failOn) {
    vips::VOption* options = VImage::option()->set("access", access)->set("fail_on", failOn);
    // Not all readers know of pages.
    if (pages.first > 0) options->set("page", pages.first);
    if (pages.all) options->set("n", -1);
    if (pages.shrink > 1 && kind != nullptr && kind->className == "VipsForeignLoadJpeg"sv) {
        options->set("shrink", pages.shrink);
    }
    VImage image;
    if (kind == nullptr) return VImage::new_from_file(file.c_str(), options);
    options->set("out", &image);
    if (kind->input == Input::Name) {
        VImage::call(kind->reader, options->set("filename", file.c_str()));
    } else {
        const vips::VSource source = vips::VSource::new_from_file(file.c_str());
        if (kind->input == Input::Source) {
            VImage::call(kind->reader, options->set("source", source));
        } else {
            VipsBlob* bytes = vips_source_map_blob(source.get_source());
            if (bytes == nullptr) throw vips::VError();
            const Unreferenced owner(bytes);
            VImage::call(kind->reader, options->set("buffer", bytes));
        }
    }
    return image;
}

}  // namespace

void AcceptKinds(const ReadingRules& given) {
    rules = given;
    if (rules.allKinds) return;
    vips_block_untrusted_set(TRUE);
    // The block is of writers, too.
    vips_operation_block_set("VipsForeignSave", FALSE);
    vips_operation_block_set("VipsForeignLoad", TRUE);
    for (const Kind& kind : kKinds) {
        if (kind.input != Input::Memory) vips_operation_block_set(kind.className, FALSE);
    }
}

VImage OpenAccepted(const fs::path& file, VipsAccess access, const Pages& pages, Console* console) {
    const std::string head = Head(NameToOpen(file));
    const Kind* kind = KindOf(head);
    if (kind == nullptr && !rules.allKinds) {
        throw WorkError(file.string() +
                        " is not an image of a kind that can be read; --all-loaders tries further kinds");
    }
    if (kind != nullptr && kind->input == Input::Memory) vips_operation_block_set(kind->className, FALSE);
    const auto open = [&](VipsFailOn failOn) { return Load(NameToOpen(file), kind, access, pages, failOn); };
    if (!rules.damaged) {
        VImage image = open(VIPS_FAIL_ON_ERROR);
        if (IsCutShort(file, image)) throw WorkError(file.string() + " is damaged or cut short: its end is missing");
        return image;
    }
    try {
        const VImage whole = Load(NameToOpen(file), kind, VIPS_ACCESS_SEQUENTIAL, pages, VIPS_FAIL_ON_ERROR);
        whole.avg();
        if (!IsCutShort(file, whole)) return open(VIPS_FAIL_ON_ERROR);
        vips_error("ombrix", "%s", "its end is missing");
    } catch (const vips::VError&) {
    }
    const std::string reason = TakeLibraryMessage();
    if (console != nullptr) {
        console->Note(file.string() + " is damaged or cut short (" + reason + "); what can be read of it is used");
    }
    return open(VIPS_FAIL_ON_NONE);
}

}  // namespace ombrix::cli
