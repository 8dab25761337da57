// A file's bytes at positions, for a look at its structure.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace ombrix::cli {

enum class ByteOrder { BigEndian, LittleEndian };

/// Keeps a window of the file, so that walking forward in small steps is quick. Beyond the end are zeros.
class FileBytes {
  public:
    explicit FileBytes(const std::filesystem::path& file);

    std::int64_t Size() const { return size_; }
    std::string At(std::int64_t position, std::size_t length);
    /// Of 1 to 8 bytes. Values beyond the signed range come out as the largest one.
    std::int64_t Number(std::int64_t position, int bytes, ByteOrder order = ByteOrder::BigEndian);

  private:
    std::ifstream stream_;
    const std::int64_t size_;
    std::int64_t start_ = 0;  // of the window
    std::string window_;
};

}  // namespace ombrix::cli
