#include "cli/images/gif_blocks.h"

#include <algorithm>
#include <string_view>

#include "cli/images/mapped_file.h"

namespace ombrix::cli {

namespace {

constexpr std::uint8_t kExtension = 0x21, kImage = 0x2c, kTrailer = 0x3b, kComment = 0xfe, kApplication = 0xff;
constexpr std::size_t kHeader = 13, kImageHeader = 10;  // bytes, without a colour table
constexpr std::string_view kXmp("\x0bXMP DataXMP", 12);
constexpr std::size_t kLongestPart = 255;  // bytes of data's parts, each after its length

/// A walk over bytes that ends early where they end.
class Walk {
  public:
    explicit Walk(std::span<const std::uint8_t> file) : file_(file) {}

    bool IsAtEnd() const { return at_ >= file_.size(); }
    std::size_t At() const { return at_; }
    void Skip(std::size_t count) { at_ = std::min(file_.size(), at_ + std::min(count, file_.size())); }
    std::uint8_t Next() { return IsAtEnd() ? std::uint8_t{0} : file_[at_++]; }
    std::uint8_t Byte(std::size_t at) const { return at < file_.size() ? file_[at] : std::uint8_t{0}; }

    /// Data up to its end, with or without the lengths of its parts.
    Bytes Parts(bool withLengths) {
        Bytes data;
        while (const std::uint8_t length = Next()) {
            if (withLengths) data.push_back(length);
            const std::size_t from = at_;
            Skip(length);
            data.insert(data.end(), file_.begin() + static_cast<std::ptrdiff_t>(from),
                        file_.begin() + static_cast<std::ptrdiff_t>(at_));
        }
        return data;
    }

  private:
    const std::span<const std::uint8_t> file_;
    std::size_t at_ = 0;
};

std::size_t TableSize(std::uint8_t flags) { return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0; }

/// What follows the name of the application. XMP stands there as it is, and ends where the lengths that its bytes are
/// taken for run into the descending bytes behind it.
void TakeXmp(Bytes data, Metadata& metadata) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    const std::size_t begin = std::min(text.find('<'), data.size()), end = text.rfind('>');
    if (end == std::string_view::npos || end <= begin || !metadata.xmp.empty()) return;
    metadata.xmp.assign(data.begin() + static_cast<std::ptrdiff_t>(begin),
                        data.begin() + static_cast<std::ptrdiff_t>(end + 1));
}

void TakeExtension(Walk& walk, Metadata& metadata) {
    const std::uint8_t kind = walk.Next();
    if (kind == kComment) {
        const Bytes text = walk.Parts(false);
        if (!text.empty()) metadata.comments.push_back({"Comment", {text.begin(), text.end()}});
        return;
    }
    const Bytes data = walk.Parts(true);
    const bool isXmp =
        kind == kApplication && data.size() > kXmp.size() && std::equal(kXmp.begin(), kXmp.end(), data.begin());
    if (isXmp) TakeXmp({data.begin() + static_cast<std::ptrdiff_t>(kXmp.size()), data.end()}, metadata);
}

void AppendComment(Bytes& blocks, std::string_view text) {
    blocks.insert(blocks.end(), {kExtension, kComment});
    for (; !text.empty(); text.remove_prefix(std::min(kLongestPart, text.size()))) {
        const std::string_view part = text.substr(0, kLongestPart);
        blocks.push_back(static_cast<std::uint8_t>(part.size()));
        blocks.insert(blocks.end(), part.begin(), part.end());
    }
    blocks.push_back(0);
}

void AppendXmp(Bytes& blocks, const Bytes& xmp) {
    blocks.insert(blocks.end(), {kExtension, kApplication});
    blocks.insert(blocks.end(), kXmp.begin(), kXmp.end());
    blocks.insert(blocks.end(), xmp.begin(), xmp.end());
    // Whoever takes XMP's bytes for lengths meets one of these, which leads to the end.
    blocks.push_back(1);
    for (int length = 255; length >= 0; --length) blocks.push_back(static_cast<std::uint8_t>(length));
    blocks.push_back(0);
}

}  // namespace

void TakeFromGif(std::span<const std::uint8_t> file, Metadata& metadata) {
    if (file.size() < kHeader || file[0] != 'G' || file[1] != 'I' || file[2] != 'F') return;
    Walk walk(file);
    walk.Skip(kHeader + TableSize(file[kHeader - 3]));
    while (!walk.IsAtEnd()) {
        switch (walk.Next()) {
            case kExtension:
                TakeExtension(walk, metadata);
                break;
            case kImage: {
                const std::uint8_t flags = walk.Byte(walk.At() + kImageHeader - 2);
                walk.Skip(kImageHeader - 1 + TableSize(flags) + 1);
                walk.Parts(false);
                break;
            }
            default:
                return;
        }
    }
}

void AddToGif(int descriptor, const std::vector<Metadata::Comment>& comments, const Bytes& xmp) {
    Bytes blocks;
    for (const Metadata::Comment& comment : comments) AppendComment(blocks, comment.WithKey());
    if (!xmp.empty()) AppendXmp(blocks, xmp);
    if (blocks.empty()) return;
    const std::uint64_t size = MappedFile(descriptor).Bytes().size();
    blocks.push_back(kTrailer);
    if (size > 0) WriteAt(descriptor, blocks, size - 1);
}

}  // namespace ombrix::cli
