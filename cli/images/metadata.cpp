#include "cli/images/metadata.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "cli/images/boxes.h"
#include "cli/images/exif.h"
#include "cli/images/gif_blocks.h"
#include "cli/images/jpeg_file.h"
#include "cli/images/mapped_file.h"
#include "text/names.h"

namespace ombrix::cli {

using vips::VImage;

namespace {

constexpr std::string_view kPngComment = "png-comment-";
constexpr std::string_view kRawProfile = "raw profile type ";

bool IsOfFrames(std::string_view field) {
    return field == VIPS_META_N_PAGES || field == VIPS_META_PAGE_HEIGHT || field == "delay" || field == "loop";
}

void ForEachField(const VImage& image, const std::function<void(const std::string&)>& process) {
    gchar** fields = vips_image_get_fields(image.get_image());
    for (gchar** field = fields; *field != nullptr; ++field) process(*field);
    g_strfreev(fields);
}

/// A copy: of some readers the bytes go away with the image.
Bytes BlobOf(const VImage& image, const char* field) {
    if (image.get_typeof(field) != VIPS_TYPE_BLOB) return {};
    std::size_t size = 0;
    const auto* bytes = static_cast<const std::uint8_t*>(image.get_blob(field, &size));
    return {bytes, bytes + size};
}

Bytes BytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::string_view TextOf(const Bytes& bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

/// A block of Photoshop's: "8BIM", a number, a name, the size of the data, the data. Name and data are of even length.
struct Resource {
    std::uint64_t number = 0;
    std::span<const std::uint8_t> block;
    std::span<const std::uint8_t> data;
};

constexpr std::uint64_t kIptcNumber = 0x404;
constexpr std::uint64_t kThumbnailNumber = 0x40c, kOldThumbnailNumber = 0x409;

std::vector<Resource> ResourcesIn(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kBeforeName = 6, kShortest = 12;
    std::vector<Resource> resources;
    while (bytes.size() >= kShortest && bytes[0] == '8' && bytes[1] == 'B') {
        const std::size_t sizeAt = kBeforeName + (std::size_t{bytes[kBeforeName]} + 2) / 2 * 2;
        if (sizeAt + 4 > bytes.size()) break;
        const std::uint64_t size = GetNumber(bytes, sizeAt, 4, false);
        if (size > bytes.size() - sizeAt - 4) break;
        const std::size_t end = std::min<std::size_t>(bytes.size(), sizeAt + 4 + (size + 1) / 2 * 2);
        resources.push_back({GetNumber(bytes, 4, 2, false), bytes.first(end), bytes.subspan(sizeAt + 4, size)});
        bytes = bytes.subspan(end);
    }
    return resources;
}

/// What programs put into PNG files as text: a line with a name, one with the size, then hexadecimal digits.
Bytes FromRawProfile(std::string_view text) {
    Bytes bytes;
    for (int line = 0; line < 3; ++line) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) return {};
        text.remove_prefix(end + 1);
    }
    int digits = 0;
    unsigned value = 0;
    for (const char c : text) {
        const int digit = g_ascii_xdigit_value(c);
        if (digit < 0) continue;
        value = value << 4 | static_cast<unsigned>(digit);
        if (++digits % 2 == 0) bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

void TakeText(Metadata& metadata, std::string key, const char* text) {
    const std::string name = text::LowerCase(key);
    if (!name.starts_with(kRawProfile)) {
        metadata.comments.push_back({std::move(key), text});
        return;
    }
    const std::string kind = name.substr(kRawProfile.size());
    const Bytes bytes = FromRawProfile(text);
    if ((kind == "exif" || kind == "app1") && metadata.exif.empty()) metadata.exif = PlainExif(bytes);
    if (kind == "xmp" && metadata.xmp.empty()) metadata.xmp = bytes;
    if ((kind == "iptc" || kind == "8bim") && metadata.resources.empty()) metadata.resources = PlainResources(bytes);
}

bool IsLoadedBy(const VImage& image, std::string_view loader) {
    return image.get_typeof(VIPS_META_LOADER) != 0 &&
           std::string_view(image.get_string(VIPS_META_LOADER)).starts_with(loader);
}

Bytes ReadExifOfTiff(const std::filesystem::path& file) {
    const MappedFile mapped(file);
    return ExifOfTiff(mapped.Bytes());
}

void Replace(std::string& text, std::string_view before, std::string_view after) {
    for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos; at += after.size()) {
        text.replace(at, before.size(), after);
    }
}

/// A number, as an attribute or as an element.
void SetInXmp(std::string& text, const std::string& name, std::string_view before, std::string_view after) {
    for (const auto& [begin, end] : {std::pair{name + "=\"", "\""}, {name + "='", "'"}, {"<" + name + ">", "<"}}) {
        Replace(text, begin + std::string(before) + end, begin + std::string(after) + end);
    }
}

}  // namespace

Bytes PlainResources(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kName("Photoshop 3.0\0", 14);
    constexpr std::uint8_t kIptcMark = 0x1c;
    if (bytes.size() >= kName.size() && std::equal(kName.begin(), kName.end(), bytes.begin())) {
        bytes = bytes.subspan(kName.size());
    }
    Bytes plain;
    if (!bytes.empty() && bytes[0] == kIptcMark) {
        plain = BytesOf(std::string_view("8BIM\4\4\0\0", 8));
        plain.resize(plain.size() + 4);
        PutNumber(plain, plain.size() - 4, 4, false, bytes.size());
        plain.insert(plain.end(), bytes.begin(), bytes.end());
        if (plain.size() % 2 != 0) plain.push_back(0);
        return plain;
    }
    for (const Resource& resource : ResourcesIn(bytes)) {
        // They show the picture as it was.
        if (resource.number == kThumbnailNumber || resource.number == kOldThumbnailNumber) continue;
        plain.insert(plain.end(), resource.block.begin(), resource.block.end());
        if (plain.size() % 2 != 0) plain.push_back(0);
    }
    return plain;
}

std::string Metadata::Comment::WithKey() const {
    if (key == "Comment" || key == "Description") return text;
    std::string line = key;
    return line.append(": ").append(text);
}

Metadata MetadataOf(const VImage& image, const std::filesystem::path& file) {
    Metadata metadata;
    metadata.exif = PlainExif(BlobOf(image, VIPS_META_EXIF_NAME));
    if (metadata.exif.empty() && IsLoadedBy(image, "tiffload")) metadata.exif = ReadExifOfTiff(file);
    metadata.xmp = BlobOf(image, VIPS_META_XMP_NAME);
    metadata.resources = PlainResources(BlobOf(image, VIPS_META_PHOTOSHOP_NAME));
    if (IptcAmong(metadata.resources).empty()) {
        const Bytes iptc = PlainResources(BlobOf(image, VIPS_META_IPTC_NAME));
        metadata.resources.insert(metadata.resources.end(), iptc.begin(), iptc.end());
    }
    ForEachField(image, [&](const std::string& field) {
        if (field.starts_with(kPngComment)) {
            const std::size_t key = field.find('-', kPngComment.size());
            if (key != std::string::npos) TakeText(metadata, field.substr(key + 1), image.get_string(field.c_str()));
        } else if (field.starts_with("heif-mime-") && metadata.xmp.empty()) {
            Bytes xml = BlobOf(image, field.c_str());
            if (TextOf(xml).find("xmpmeta") != std::string_view::npos) metadata.xmp = std::move(xml);
        }
    });
    if (IsLoadedBy(image, "jxlload") || IsLoadedBy(image, "jp2kload")) {
        TakeFromBoxes(MappedFile(file).Bytes(), metadata);
    } else if (IsLoadedBy(image, "gifload")) {
        TakeFromGif(MappedFile(file).Bytes(), metadata);
    }
    if (IsLoadedBy(image, "jpegload")) {
        if (const auto header = ReadJpegHeader(file)) {
            for (const std::string& comment : header->comments) metadata.comments.push_back({"Comment", comment});
        }
    }
    metadata.xResolution = image.xres();
    metadata.yResolution = image.yres();
    if (image.get_typeof(VIPS_META_RESOLUTION_UNIT) != 0) {
        metadata.resolutionUnit = image.get_string(VIPS_META_RESOLUTION_UNIT);
    }
    return metadata;
}

VImage WithoutMetadata(const VImage& image) {
    VImage result = image.copy();
    // Not while the fields are gone through.
    std::vector<std::string> removed;
    ForEachField(image, [&removed](const std::string& field) {
        if (!IsOfFrames(field)) removed.push_back(field);
    });
    for (const std::string& field : removed) vips_image_remove(result.get_image(), field.c_str());
    VipsBlob* profile = nullptr;
    if (vips_profile_load("srgb", &profile, nullptr) != 0) throw vips::VError();
    std::size_t size = 0;
    const void* bytes = vips_blob_get(profile, &size);
    vips_image_set_blob_copy(result.get_image(), VIPS_META_ICC_NAME, bytes, size);
    vips_area_unref(VIPS_AREA(profile));
    return result;
}

Bytes XmpFor(const Bytes& xmp) {
    std::string text(TextOf(xmp));
    for (const std::string name : {"xmp:Thumbnails", "xap:Thumbnails"}) {
        const std::string close = "</" + name + ">";
        const std::size_t begin = text.find("<" + name), end = text.find(close);
        if (begin < end && end != std::string::npos) text.erase(begin, end + close.size() - begin);
    }
    for (char turned = '2'; turned <= '8'; ++turned) SetInXmp(text, "tiff:Orientation", {&turned, 1}, "1");
    // Colours of no named space.
    SetInXmp(text, "exif:ColorSpace", "65535", "1");
    return BytesOf(text);
}

Bytes ResourcesInJpeg(const Bytes& resources) {
    Bytes bytes = BytesOf(std::string_view("Photoshop 3.0\0", 14));
    bytes.insert(bytes.end(), resources.begin(), resources.end());
    return bytes;
}

Bytes IptcAmong(const Bytes& resources) {
    for (const Resource& resource : ResourcesIn(resources)) {
        if (resource.number != kIptcNumber) continue;
        Bytes iptc(resource.data.begin(), resource.data.end());
        // TIFF files count in numbers of 4 bytes.
        iptc.resize((iptc.size() + 3) / 4 * 4);
        return iptc;
    }
    return {};
}

}  // namespace ombrix::cli
