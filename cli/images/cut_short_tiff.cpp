#include "cli/images/cut_short_tiff.h"

#include <algorithm>
#include <set>
#include <vector>

namespace ombrix::cli {

namespace {

constexpr std::int64_t kCompression = 259, kStripOffsets = 273, kStripByteCounts = 279, kTileOffsets = 324,
                       kTileByteCounts = 325;  // tags
constexpr std::int64_t kTiff = 42, kBigTiff = 43;
constexpr std::int64_t kOldJpeg = 6;  // its byte counts mean nothing

/// Both forms: numbers of 4 bytes, or of 8 in BigTIFF.
class Directories {
  public:
    explicit Directories(FileBytes& file)
        : file_(file),
          order_(file.At(0, 1) == "I" ? ByteOrder::LittleEndian : ByteOrder::BigEndian),
          isBig_(Number(2, 2) == kBigTiff),
          word_(isBig_ ? 8 : 4) {}

    bool AreWhole() {
        // Camera makers' kinds begin alike.
        if (!isBig_ && Number(2, 2) != kTiff) return true;
        std::set<std::int64_t> seen;
        for (std::int64_t at = Number(isBig_ ? 8 : 4, word_); at != 0;) {
            // Chains that turn back are for the reader.
            if (!seen.insert(at).second) break;
            if (!IsInside(at, CountBytes())) return false;
            const std::int64_t entries = Number(at, CountBytes()), size = 4 + 2 * word_;
            const std::int64_t first = at + CountBytes();
            if (entries > file_.Size() || !IsInside(first, entries * size + word_)) return false;
            if (!IsPageWhole(first, entries, size)) return false;
            at = Number(first + entries * size, word_);
        }
        return true;
    }

  private:
    int CountBytes() const { return isBig_ ? 8 : 2; }
    std::int64_t Number(std::int64_t at, int bytes) { return file_.Number(at, bytes, order_); }
    bool IsInside(std::int64_t at, std::int64_t bytes) const {
        return at <= file_.Size() && bytes <= file_.Size() - at;
    }

    bool IsPageWhole(std::int64_t first, std::int64_t entries, std::int64_t size) {
        std::vector<std::int64_t> offsets, counts;
        std::int64_t compression = 1;
        for (std::int64_t entry = first; entry < first + entries * size; entry += size) {
            const std::int64_t tag = Number(entry, 2);
            if (tag == kCompression) compression = Number(entry + 4 + word_, 2);
            if (tag == kStripOffsets || tag == kTileOffsets) {
                if (!ReadNumbers(entry, offsets)) return false;
            } else if (tag == kStripByteCounts || tag == kTileByteCounts) {
                if (!ReadNumbers(entry, counts)) return false;
            }
        }
        counts.resize(offsets.size());
        for (std::size_t i = 0; i < offsets.size(); ++i) {
            if (!IsInside(offsets[i], compression == kOldJpeg ? 0 : counts[i])) return false;
        }
        return true;
    }

    /// An entry's numbers, which lie in it if they fit.
    bool ReadNumbers(std::int64_t entry, std::vector<std::int64_t>& numbers) {
        constexpr std::int64_t kShort = 3, kLong8 = 16;
        const std::int64_t type = Number(entry + 2, 2), count = Number(entry + 4, word_);
        const int bytes = type == kShort ? 2 : type == kLong8 ? 8 : 4;
        std::int64_t at = entry + 4 + word_;
        if (count > file_.Size()) return false;
        if (count * bytes > word_) at = Number(at, word_);
        if (!IsInside(at, count * bytes)) return false;
        for (std::int64_t i = 0; i < count; ++i) numbers.push_back(Number(at + i * bytes, bytes));
        return true;
    }

    FileBytes& file_;
    const ByteOrder order_;
    const bool isBig_;
    const int word_;
};

}  // namespace

bool HasAllPages(FileBytes& file) { return Directories(file).AreWhole(); }

}  // namespace ombrix::cli
