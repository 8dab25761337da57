#include "cli/images/boxes.h"

#include <brotli/decode.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "cli/images/exif.h"
#include "cli/images/mapped_file.h"

namespace ombrix::cli {

namespace {

using View = std::span<const std::uint8_t>;

constexpr std::size_t kHeader = 8;  // bytes: a length, with it, and a kind
constexpr std::string_view kJxlBegin("\0\0\0\x0cJXL \r\n\x87\n", 12), kJp2Begin("\0\0\0\x0cjP  \r\n\x87\n", 12);
/// A bare JPEG XL codestream has no boxes.
constexpr std::string_view kCodestream = "\xff\x0a";
constexpr std::string_view kJxlKind(
    "\0\0\0\x14"
    "ftypjxl \0\0\0\0jxl ",
    20);
/// Names of boxes for other specifications' data.
constexpr std::string_view kExifName = "JpgTiffExif->JP2";
constexpr std::string_view kXmpName = "\xbe\x7a\xcf\xcb\x97\xa9\x42\xe8\x9c\x71\x99\x94\x91\xe3\xaf\xac";
constexpr std::string_view kIptcName = "\x33\xc7\xa4\xd2\xb8\x1d\x47\x23\xa0\xba\xf1\xa3\xe0\x97\xad\x38";
constexpr std::size_t kName = 16;

struct Box {
    std::string_view kind;
    View data;
};

std::vector<Box> BoxesIn(View file) {
    std::vector<Box> boxes;
    while (file.size() >= kHeader) {
        std::uint64_t size = GetNumber(file, 0, 4, false), header = kHeader;
        if (size == 1 && file.size() >= 2 * kHeader) {
            header = 2 * kHeader;
            size = GetNumber(file, kHeader, kHeader, false);
        }
        if (size == 0) size = file.size();
        if (size < header || size > file.size()) break;
        boxes.push_back({{reinterpret_cast<const char*>(file.data()) + 4, 4}, file.subspan(header, size - header)});
        file = file.subspan(size);
    }
    return boxes;
}

Bytes Copy(View bytes) { return {bytes.begin(), bytes.end()}; }

/// What a box of compressed data holds; empty when it is damaged.
Bytes Decompressed(View data) {
    constexpr std::size_t kMost = 16'000'000;  // bytes, far above what is known
    std::size_t size = kMost;
    Bytes bytes(size);
    if (BrotliDecoderDecompress(data.size(), data.data(), &size, bytes.data()) != BROTLI_DECODER_RESULT_SUCCESS) {
        return {};
    }
    bytes.resize(size);
    return bytes;
}

void TakeXmp(View data, Metadata& metadata) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    if (metadata.xmp.empty() && text.find("xmpmeta") != std::string_view::npos) metadata.xmp = Copy(data);
}

/// EXIF of JPEG XL begins with where its byte order mark is.
void TakeExif(View data, Metadata& metadata) {
    if (metadata.exif.empty()) metadata.exif = PlainExif(data);
}

void TakeBox(const Box& box, Metadata& metadata) {
    if (box.kind == "Exif") TakeExif(box.data, metadata);
    if (box.kind == "xml ") TakeXmp(box.data, metadata);
    if (box.kind == "brob" && box.data.size() > 4) {
        const Bytes data = Decompressed(box.data.subspan(4));
        const std::string_view kind(reinterpret_cast<const char*>(box.data.data()), 4);
        if (kind != "brob") TakeBox({kind, data}, metadata);
    }
    if (box.kind != "uuid" || box.data.size() < kName) return;
    const View data = box.data.subspan(kName);
    if (StandsAt(box.data, 0, kExifName)) TakeExif(data, metadata);
    if (StandsAt(box.data, 0, kXmpName)) TakeXmp(data, metadata);
    if (StandsAt(box.data, 0, kIptcName) && metadata.resources.empty()) metadata.resources = PlainResources(data);
}

void AppendBox(Bytes& file, std::string_view kind, std::string_view name, View data) {
    const std::size_t at = file.size();
    file.resize(at + 4);
    PutNumber(file, at, 4, false, kHeader + name.size() + data.size());
    for (const std::string_view text : {kind, name}) file.insert(file.end(), text.begin(), text.end());
    file.insert(file.end(), data.begin(), data.end());
}

}  // namespace

void TakeFromBoxes(View file, Metadata& metadata) {
    if (!StandsAt(file, 0, kJxlBegin) && !StandsAt(file, 0, kJp2Begin)) return;
    for (const Box& box : BoxesIn(file)) TakeBox(box, metadata);
}

void AddBoxes(int descriptor, const BoxedMetadata& metadata) {
    const auto& [exif, xmp, iptc] = metadata;
    if (exif.empty() && xmp.empty() && iptc.empty()) return;
    Bytes codestream;
    Bytes boxes;
    std::uint64_t end = 0;
    {
        const MappedFile file(descriptor);
        end = file.Bytes().size();
        const bool isJp2 = StandsAt(file.Bytes(), 0, kJp2Begin);
        if (!exif.empty() && isJp2) AppendBox(boxes, "uuid", kExifName, exif);
        if (!exif.empty() && !isJp2) AppendBox(boxes, "Exif", std::string_view("\0\0\0\0", 4), exif);
        if (!xmp.empty()) AppendBox(boxes, isJp2 ? "uuid" : "xml ", isJp2 ? kXmpName : "", xmp);
        if (!iptc.empty() && isJp2) AppendBox(boxes, "uuid", kIptcName, iptc);
        if (StandsAt(file.Bytes(), 0, kCodestream)) codestream = Copy(file.Bytes());
    }
    if (codestream.empty()) return WriteAt(descriptor, boxes, end);
    Bytes container;
    for (const std::string_view text : {kJxlBegin, kJxlKind})
        container.insert(container.end(), text.begin(), text.end());
    AppendBox(container, "jxlc", "", codestream);
    WriteAt(descriptor, container, 0);
    WriteAt(descriptor, boxes, container.size());
}

}  // namespace ombrix::cli
