#include "cli/images/exif.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

#include "cli/images/mapped_file.h"

namespace ombrix::cli {

namespace {

// Tags of the first directory.
constexpr std::uint16_t kImageWidth = 0x100, kImageLength = 0x101, kCompression = 0x103, kStripOffsets = 0x111,
                        kOrientation = 0x112, kStripByteCounts = 0x117, kXResolution = 0x11a, kYResolution = 0x11b,
                        kResolutionUnit = 0x128, kYCbCrPositioning = 0x213, kThumbnail = 0x201,
                        kThumbnailLength = 0x202;
// Directories of their own.
constexpr std::uint16_t kExif = 0x8769, kGps = 0x8825, kInterop = 0xa005;
// Tags of the EXIF directory.
constexpr std::uint16_t kExifVersion = 0x9000, kComponents = 0x9101, kFlashpixVersion = 0xa000, kColorSpace = 0xa001,
                        kPixelWidth = 0xa002, kPixelHeight = 0xa003;
constexpr std::uint16_t kInteropIndex = 1;

constexpr std::uint64_t kSrgb = 1, kUpright = 1, kJpeg = 6, kInches = 2, kCentimetres = 3;

/// Fields of a TIFF file's directory that describe the picture and not how it is stored: names, dates, people, marks,
/// and where on earth its corners lie.
constexpr std::array<std::uint16_t, 29> kDescriptions = {0x000b, 0x010d, 0x010e, 0x010f, 0x0110, 0x011d, 0x0131, 0x0132,
                                                         0x013b, 0x013c, 0x4746, 0x4749, 0x830e, 0x8298, 0x8482, 0x85d8,
                                                         0x87af, 0x87b0, 0x87b1, 0x9003, 0x9c9b, 0x9c9c, 0x9c9d, 0x9c9e,
                                                         0x9c9f, 0xa480, 0xa481, 0xc4a5, 0xc614};
constexpr std::size_t kLongestDescription = 60'000;  // bytes: an EXIF block of a JPEG file has 65527

constexpr std::size_t kHeader = 8;  // bytes

void Patch(Bytes& exif, const TiffLayout& layout, const TiffField* field, std::uint64_t number) {
    if (!field || field->count != 1) return;
    const bool isShort = field->type == TiffField::kShort;
    if (isShort && number > 0xffff) return;
    if (isShort || field->type == TiffField::kLong) {
        PutNumber(exif, field->at, isShort ? 2 : 4, layout.littleEndian, number);
    }
}

void Clear(Bytes& exif, std::uint64_t from, std::uint64_t size) {
    if (from < kHeader || from > exif.size()) return;
    const std::uint64_t end = std::min<std::uint64_t>(exif.size(), from + std::min<std::uint64_t>(size, exif.size()));
    std::fill(exif.begin() + static_cast<std::ptrdiff_t>(from), exif.begin() + static_cast<std::ptrdiff_t>(end), 0);
    // The thumbnail is what a block usually ends with.
    if (end + 2 >= exif.size()) exif.resize(from);
}

void ClearThumbnail(Bytes& exif, const TiffLayout& layout) {
    const TiffDirectory first = FirstDirectory(exif, layout);
    const TiffDirectory second = ReadDirectory(exif, layout, first.next);
    if (first.nextAt != 0) PutNumber(exif, first.nextAt, 4, layout.littleEndian, 0);
    const auto clear = [&](std::uint16_t offsets, std::uint16_t sizes) {
        const TiffField* offset = second.Find(offsets);
        const TiffField* size = second.Find(sizes);
        if (!offset || !size) return;
        for (std::size_t i = std::min(offset->count, size->count); i-- > 0;) {
            Clear(exif, layout.Number(*offset, i), layout.Number(*size, i));
        }
    };
    clear(kThumbnail, kThumbnailLength);
    clear(kStripOffsets, kStripByteCounts);
}

/// Notes of camera makers may hold a preview.
void ClearPreviews(Bytes& exif) {
    constexpr std::array<std::uint8_t, 3> kBegin = {0xff, 0xd8, 0xff};
    constexpr std::array<std::uint8_t, 2> kEnd = {0xff, 0xd9};
    constexpr std::string_view kFirstMarkers = "\xdb\xe0\xe1\xee\xc4";
    for (auto at = exif.begin();; ++at) {
        at = std::search(at, exif.end(), kBegin.begin(), kBegin.end());
        if (exif.end() - at < 4) return;
        if (kFirstMarkers.find(static_cast<char>(at[3])) == std::string_view::npos) continue;
        const auto end = std::search(at, exif.end(), kEnd.begin(), kEnd.end());
        std::fill(at, std::min(end + 2, exif.end()), 0);
    }
}

std::uint64_t Append(Bytes& exif, const TiffLayout& layout, const TiffDirectory& directory) {
    exif.resize((exif.size() + 1) / 2 * 2);
    const std::uint64_t at = exif.size();
    const Bytes added = WriteDirectory(directory, layout, at);
    exif.insert(exif.end(), added.begin(), added.end());
    return at;
}

/// Pixels in a millimetre, as a directory says it; 0 when it does not.
double Resolution(const TiffDirectory& directory, const TiffLayout& layout, std::uint16_t tag) {
    const TiffField* field = directory.Find(tag);
    if (!field || field->type != TiffField::kRational || layout.Number(*field, 1) == 0) return 0;
    const double number = static_cast<double>(layout.Number(*field, 0)) / static_cast<double>(layout.Number(*field, 1));
    const TiffField* unit = directory.Find(kResolutionUnit);
    return number / (unit && layout.Number(*unit) == kCentimetres ? 10 : 25.4);
}

void SetResolution(Bytes& exif, const TiffLayout& layout, const ExifPicture& picture) {
    TiffDirectory directory = FirstDirectory(exif, layout);
    const auto isNear = [&](std::uint16_t tag, double resolution) {
        return std::abs(Resolution(directory, layout, tag) - resolution) < resolution / 200;
    };
    const bool isKnown = picture.xResolution != 1 || picture.yResolution != 1;
    if (!isKnown || (isNear(kXResolution, picture.xResolution) && isNear(kYResolution, picture.yResolution))) return;
    constexpr double kParts = 1000;
    const auto rational = [&](std::uint16_t tag, double resolution) {
        const double inParts = std::clamp(std::round(resolution * 25.4 * kParts), 1.0, 4e9);
        directory.Set(layout.MakeField(tag, TiffField::kRational,
                                       {static_cast<std::uint64_t>(inParts), static_cast<std::uint64_t>(kParts)}));
    };
    rational(kXResolution, picture.xResolution);
    rational(kYResolution, picture.yResolution);
    directory.Set(layout.MakeField(kResolutionUnit, TiffField::kShort, {kInches}));
    const std::uint64_t at = Append(exif, layout, directory);
    PutNumber(exif, layout.FirstAt(), 4, layout.littleEndian, at);
}

/// The parts of a block, or of a TIFF file.
struct Parts {
    TiffDirectory first, exif, gps, interop;
};

Parts ReadParts(std::span<const std::uint8_t> file, const TiffLayout& layout) {
    Parts parts;
    parts.first = FirstDirectory(file, layout);
    parts.exif = SubDirectory(file, layout, parts.first, kExif);
    parts.gps = SubDirectory(file, layout, parts.first, kGps);
    parts.interop = SubDirectory(file, layout, parts.exif, kInterop);
    const auto isNoDescription = [](const TiffField& field) {
        return std::ranges::find(kDescriptions, field.tag) == kDescriptions.end() ||
               field.value.size() > kLongestDescription;
    };
    std::erase_if(parts.first.fields, isNoDescription);
    for (TiffDirectory* part : {&parts.exif, &parts.gps, &parts.interop}) {
        part->next = 0;
        std::erase_if(part->fields, [](const TiffField& field) { return field.value.size() > kLongestDescription; });
    }
    std::erase_if(parts.exif.fields, [](const TiffField& field) { return field.tag == kInterop; });
    return parts;
}

void Reorder(TiffDirectory& directory, const TiffLayout& from, const TiffLayout& to) {
    for (TiffField& field : directory.fields) field = Reordered(std::move(field), from, to);
}

/// Writes all parts, to stand at `offset`, and the first directory as the last of them, which gets `more` as well.
Bytes WriteParts(Parts parts, const TiffDirectory& more, const TiffLayout& from, const TiffLayout& to,
                 std::uint64_t offset, std::uint64_t& first) {
    Bytes bytes;
    const auto add = [&](TiffDirectory& directory) {
        const std::uint64_t at = offset + bytes.size();
        const Bytes added = WriteDirectory(directory, to, at);
        bytes.insert(bytes.end(), added.begin(), added.end());
        return at;
    };
    const auto addBelow = [&](TiffDirectory& directory, TiffDirectory& parent, std::uint16_t tag) {
        if (!directory.fields.empty()) parent.Set(to.MakeField(tag, TiffField::kLong, {add(directory)}));
    };
    for (TiffDirectory* part : {&parts.first, &parts.exif, &parts.gps, &parts.interop}) Reorder(*part, from, to);
    addBelow(parts.interop, parts.exif, kInterop);
    addBelow(parts.exif, parts.first, kExif);
    addBelow(parts.gps, parts.first, kGps);
    parts.first.next = more.next;
    for (const TiffField& field : more.fields) {
        if (!parts.first.Find(field.tag)) parts.first.Set(field);
    }
    first = add(parts.first);
    return bytes;
}

Bytes Block(Parts parts, const TiffLayout& layout) {
    Bytes block(kHeader);
    block[0] = block[1] = layout.littleEndian ? 'I' : 'M';
    PutNumber(block, 2, 2, layout.littleEndian, 42);
    std::uint64_t first = 0;
    const Bytes written = WriteParts(std::move(parts), {}, layout, layout, kHeader, first);
    PutNumber(block, layout.FirstAt(), 4, layout.littleEndian, first);
    block.insert(block.end(), written.begin(), written.end());
    return block;
}

}  // namespace

Bytes PlainExif(std::span<const std::uint8_t> block) {
    constexpr std::size_t kLongestPrefix = 16;
    for (std::size_t at = 0; at < std::min(kLongestPrefix, block.size()); ++at) {
        const auto layout = LayoutOf(block.subspan(at));
        if (layout && !layout->big) return {block.begin() + static_cast<std::ptrdiff_t>(at), block.end()};
    }
    return {};
}

Bytes ExifOfTiff(std::span<const std::uint8_t> file) {
    const auto layout = LayoutOf(file);
    if (!layout) return {};
    Parts parts = ReadParts(file, *layout);
    if (parts.first.fields.empty() && parts.exif.fields.empty() && parts.gps.fields.empty()) return {};
    return Block(std::move(parts), {layout->littleEndian, false});
}

Bytes UprightExif() {
    const TiffLayout layout;
    Parts parts;
    parts.first.Set(layout.MakeField(kOrientation, TiffField::kShort, {kUpright}));
    return Block(std::move(parts), layout);
}

bool SaysSomething(std::span<const std::uint8_t> exif) {
    constexpr std::array<std::uint16_t, 15> kOfStorage = {
        kImageWidth,      kImageLength,      kOrientation, kXResolution, kYResolution,
        kResolutionUnit,  kYCbCrPositioning, kExif,        kExifVersion, kComponents,
        kFlashpixVersion, kColorSpace,       kPixelWidth,  kPixelHeight, kInterop};
    const auto layout = LayoutOf(exif);
    if (!layout) return false;
    const TiffDirectory first = FirstDirectory(exif, *layout);
    for (const TiffDirectory& part : {first, SubDirectory(exif, *layout, first, kExif)}) {
        for (const TiffField& field : part.fields) {
            if (std::ranges::find(kOfStorage, field.tag) == kOfStorage.end()) return true;
        }
    }
    return false;
}

bool HasThumbnail(std::span<const std::uint8_t> exif) {
    const auto layout = LayoutOf(exif);
    if (!layout) return false;
    const TiffDirectory second = ReadDirectory(exif, *layout, FirstDirectory(exif, *layout).next);
    return second.Find(kThumbnail) != nullptr || second.Find(kStripOffsets) != nullptr;
}

Bytes ExifFor(Bytes exif, const ExifPicture& picture) {
    const auto layout = LayoutOf(exif);
    if (!layout) return {};
    ClearThumbnail(exif, *layout);
    ClearPreviews(exif);
    const TiffDirectory first = FirstDirectory(exif, *layout);
    const TiffDirectory details = SubDirectory(exif, *layout, first, kExif);
    const auto width = static_cast<std::uint64_t>(picture.width), height = static_cast<std::uint64_t>(picture.height);
    Patch(exif, *layout, first.Find(kOrientation), kUpright);
    Patch(exif, *layout, first.Find(kImageWidth), width);
    Patch(exif, *layout, first.Find(kImageLength), height);
    Patch(exif, *layout, details.Find(kColorSpace), kSrgb);
    Patch(exif, *layout, details.Find(kPixelWidth), width);
    Patch(exif, *layout, details.Find(kPixelHeight), height);
    // The index of Adobe RGB's files becomes that of sRGB's.
    if (const TiffField* index = SubDirectory(exif, *layout, details, kInterop).Find(kInteropIndex);
        index && index->value.size() == 4 && std::memcmp(index->value.data(), "R03", 4) == 0) {
        std::memcpy(exif.data() + index->at, "R98", 4);
    }
    SetResolution(exif, *layout, picture);
    return exif;
}

Bytes WithThumbnail(Bytes exif, std::span<const std::uint8_t> jpeg) {
    const auto layout = LayoutOf(exif);
    if (!layout) return {};
    constexpr std::uint64_t kDotsPerInch = 72;
    TiffDirectory second;
    second.Set(layout->MakeField(kCompression, TiffField::kShort, {kJpeg}));
    second.Set(layout->MakeField(kXResolution, TiffField::kRational, {kDotsPerInch, 1}));
    second.Set(layout->MakeField(kYResolution, TiffField::kRational, {kDotsPerInch, 1}));
    second.Set(layout->MakeField(kResolutionUnit, TiffField::kShort, {kInches}));
    second.Set(layout->MakeField(kThumbnailLength, TiffField::kLong, {jpeg.size()}));
    second.Set(layout->MakeField(kThumbnail, TiffField::kLong, {0}));
    const std::size_t nextAt = FirstDirectory(exif, *layout).nextAt;
    if (nextAt == 0) return exif;
    const std::uint64_t at = Append(exif, *layout, second);
    PutNumber(exif, ReadDirectory(exif, *layout, at).Find(kThumbnail)->at, 4, layout->littleEndian, exif.size());
    PutNumber(exif, nextAt, 4, layout->littleEndian, at);
    exif.insert(exif.end(), jpeg.begin(), jpeg.end());
    return exif;
}

bool AddExifToTiff(int descriptor, std::span<const std::uint8_t> exif) {
    const MappedFile file(descriptor);
    const auto from = LayoutOf(exif);
    const auto to = LayoutOf(file.Bytes());
    if (!from || !to) return false;
    const std::uint64_t offset = (file.Bytes().size() + 1) / 2 * 2;
    constexpr std::uint64_t kGreatestOffset = 0xffffffff;  // of the pointers to directories, in BigTIFF too
    if (offset + 2 * exif.size() > kGreatestOffset) return false;
    std::uint64_t first = 0;
    const Bytes added =
        WriteParts(ReadParts(exif, *from), FirstDirectory(file.Bytes(), *to), *from, *to, offset, first);
    Bytes header(to->OffsetSize());
    PutNumber(header, 0, header.size(), to->littleEndian, first);
    WriteAt(descriptor, added, offset);
    WriteAt(descriptor, header, to->FirstAt());
    return true;
}

}  // namespace ombrix::cli
