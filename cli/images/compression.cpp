#include "cli/images/compression.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "cli/images/bytes.h"
#include "cli/images/mapped_file.h"

namespace ombrix::cli {

namespace {

using View = std::span<const std::uint8_t>;

Compression LossyIf(bool isLossy) { return isLossy ? Compression::Lossy : Compression::Lossless; }

/// Where a text begins, or the end of the bytes.
std::size_t Find(View bytes, std::string_view text) {
    return static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), text.begin(), text.end()) - bytes.begin());
}

/// Chunks of a RIFF file, those in frames of an animation too.
bool HasLossyChunk(View chunks) {
    constexpr std::size_t kHeader = 8, kFrameHeader = 16;  // bytes; a name and a size, then what a frame begins with
    for (std::size_t at = 0; at + kHeader <= chunks.size();) {
        const View data = chunks.subspan(at + kHeader);
        const std::size_t size = std::min<std::size_t>(GetNumber(chunks, at + 4, 4, true), data.size());
        if (StandsAt(chunks, at, "VP8 ")) return true;
        const bool isFrame = StandsAt(chunks, at, "ANMF") && size > kFrameHeader;
        if (isFrame && HasLossyChunk(data.subspan(kFrameHeader, size - kFrameHeader))) return true;
        at += kHeader + size + size % 2;
    }
    return false;
}

/// The bits of a JPEG XL codestream, the lowest of each byte first.
class Bits {
  public:
    explicit Bits(View bytes) : bytes_(bytes) {}

    /// Zeros beyond the end.
    unsigned Next(int count) {
        unsigned value = 0;
        for (int i = 0; i < count; ++i, ++at_) {
            const unsigned byte = at_ / 8 < bytes_.size() ? bytes_[at_ / 8] : 0U;
            value |= (byte >> at_ % 8 & 1U) << i;
        }
        return value;
    }
    bool Flag() { return Next(1) != 0; }

    /// Skips a number whose first two bits choose how many follow.
    void Skip(const std::array<int, 4>& lengths) { Next(lengths[Next(2)]); }

  private:
    const View bytes_;
    std::size_t at_ = 0;
};

void SkipJxlSize(Bits& bits) {
    const bool isSmall = bits.Flag();
    const auto skipSide = [&] { isSmall ? void(bits.Next(5)) : bits.Skip({9, 13, 18, 30}); };
    skipSide();
    if (bits.Next(3) == 0) skipSide();  // otherwise the ratio of the sides
}

/// Lossy files alone are in the colours of the eye, XYB (ISO/IEC 18181-1, annex A). Those with channels that are
/// described at length count as lossless.
Compression OfJxl(View codestream) {
    constexpr std::size_t kSignature = 2;
    Bits bits(codestream.subspan(std::min(kSignature, codestream.size())));
    SkipJxlSize(bits);
    if (bits.Flag()) return Compression::Lossy;  // all metadata have their defaults, which are lossy
    if (bits.Flag()) {
        bits.Next(3);  // orientation
        if (bits.Flag()) SkipJxlSize(bits);
        const bool hasPreview = bits.Flag();
        const bool isAnimation = bits.Flag();
        if (hasPreview) return Compression::Lossless;
        if (isAnimation) {
            bits.Skip({0, 0, 10, 30});  // ticks in a second
            bits.Skip({0, 0, 8, 10});
            bits.Skip({0, 3, 16, 32});  // loops
            bits.Flag();
        }
    }
    const bool isFloat = bits.Flag();
    bits.Skip({0, 0, 0, 6});  // depth
    if (isFloat) bits.Next(4);
    bits.Flag();  // 16 bits are enough
    const unsigned countKind = bits.Next(2);
    if (countKind > 1 || (countKind == 1 && !bits.Flag())) return Compression::Lossless;
    return LossyIf(bits.Flag());
}

Compression OfJxlFile(View file) {
    constexpr std::size_t kNameBytes = 4, kPartNumber = 4;
    if (StandsAt(file, 0, "\xff\x0a")) return OfJxl(file);
    const std::size_t whole = Find(file, "jxlc");
    if (whole < file.size()) return OfJxl(file.subspan(whole + kNameBytes));
    const std::size_t part = Find(file, "jxlp") + kNameBytes + kPartNumber;
    return part < file.size() ? OfJxl(file.subspan(part)) : Compression::Lossless;
}

/// The wavelet of 5/3 can be undone to the bit (ISO/IEC 15444-1, table A.20).
Compression OfJp2(View file) {
    constexpr std::size_t kWaveletAt = 13;
    constexpr std::uint8_t kReversible = 1;
    const std::size_t style = Find(file, std::string_view("\xff\x52\x00", 3));
    return LossyIf(style + kWaveletAt < file.size() && file[style + kWaveletAt] != kReversible);
}

/// By the configurations of the decoder for the picture and its alpha, which is without chroma.
Compression OfHeif(View file) {
    constexpr std::size_t kAv1ChromaAt = 6, kHevcChromaAt = 20;
    constexpr unsigned kMonochrome = 0x10, kHalvedChroma = 0x0c;
    constexpr unsigned kChromaFormat = 3, kWholeChroma = 3;
    const auto areAny = [file](std::string_view name, std::size_t offset, auto isHalved) {
        for (std::size_t at = 0; (at += Find(file.subspan(at), name)) + offset < file.size(); at += name.size()) {
            if (isHalved(file[at + offset])) return true;
        }
        return false;
    };
    const bool isLossy =
        areAny("av1C", kAv1ChromaAt,
               [](unsigned flags) { return (flags & kMonochrome) == 0 && (flags & kHalvedChroma) != 0; }) ||
        areAny("hvcC", kHevcChromaAt, [](unsigned flags) { return (flags & kChromaFormat) % kWholeChroma != 0; });
    return isLossy ? Compression::Lossy : Compression::Unknown;
}

}  // namespace

Compression CompressionOf(const std::filesystem::path& file) {
    constexpr std::size_t kRiffHeader = 12;
    const MappedFile mapped(file);
    const View bytes = mapped.Bytes();
    if (StandsAt(bytes, 0, "\xff\xd8")) return Compression::Lossy;
    if (StandsAt(bytes, 8, "WEBP")) return LossyIf(HasLossyChunk(bytes.subspan(kRiffHeader)));
    if (StandsAt(bytes, 0, "\xff\x0a") || StandsAt(bytes, 4, "JXL ")) return OfJxlFile(bytes);
    if (StandsAt(bytes, 0, "\xff\x4f\xff\x51") || StandsAt(bytes, 4, "jP  ")) return OfJp2(bytes);
    if (StandsAt(bytes, 4, "ftyp")) return OfHeif(bytes);
    return Compression::Lossless;
}

}  // namespace ombrix::cli
