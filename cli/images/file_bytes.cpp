#include "cli/images/file_bytes.h"

#include <algorithm>

namespace ombrix::cli {

namespace {

constexpr std::size_t kWindow = 65536;

}  // namespace

FileBytes::FileBytes(const std::filesystem::path& file)
    : stream_(file, std::ios::binary), size_(static_cast<std::int64_t>(std::filesystem::file_size(file))) {}

std::string FileBytes::At(std::int64_t position, std::size_t length) {
    std::string bytes(length, '\0');
    if (position < 0 || position >= size_) return bytes;
    const auto available = static_cast<std::size_t>(std::min<std::int64_t>(size_ - position, INT32_MAX));
    const std::size_t wanted = std::min(length, available);
    if (position < start_ ||
        position - start_ + static_cast<std::int64_t>(wanted) > static_cast<std::int64_t>(window_.size())) {
        window_.resize(std::min(std::max(wanted, kWindow), available));
        start_ = position;
        stream_.clear();
        stream_.seekg(position);
        stream_.read(window_.data(), static_cast<std::streamsize>(window_.size()));
    }
    window_.copy(bytes.data(), wanted, static_cast<std::size_t>(position - start_));
    return bytes;
}

std::int64_t FileBytes::Number(std::int64_t position, int bytes, ByteOrder order) {
    std::string digits = At(position, static_cast<std::size_t>(bytes));
    if (order == ByteOrder::LittleEndian) std::reverse(digits.begin(), digits.end());
    std::uint64_t number = 0;
    for (const char digit : digits) number = number << 8 | static_cast<unsigned char>(digit);
    return static_cast<std::int64_t>(std::min<std::uint64_t>(number, INT64_MAX));
}

}  // namespace ombrix::cli
