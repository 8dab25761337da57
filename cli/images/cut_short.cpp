#include "cli/images/cut_short.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstring>
#include <fstream>
#include <string>

namespace ombrix::cli {

namespace fs = std::filesystem;
using vips::VImage;

namespace {

/// The first bytes, zeros where there are none.
std::string Head(const fs::path& file, std::size_t length) {
    std::string head(length, '\0');
    std::ifstream(file, std::ios::binary).read(head.data(), static_cast<std::streamsize>(length));
    return head;
}

std::int64_t BigEndian(std::string_view bytes) {
    std::int64_t number = 0;
    for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

/// Whether a PNM file of plain numbers has all of them. Its reader takes missing ones for 0.
bool HasAllNumbers(const fs::path& file, const VImage& image) {
    std::ifstream stream(file, std::ios::binary);
    const bool isBitmap = Head(file, 2) == "P1";
    const int bands = image.bands();
    // Width and height are numbers too, and so is the largest level, which bitmaps lack.
    const std::int64_t needed =
        1 + 2 + (isBitmap ? 0 : 1) + std::int64_t{image.width()} * image.height() * std::int64_t{bands};
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

bool HasPdfEnd(const fs::path& file) {
    constexpr std::int64_t kTrailer = 2048;  // readers look for the end in the last 1024 bytes
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    const std::int64_t size = stream.tellg();
    stream.seekg(std::max<std::int64_t>(0, size - kTrailer));
    std::string end(static_cast<std::size_t>(std::min(size, kTrailer)), '\0');
    stream.read(end.data(), static_cast<std::streamsize>(end.size()));
    return end.find("%%EOF") != std::string::npos;
}

/// SGI: a header of 512 bytes, then all channels, or tables of where the compressed rows begin and how long they are.
bool HasAllRows(const fs::path& file, std::string_view head) {
    constexpr std::int64_t kHeader = 512;
    const auto size = static_cast<std::int64_t>(fs::file_size(file));
    const auto number = [head](std::size_t at, std::size_t bytes) { return BigEndian(head.substr(at, bytes)); };
    const bool isCompressed = number(2, 1) == 1;
    const std::int64_t width = number(6, 2), height = std::max<std::int64_t>(number(8, 2), 1),
                       channels = std::max<std::int64_t>(number(10, 2), 1);
    if (!isCompressed) return size >= kHeader + width * height * channels * number(3, 1);
    const std::int64_t rows = height * channels, tables = 8 * rows;
    if (size < kHeader + tables) return false;
    const std::string all = Head(file, static_cast<std::size_t>(kHeader + tables));
    const auto entry = [&](std::int64_t i) {
        return BigEndian(std::string_view(all).substr(static_cast<std::size_t>(kHeader + 4 * i), 4));
    };
    for (std::int64_t row = 0; row < rows; ++row) {
        if (entry(row) + entry(rows + row) > size) return false;
    }
    return true;
}

/// MATLAB 5: a header of 128 bytes, then elements that begin with their type and length.
bool HasAllElements(const fs::path& file, std::string_view head) {
    const auto size = static_cast<std::int64_t>(fs::file_size(file));
    const bool isLittleEndian = head.substr(126, 2) == "IM";
    std::ifstream stream(file, std::ios::binary);
    std::int64_t at = 128;
    while (at < size) {
        std::string tag(8, '\0');
        if (!stream.seekg(at) || !stream.read(tag.data(), 8)) return false;
        if (isLittleEndian) std::reverse(tag.begin() + 4, tag.end());
        at += 8 + BigEndian(std::string_view(tag).substr(4));
    }
    return at == size;
}

}  // namespace

bool IsCutShort(const fs::path& file, const VImage& image) {
    const std::string head = Head(file, 128);
    if (head.starts_with("%PDF-")) return !HasPdfEnd(file);
    if (head[0] == 'P' && head[1] >= '1' && head[1] <= '3') return !HasAllNumbers(file, image);
    if (head.starts_with("\x01\xda")) return !HasAllRows(file, head);
    return head.starts_with("MATLAB 5.0") && !HasAllElements(file, head);
}

}  // namespace ombrix::cli
