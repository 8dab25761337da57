#include "cli/images/png_text.h"

#include <zlib.h>

#include <algorithm>
#include <string>

namespace ombrix::cli {

namespace {

constexpr std::size_t kLongestKey = 79;
void Append(Bytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

void AppendText(Bytes& file, std::string_view key, std::string_view text, bool isUtf8) {
    Bytes data;
    Append(data, key);
    data.push_back(0);
    // Not compressed, in no language, no translated key.
    if (isUtf8) data.resize(data.size() + 4);
    Append(data, text);
    AppendPngChunk(file, isUtf8 ? "iTXt" : "tEXt", data);
}

void AppendComment(Bytes& file, const Metadata::Comment& comment) {
    if (comment.key.empty() || comment.key.size() > kLongestKey) return;
    const bool isAscii = std::ranges::all_of(comment.text, [](char c) { return static_cast<unsigned char>(c) < 128; });
    const bool isUtf8 = g_utf8_validate(comment.text.data(), static_cast<gssize>(comment.text.size()), nullptr) != 0;
    AppendText(file, comment.key, comment.text, !isAscii && isUtf8);
}

std::string RawProfile(const Bytes& bytes) {
    constexpr std::size_t kBytesInLine = 36;
    std::string text = "\niptc\n" + std::to_string(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % kBytesInLine == 0) text += '\n';
        for (const int digit : {bytes[i] >> 4, bytes[i] & 15}) text += "0123456789abcdef"[digit];
    }
    return text + '\n';
}

}  // namespace

void AppendPngChunk(Bytes& file, std::string_view name, std::span<const std::uint8_t> data) {
    std::size_t at = file.size();
    file.resize(at + 4);
    PutNumber(file, at, 4, false, data.size());
    at = file.size();
    Append(file, name);
    file.insert(file.end(), data.begin(), data.end());
    const auto sum = crc32(0, file.data() + at, static_cast<uInt>(file.size() - at));
    file.resize(file.size() + 4);
    PutNumber(file, file.size() - 4, 4, false, sum);
}

Bytes PngText(const std::vector<Metadata::Comment>& comments, const Bytes& xmp, const Bytes& resources) {
    Bytes chunks;
    for (const Metadata::Comment& comment : comments) AppendComment(chunks, comment);
    if (!xmp.empty()) {
        AppendText(chunks, "XML:com.adobe.xmp", {reinterpret_cast<const char*>(xmp.data()), xmp.size()}, true);
    }
    if (!resources.empty()) AppendText(chunks, "Raw profile type iptc", RawProfile(resources), false);
    return chunks;
}

}  // namespace ombrix::cli
