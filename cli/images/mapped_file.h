// The bytes of a file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>

namespace ombrix::cli {

/// Maps a file into memory, read only. Empty when it cannot be mapped. The file must not shrink meanwhile.
class MappedFile {
  public:
    explicit MappedFile(int descriptor);
    explicit MappedFile(const std::filesystem::path& file);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::span<const std::uint8_t> Bytes() const { return bytes_; }

  private:
    void Map(int descriptor);

    std::span<const std::uint8_t> bytes_;
};

/// Writes all bytes at an offset. A std::system_error when that fails.
void WriteAt(int descriptor, std::span<const std::uint8_t> bytes, std::uint64_t offset);

}  // namespace ombrix::cli
