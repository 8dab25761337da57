#include "cli/images/cut_short.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <string>
#include <vector>

#include "cli/images/cut_short_tiff.h"
#include "cli/images/file_bytes.h"
#include "cli/images/standard_input.h"
#include "text/numbers.h"

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

/// Whether a PNM file of plain numbers has all of them. Its reader takes missing ones for 0.
bool HasAllNumbers(const fs::path& file, bool isBitmap, const VImage& image) {
    // Width and height are numbers too, and so is the largest level, which bitmaps lack.
    const std::int64_t needed =
        1 + 2 + (isBitmap ? 0 : 1) + std::int64_t{image.width()} * image.height() * std::int64_t{image.bands()};
    std::ifstream stream(file, std::ios::binary);
    std::int64_t count = 0;
    bool inWord = false, inComment = false;
    std::array<char, 65536> buffer;
    while (count < needed && stream) {
        stream.read(buffer.data(), buffer.size());
        for (std::streamsize i = 0; i < stream.gcount(); ++i) {
            const char c = buffer[static_cast<std::size_t>(i)];
            if (inComment || c == '#') {
                inComment = c != '\n';
                inWord = false;
            } else if (std::isspace(static_cast<unsigned char>(c)) != 0) {
                inWord = false;
            } else if (!inWord || (isBitmap && count >= 3)) {
                inWord = true;
                ++count;  // the digits of a bitmap need no space between them
            }
        }
    }
    return count >= needed;
}

/// The last bytes are the end marker. Files that are made to be shown while they load have another one near their
/// beginning, but say their length.
bool HasPdfEnd(FileBytes& file) {
    constexpr std::int64_t kTrailer = 2048;  // readers look for the end in the last 1024 bytes
    const std::string head = file.At(0, 1024);
    if (head.find("/Linearized") != std::string::npos) {
        std::size_t length = head.find("/L ");
        if (length == std::string::npos) length = head.find("/L\t");
        if (length != std::string::npos) {
            const std::size_t digit = head.find_first_of("0123456789", length);
            const auto number = text::ParseNumber<std::int64_t>(
                head.substr(digit, head.find_first_not_of("0123456789", digit) - digit));
            if (number && *number > file.Size()) return false;
        }
    }
    const std::int64_t start = std::max<std::int64_t>(0, file.Size() - kTrailer);
    return file.At(start, kTrailer).find("%%EOF") != std::string::npos;
}

/// A length, a name and a check sum go with each chunk. Readers stop at the last pixel.
bool HasPngEnd(FileBytes& file) {
    constexpr std::int64_t kAround = 12;  // bytes
    for (std::int64_t at = 8; at + kAround <= file.Size(); at += kAround + file.Number(at, 4)) {
        if (file.At(at + 4, 4) == "IEND") return true;
    }
    return false;
}

/// Readers take the end for the end of the animation.
bool HasGifTrailer(FileBytes& file) {
    const auto colours = [&](std::int64_t flagsAt) {
        const std::int64_t flags = file.Number(flagsAt, 1);
        return (flags & 0x80) != 0 ? 3 * (2 << (flags & 7)) : 0;
    };
    const auto afterBlocks = [&](std::int64_t at) {
        while (at < file.Size() && file.Number(at, 1) != 0) at += 1 + file.Number(at, 1);
        return at + 1;
    };
    std::int64_t at = 13 + colours(10);
    while (at < file.Size()) {
        switch (file.Number(at, 1)) {
            case 0x21:  // an extension: its kind, and blocks
                at = afterBlocks(at + 2);
                break;
            case 0x2c:  // an image: place and size, colours, bits, and blocks
                at = afterBlocks(at + 11 + colours(at + 9));
                break;
            default:  // the trailer, or something else that the reader has to judge
                return true;
        }
    }
    return false;
}

/// SGI: a header of 512 bytes, then all channels, or tables of where the compressed rows begin and how long they are.
bool HasAllRows(FileBytes& file) {
    constexpr std::int64_t kHeader = 512;
    const bool isCompressed = file.Number(2, 1) == 1;
    const std::int64_t width = file.Number(6, 2), height = std::max<std::int64_t>(file.Number(8, 2), 1),
                       channels = std::max<std::int64_t>(file.Number(10, 2), 1);
    if (!isCompressed) return file.Size() >= kHeader + width * height * channels * file.Number(3, 1);
    const std::int64_t rows = height * channels, lengths = kHeader + 4 * rows;
    if (file.Size() < lengths + 4 * rows) return false;
    // Each table in turn, since they may be far apart.
    std::vector<std::int64_t> starts;
    for (std::int64_t row = 0; row < rows; ++row) starts.push_back(file.Number(kHeader + 4 * row, 4));
    for (std::int64_t row = 0; row < rows; ++row) {
        if (starts[static_cast<std::size_t>(row)] + file.Number(lengths + 4 * row, 4) > file.Size()) return false;
    }
    return true;
}

/// MATLAB 5: a header of 128 bytes, then elements that begin with their type and length.
bool HasAllElements(FileBytes& file) {
    const ByteOrder order = file.At(126, 2) == "IM" ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
    std::int64_t at = 128;
    while (at < file.Size()) at += 8 + file.Number(at + 4, 4, order);
    return at == file.Size();
}

/// libvips' own: a header, pixels, and a description that readers can do without.
bool HasAllOfDescription(FileBytes& file, const VImage& image) {
    constexpr std::int64_t kHeader = 64;
    if (file.Size() <= kHeader + static_cast<std::int64_t>(VIPS_IMAGE_SIZEOF_IMAGE(image.get_image()))) return true;
    return file.At(file.Size() - 16, 16).find("</root>") != std::string::npos;
}

}  // namespace

bool IsCutShort(const fs::path& given, const VImage& image) {
    const fs::path path = NameToOpen(given);
    FileBytes file(path);
    const std::string head = file.At(0, 16);
    if (head.starts_with("\x89PNG")) return !HasPngEnd(file);
    if (head.starts_with("GIF8")) return !HasGifTrailer(file);
    if (head.starts_with("II") || head.starts_with("MM")) return !HasAllPages(file);
    if (head.starts_with("RIFF")) return file.Number(4, 4, ByteOrder::LittleEndian) + 8 > file.Size();
    if (head.starts_with("%PDF-")) return !HasPdfEnd(file);
    if (head[0] == 'P' && head[1] >= '1' && head[1] <= '3') return !HasAllNumbers(path, head[1] == '1', image);
    if (head.starts_with("\x08\xf2\xa6\xb6") || head.starts_with("\xb6\xa6\xf2\x08")) {
        return !HasAllOfDescription(file, image);
    }
    if (head.starts_with("\x01\xda")) return !HasAllRows(file);
    return head.starts_with("MATLAB 5.0") && !HasAllElements(file);
}

}  // namespace ombrix::cli
